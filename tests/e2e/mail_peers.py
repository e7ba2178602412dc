"""The other ends that a mail server talks to, as threads of the test."""

import smtplib
import socket
import socketserver
import struct
import threading


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Peer:
    """A server on loopback from start() to stop(). Kind is a request handler; it finds this object
    as self.server.peer."""

    def __init__(self, kind, server_class=socketserver.ThreadingTCPServer, port=None):
        self.kind = kind
        self.server_class = server_class
        self.port = port or free_port()
        self.server = None

    def start(self):
        self.server_class.allow_reuse_address = True
        self.server_class.daemon_threads = True
        self.server = self.server_class(("127.0.0.1", self.port), self.kind)
        self.server.peer = self
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def stop(self):
        if self.server:
            self.server.shutdown()
            self.server.server_close()


class SmtpPeer(Peer):
    """Takes mails over SMTP or LMTP (RFC 5321, RFC 2033).

    refusals maps a recipient to the replies of its first RCPT commands; after these, and any other
    recipient, is accepted. With next_port each mail is handed on to that port, as a content filter
    does; one with tells_origin passes on whose mail it is (Postfix's XFORWARD_README).
    """

    def __init__(self, refusals=None, next_port=None, tells_origin=False):
        super().__init__(SmtpConversation)
        self.refusals = {name: list(replies) for name, replies in (refusals or {}).items()}
        self.next_port = next_port
        self.tells_origin = tells_origin

    def refusal(self, recipient):
        replies = self.refusals.get(recipient)
        return replies.pop(0) if replies else None


class SmtpConversation(socketserver.StreamRequestHandler):
    def say(self, line):
        self.wfile.write(line.encode() + b"\r\n")

    def handle(self):
        self.say("220 peer.test ESMTP")
        lmtp, sender, recipients, self.origin = False, "", [], []
        while line := self.rfile.readline():
            verb, _, argument = line.decode("utf-8", "replace").strip().partition(" ")
            verb = verb.upper()
            if verb in ("EHLO", "HELO", "LHLO"):
                lmtp = verb == "LHLO"
                self.say("250-peer.test")
                if self.server.peer.tells_origin:
                    self.say("250-XFORWARD NAME ADDR PORT PROTO HELO IDENT SOURCE")
                self.say("250 8BITMIME")
            elif verb == "XFORWARD":
                self.origin.append(argument)
                self.say("250 2.0.0 Ok")
            elif verb == "MAIL":
                sender, recipients = self.address(argument), []
                self.say("250 2.1.0 Ok")
            elif verb == "RCPT":
                recipient = self.address(argument)
                refusal = self.server.peer.refusal(recipient)
                if not refusal:
                    recipients.append(recipient)
                self.say(refusal or "250 2.1.5 Ok")
            elif verb == "DATA":
                self.take(sender, recipients, lmtp)
            elif verb == "QUIT":
                self.say("221 2.0.0 Bye")
                return
            else:
                self.say("250 2.0.0 Ok")

    @staticmethod
    def address(argument):
        return argument.partition("<")[2].partition(">")[0]

    def take(self, sender, recipients, lmtp):
        self.say("354 Go on")
        lines = []
        while (line := self.rfile.readline()) not in (b".\r\n", b""):
            lines.append(line[1:] if line.startswith(b".") else line)
        reply = "250 2.0.0 Ok: taken"
        if self.server.peer.next_port:
            reply = self.hand_on(sender, recipients, b"".join(lines))
        for _ in recipients if lmtp else recipients[:1]:
            self.say(reply)

    def hand_on(self, sender, recipients, message):
        with smtplib.SMTP("127.0.0.1", self.server.peer.next_port) as client:
            client.ehlo()
            for attributes in self.origin:
                client.docmd("XFORWARD", attributes)
            client.mail(sender)
            for recipient in recipients:
                client.rcpt(recipient)
            code, text = client.data(message)
        return f"250 2.0.0 from MTA(smtp:[127.0.0.1]:{self.server.peer.next_port}): " \
               f"{code} {text.decode()}"


class MilterPeer(Peer):
    """A mail filter (the milter protocol of libmilter, version 6) that refuses at the end of each
    message with `reply`."""

    def __init__(self, reply):
        super().__init__(MilterConversation)
        self.reply = reply


class MilterConversation(socketserver.StreamRequestHandler):
    def answer(self, command, data=b""):
        self.wfile.write(struct.pack(">I", len(data) + 1) + command + data)

    def handle(self):
        while head := self.rfile.read(5):
            length, command = struct.unpack(">Ic", head)
            self.rfile.read(length - 1)
            if command == b"O":  # options: nothing to change, all events wanted
                self.answer(b"O", struct.pack(">III", 6, 0, 0))
            elif command == b"E":  # end of the message
                self.answer(b"y", self.server.peer.reply.encode() + b"\0")
            elif command not in b"DAQ":  # macros, abort and quit have no answer
                self.answer(b"c")


class NameServer(Peer):
    """Answers DNS queries for addresses (RFC 1035) from a table of names; no other name exists."""

    def __init__(self, addresses):
        super().__init__(NameQuery, socketserver.ThreadingUDPServer, port=53)
        self.addresses = addresses


class NameQuery(socketserver.BaseRequestHandler):
    def handle(self):
        query, connection = self.request
        end, labels = 12, []
        while query[end]:
            labels.append(query[end + 1:end + 1 + query[end]].decode())
            end += 1 + query[end]
        kind = struct.unpack(">H", query[end + 1:end + 3])[0]
        found = self.server.peer.addresses.get(".".join(labels).lower())
        answer = b""
        if found and kind == 1:
            answer = struct.pack(">HHHIH", 0xC00C, 1, 1, 60, 4) + socket.inet_aton(found)
        flags = 0x8180 if found else 0x8183
        head = query[:2] + struct.pack(">HHHHH", flags, 1, 1 if answer else 0, 0, 0)
        connection.sendto(head + query[12:end + 5] + answer, self.client_address)
