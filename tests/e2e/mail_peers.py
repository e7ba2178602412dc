"""The other ends that a mail server talks to, as threads of the test."""

import smtplib
import socket
import socketserver
import threading


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class LoopbackServer(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True


class Peer:
    """A server on loopback from start() to stop(). Kind is a request handler; it finds this object
    as self.server.peer."""

    def __init__(self, kind):
        self.kind = kind
        self.port = free_port()
        self.server = None

    def start(self):
        self.server = LoopbackServer(("127.0.0.1", self.port), self.kind)
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
    does.
    """

    def __init__(self, refusals=None, next_port=None):
        super().__init__(SmtpConversation)
        self.refusals = {name: list(replies) for name, replies in (refusals or {}).items()}
        self.next_port = next_port

    def refusal(self, recipient):
        replies = self.refusals.get(recipient)
        return replies.pop(0) if replies else None


class SmtpConversation(socketserver.StreamRequestHandler):
    def say(self, line):
        self.wfile.write(line.encode() + b"\r\n")

    def handle(self):
        self.say("220 peer.test ESMTP")
        lmtp, sender, recipients = False, "", []
        while line := self.rfile.readline():
            verb, _, argument = line.decode("utf-8", "replace").strip().partition(" ")
            verb = verb.upper()
            if verb in ("EHLO", "HELO", "LHLO"):
                lmtp = verb == "LHLO"
                self.say("250-peer.test")
                self.say("250 8BITMIME")
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
            client.mail(sender)
            for recipient in recipients:
                client.rcpt(recipient)
            code, text = client.data(message)
        return f"250 2.0.0 from MTA(smtp:[127.0.0.1]:{self.server.peer.next_port}): " \
               f"{code} {text.decode()}"
