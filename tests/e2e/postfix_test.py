#!/usr/bin/python3 -I
"""A real Postfix on loopback, whose real log becomes rows of the mail and the security log.

Runs in the sandbox. Its argument is the program.
"""

import collections
import contextlib
import email.header
import pathlib
import shutil
import smtplib
import socket
import sqlite3
import subprocess
import sys
import time
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))

from mail_peers import SmtpPeer, free_port
from postfix_server import FOLDER, PostfixServer
from waiting import wait_for

PROGRAM = sys.argv.pop(1)
SPOOL = pathlib.Path("/var/spool/@PostCube-Server/aggr_log")
OUTSIDE = "203.0.113.5"
OTHER_FIELD = "Content-Type: text/plain"

ANN = "ann@virtual.test"
BOB = "bob@virtual.test"
CARL = "carl@remote.test"
SEND, RECEIVE, BOUNCE, RESEND = range(4)

# A mail, and of each row that it makes the status, recipient and original recipient. Its subject
# names it. Those from outside come without a message id.
Mail = collections.namedtuple("Mail", "subject sender recipients rows port source",
                              defaults=["in", None])
MAILS = (
    Mail("outwards", ANN, [CARL], [(SEND, CARL, "")]),
    Mail("inwards", CARL, [ANN], [(RECEIVE, ANN, "")]),
    Mail("to an alias", CARL, ["team@virtual.test"],
         [(RECEIVE, ANN, "team@virtual.test"), (RECEIVE, BOB, "team@virtual.test")]),
    Mail("to a local user", CARL, ["root@mx.test"], [(RECEIVE, "admin@mx.test", "root@mx.test")]),
    Mail("to a local alias elsewhere", ANN, ["away@mx.test"], [(SEND, CARL, "away@mx.test")]),
    Mail("by lmtp and pipe", ANN, ["one@lmtp.test", "two@pipe.test"],
         [(RECEIVE, "one@lmtp.test", ""), (RECEIVE, "two@pipe.test", "")]),
    Mail("refused elsewhere", ANN, ["nobody@remote.test"], [(BOUNCE, "nobody@remote.test", "")]),
    Mail("one of each", ANN, [CARL, "nobody@remote.test", "busy@remote.test", BOB],
         [(SEND, CARL, ""), (BOUNCE, "nobody@remote.test", ""), (RESEND, "busy@remote.test", ""),
          (RECEIVE, BOB, "")]),
    Mail("to a server that is down at first", ANN, ["x@late.test"], [(RESEND, "x@late.test", "")]),
    Mail("expired", ANN, ["x@gone.test"], [(BOUNCE, "x@gone.test", "")]),
    Mail("made to expire", ANN, ["x@gone.test"], [(BOUNCE, "x@gone.test", "")]),
    Mail("filtered", ANN, [CARL, BOB], [(SEND, CARL, ""), (RECEIVE, BOB, "")], "filter"),
    Mail("nameless and deferred", CARL, ["later@lmtp.test"], [(RESEND, "later@lmtp.test", "")],
         source=OUTSIDE),
    Mail("Viele Grüße, ganz weit weg aus Österreich, und \N{snowman}!", ANN, [BOB],
         [(RECEIVE, BOB, "")]),
    Mail("you from eve[192.0.2.1]; from=<eve@bad.test> to=<eve@bad.test>", ANN, [BOB],
         [(RECEIVE, BOB, "")]),
)
# Those have another queue id at the end.
IN_QUEUE_AGAIN = ("filtered", "to a local alias elsewhere")
# The notifications of those mails that bounced; Postfix logs no subject of its own mails.
NOTIFICATIONS = [(RECEIVE, "", ANN, "")] * 4

# A refusal, and the type of its row.
Refusal = collections.namedtuple("Refusal", "subject sender recipient port type")
REFUSALS = (
    Refusal("relayed", "eve@bad.test", CARL, "strict", "reject"),
    Refusal("to nobody", "eve@bad.test", "none@virtual.test", "strict", "reject"),
    Refusal("from an unwanted address", "evil@bad.test", ANN, "strict", "blacklist"),
    Refusal("win the lottery", "eve@bad.test", ANN, "in", "content"),
    Refusal("with a program", "eve@bad.test", ANN, "in", "attachment"),
)

MAIL_ROWS = sorted(
    [(mail.subject, row[0], mail.sender, *row[1:]) for mail in MAILS for row in mail.rows] +
    [("", *row) for row in NOTIFICATIONS])
SECURITY_ROWS = sorted((each.type, OUTSIDE, each.sender, each.recipient) for each in REFUSALS)

SETTINGS = """
virtual_mailbox_maps = inline:{{ {{ann@virtual.test=ann/}}, {{bob@virtual.test=bob}} }}
virtual_alias_maps = inline:{{ {{team@virtual.test=ann@virtual.test bob@virtual.test}} }}
alias_maps = inline:{{ {{root=admin}}, {{away=carl@remote.test}} }}
relay_domains = lmtp.test
mime_header_checks = regexp:{{ {{/filename=.*[.]exe/ REJECT No programs}} }}
transport_maps = inline:{{ {{remote.test=smtp:[127.0.0.1]:{remote}}},
    {{late.test=smtp:[127.0.0.1]:{late}}}, {{gone.test=smtp:[127.0.0.1]:{gone}}},
    {{lmtp.test=lmtp:[127.0.0.1]:{lmtp}}}, {{pipe.test=script:}} }}
"""
HEADER_CHECKS = """
/^Subject: .*lottery/ REJECT No lotteries
/^Subject:/ WARN
"""
SERVICES = """
{in} inet n - n - - smtpd
{filter} inet n - n - - smtpd -o content_filter=scan:[127.0.0.1]:{scanner}
{back} inet n - n - - smtpd -o receive_override_options=no_header_body_checks
{strict} inet n - n - - smtpd -o mynetworks=
    -o {{smtpd_sender_restrictions=check_sender_access inline:{{{{evil@bad.test=REJECT}}}}}}
scan unix - - n - - smtp
script unix - n n - - pipe user=nobody argv=/bin/cat
"""


def has_one_identity():
    """Whether this is the sandbox of an ordinary user; Postfix needs several identities."""
    return pathlib.Path("/proc/self/uid_map").read_text().split()[2] == "1"


class MailWorld:
    """Postfix and everybody it talks to. Everything happens in run()."""

    def __init__(self):
        self.ports = {name: free_port() for name in (
            "in", "filter", "back", "strict", "gone")}
        self.late = SmtpPeer()
        peers = {
            "remote": SmtpPeer({"nobody@remote.test": ["550 5.1.1 No such user"] * 2,
                                "busy@remote.test": ["450 4.2.0 Try again"]}),
            "lmtp": SmtpPeer({"later@lmtp.test": ["450 4.2.0 Try again"]}),
            "scanner": SmtpPeer(next_port=self.ports["back"]),
        }
        self.running = list(peers.values())
        names = {name: peer.port for name, peer in peers.items()} | self.ports
        names["late"] = self.late.port
        self.postfix = PostfixServer(PROGRAM, SETTINGS.format(**names), SERVICES.format(**names),
                                     HEADER_CHECKS)
        self.queue_ids = {}  # by subject, the first one of each mail

    def run(self):
        with contextlib.ExitStack() as stack:
            for peer in self.running:
                peer.start()
                stack.callback(peer.stop)
            stack.callback(self.postfix.stop)
            self.postfix.start()
            for mail in MAILS:
                self.queue_ids[mail.subject] = self.send(mail)
            for refusal in REFUSALS:
                self.be_refused(refusal)
            self.see_to_the_deferred(stack)
            wait_for(lambda: len(mail_rows()) >= len(MAIL_ROWS), "the rows of all mails")
            wait_for(lambda: len(security_rows()) >= len(SECURITY_ROWS), "those of the refusals")

    def see_to_the_deferred(self, stack):
        self.postfix.wait_until_all_is_tried()
        self.late.start()
        stack.callback(self.late.stop)
        expired = self.queue_ids["expired"]
        made_to_expire = self.queue_ids["made to expire"]
        self.postfix.retry_until_left([expired, made_to_expire])
        self.postfix.expire(made_to_expire)
        self.postfix.retry_until_left([expired])
        self.postfix.configure("maximal_queue_lifetime=0")
        self.postfix.retry_until_left([])

    @contextlib.contextmanager
    def client(self, port, source=None):
        with smtplib.SMTP("127.0.0.1", self.ports[port]) as client:
            client.ehlo("client.test")
            if source:
                client.docmd("XCLIENT", f"ADDR={source} NAME=eve.test")
                client.ehlo("eve.test")
            yield client

    @staticmethod
    def message(subject, field):
        encoded = subject
        if not subject.isascii():
            encoded = email.header.Header(subject).encode(linesep="\r\n")
        return (f"Subject: {encoded}\r\n{field}\r\n\r\nHello\r\n").encode()

    def send(self, mail):
        """Gives the queue id."""
        field = OTHER_FIELD if mail.source else f"Message-ID: {message_id(mail.subject)}"
        with self.client(mail.port, mail.source) as client:
            client.mail(mail.sender)
            for recipient in mail.recipients:
                client.rcpt(recipient)
            _, reply = client.data(self.message(mail.subject, field))
        return reply.decode().rpartition("queued as ")[2]

    def be_refused(self, refusal):
        has_program = refusal.type == "attachment"
        field = 'Content-Disposition: attachment; filename="a.exe"' if has_program else OTHER_FIELD
        with self.client(refusal.port, OUTSIDE) as client:
            try:
                client.sendmail(refusal.sender, refusal.recipient,
                                self.message(refusal.subject, field))
            except smtplib.SMTPException:
                return
        raise AssertionError(f"the mail {refusal.subject} was not refused")


def message_id(subject):
    return f"<{subject.encode().hex()}@client.test>"


def empty_spool():
    for leftover in SPOOL.iterdir():
        shutil.rmtree(leftover) if leftover.is_dir() else leftover.unlink()


def collect(log):
    """What the collector says at the end."""
    done = subprocess.run([PROGRAM, "collect", "--mail", "--input", log], check=True, text=True,
                          capture_output=True)
    return done.stdout + done.stderr


def rows(file, query):
    """Sorted; none as long as there is no such store."""
    if not (SPOOL / file).exists():
        return []
    with contextlib.closing(sqlite3.connect(SPOOL / file)) as store:
        return sorted(store.execute(query).fetchall())


def mail_rows():
    return rows("aggr_mail_log.db",
                "SELECT subject, status, mail_from, mail_to, ori_mail_to FROM mail_log_table")


def security_rows():
    return rows("aggr_security_log.db",
                "SELECT type, src, sender, recipient FROM security_log_table")


class PostfixTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        if has_one_identity():
            raise unittest.SkipTest("Postfix changes to other users, and there is only one here")
        if not shutil.which("postfix"):
            raise AssertionError("there is no Postfix; scripts/setup --full installs it")
        empty_spool()
        world = MailWorld()
        cls.begin = int(time.time())
        world.run()
        cls.end = time.time()
        cls.log, cls.new_log = world.postfix.log, world.postfix.new_log
        cls.queue_ids = world.queue_ids
        cls.live_rows = (mail_rows(), security_rows())

    def setUp(self):
        empty_spool()

    def test_rows_come_while_it_runs(self):
        self.assertEqual(self.live_rows, (MAIL_ROWS, SECURITY_ROWS))

    def test_each_log_gives_the_rows(self):
        for log in (self.log, self.new_log):
            with self.subTest(log.name):
                empty_spool()
                said = collect(log)
                self.assertEqual(mail_rows(), MAIL_ROWS)
                self.assertEqual(security_rows(), SECURITY_ROWS)
                self.assertIn(f"collected {len(MAIL_ROWS)} mail, {len(SECURITY_ROWS)} security, ",
                              said)
                self.assertIn("unreadable 0", said)

    def test_what_else_is_in_a_row(self):
        collect(self.log)
        host = socket.gethostname().partition(".")[0]
        found = rows("aggr_mail_log.db",
                     "SELECT subject, message_id, queue_id, host, size, date FROM mail_log_table")
        for subject, message, queue_id, logged_by, size, date in found:
            with self.subTest(subject):
                if subject:
                    is_nameless = subject.startswith("nameless")
                    self.assertEqual(message, "<>" if is_nameless else message_id(subject))
                    self.assertGreater(size, len(MailWorld.message(subject, OTHER_FIELD)))
                    if subject not in IN_QUEUE_AGAIN:
                        self.assertEqual(queue_id, self.queue_ids[subject])
                self.assertEqual(logged_by, host)
                self.assertTrue(self.begin <= date <= self.end, date)

    def test_the_log_in_two_pieces_gives_the_rows(self):
        lines = self.log.read_bytes().splitlines(keepends=True)
        piece = FOLDER / "piece"
        for cut in range(1, len(lines), len(lines) // 8):
            with self.subTest(lines[cut]):
                empty_spool()
                for part in (lines[:cut], lines[cut:]):
                    piece.write_bytes(b"".join(part))
                    collect(piece)
                self.assertEqual(mail_rows(), MAIL_ROWS)
                self.assertEqual(security_rows(), SECURITY_ROWS)


if __name__ == "__main__":
    unittest.main()
