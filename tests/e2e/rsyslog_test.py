#!/usr/bin/python3 -I
"""The whole road: a call, a real rsyslogd with the configuration that we ship, the collector, a row.

Runs in the sandbox. Its argument is the program.
"""

import contextlib
import glob
import json
import os
import pathlib
import re
import shutil
import signal
import sqlite3
import subprocess
import sys
import syslog
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))

from waiting import wait_for

PROJECT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = sys.argv.pop(1)
FOLDER = pathlib.Path("/tmp/rsyslog-test")
SPOOL = pathlib.Path("/var/spool/@PostCube-Server/aggr_log")
STORE = SPOOL / "admin_log.db"
MAIL_STORE = SPOOL / "aggr_mail_log.db"


def command_of(process):
    with contextlib.suppress(FileNotFoundError, ProcessLookupError):
        return pathlib.Path(f"/proc/{process}/cmdline").read_text()
    return ""


def call(user, **params):
    subprocess.run([PROGRAM, "call", "Webapi_Queue_DeleteAll", "--user", user, "--params", "-"],
                   input=json.dumps(params), text=True, check=True)


def mail_rows():
    """Status, recipient and subject of all rows of the mail log."""
    if not MAIL_STORE.exists():
        return []
    with contextlib.closing(sqlite3.connect(MAIL_STORE, timeout=60)) as store:
        try:
            return store.execute(
                "SELECT status, mail_to, subject FROM mail_log_table ORDER BY mail_to").fetchall()
        except sqlite3.OperationalError:
            return []  # its tables are only being made


def log_mail(program, text):
    syslog.openlog(f"postfix/{program}", syslog.LOG_PID, syslog.LOG_MAIL)
    syslog.syslog(syslog.LOG_INFO, text)
    syslog.closelog()


def rows():
    """User and parameters of all rows."""
    if not STORE.exists():
        return []
    with contextlib.closing(sqlite3.connect(STORE, timeout=60)) as store:
        found = store.execute("SELECT user, webapi_param FROM admin_log ORDER BY rowid").fetchall()
    return [(user, json.loads(params)) for user, params in found]


@contextlib.contextmanager
def nobody_else_writes():
    """Holds the store so that it can be read but not written, as another writer does."""
    with contextlib.closing(sqlite3.connect(STORE, isolation_level=None)) as store:
        store.execute("BEGIN IMMEDIATE")
        yield
        store.execute("ROLLBACK")


class RsyslogTest(unittest.TestCase):
    def setUp(self):
        for leftover in (*SPOOL.iterdir(), FOLDER):
            shutil.rmtree(leftover) if leftover.is_dir() else leftover.unlink(missing_ok=True)
        self.addCleanup(shutil.rmtree, FOLDER)
        self.start()
        self.addCleanup(self.stop)

    def start(self):
        self.rsyslogd = subprocess.Popen([PROJECT / "scripts/sandbox-rsyslogd", PROGRAM, FOLDER])
        wait_for(lambda: os.path.exists("/dev/log"), "rsyslogd to open /dev/log")
        syslog.closelog()  # this process may still be connected to the one before

    def stop(self):
        self.rsyslogd.terminate()
        self.assertEqual(self.rsyslogd.wait(), 0)

    def collectors(self, option="collect\0--confirm"):
        """The processes of one of the two collectors."""
        found = set()
        for file in glob.glob(f"/proc/{self.rsyslogd.pid}/task/*/children"):
            with contextlib.suppress(FileNotFoundError):
                found.update(map(int, pathlib.Path(file).read_text().split()))
        return {child for child in found if option in command_of(child)}

    def bytes_read(self):
        """By the collector, which reads nothing while it waits for a line."""
        text = pathlib.Path(f"/proc/{next(iter(self.collectors()))}/io").read_text()
        return int(re.search(r"rchar: (\d+)", text)[1])

    def log(self, name):
        file = FOLDER / "log" / name
        return file.read_text() if file.exists() else ""

    def test_a_call_becomes_a_row_and_nothing_else(self):
        long = "x" * 60 * 1024
        # A raw tab in the line, and a line feed at the end of the parameters, as always.
        call("tab\tbetween", text='"quoted" \\ ünï #', long=long)
        syslog.syslog(syslog.LOG_MAIL | syslog.LOG_EMERG, "a real emergency")

        wait_for(rows, "the row")
        self.assertEqual(rows(), [("tab\tbetween", {"text": '"quoted" \\ ünï #', "long": long})])
        wait_for(lambda: "a real emergency" in self.log("emergencies"), "the emergency")
        for name in ("emergencies", "mail.log", "syslog"):
            self.assertNotIn("admin_log", self.log(name), name)

    def test_a_killed_collector_loses_and_doubles_nothing(self):
        call("first")
        wait_for(rows, "the first row")
        with nobody_else_writes():
            call("second")
            call("third")
            for _ in range(3):  # with the second line in hand, or on its way to the new collector
                collector = wait_for(self.collectors, "a collector")
                os.kill(collector.pop(), signal.SIGKILL)
        wait_for(lambda: len(rows()) >= 3, "all rows")
        call("fourth")
        wait_for(lambda: len(rows()) >= 4, "the fourth row")
        self.assertEqual([user for user, _ in rows()], ["first", "second", "third", "fourth"])

    def test_a_stop_of_rsyslog_loses_and_doubles_nothing(self):
        call("first")
        wait_for(rows, "the first row")
        with nobody_else_writes():
            before = self.bytes_read()
            call("second")
            wait_for(lambda: self.bytes_read() > before, "the collector to take the second line")
            call("third")
            call("fourth")
            self.stop()
        # The line in hand is the one that rsyslog does not keep.
        self.assertEqual([user for user, _ in rows()], ["first"])
        self.assertEqual(self.rejected(), ["second"])
        self.start()
        wait_for(lambda: len(rows()) >= 3, "all rows")
        self.assertEqual([user for user, _ in rows()], ["first", "third", "fourth"])
        self.assertEqual(self.rejected(), ["second"])

    def test_lines_of_the_mail_server_become_rows(self):
        subject = "tab\tand ünï"
        expected = []
        for number in range(10, 40):
            queue_id = f"4F9D1954{number}"
            log_mail("cleanup", f"{queue_id}: warning: header Subject: {subject} from "
                                "x[192.0.2.1]; from=<bob@example.org> to=<a@example.com> "
                                "proto=ESMTP helo=<x>")
            log_mail("smtp", f"{queue_id}: to=<{number}@example.com>, relay=x[192.0.2.1]:25, "
                             "delay=1, dsn=2.0.0, status=sent (250 Ok)")
            expected.append((0, f"{number}@example.com", subject))
            if number % 10 == 0:
                wait_for(lambda: len(mail_rows()) >= len(expected), "the rows before")
                collector = wait_for(lambda: self.collectors("--mail"), "a collector")
                os.kill(collector.pop(), signal.SIGKILL)
        wait_for(lambda: len(mail_rows()) >= len(expected), "the rows")
        self.assertEqual(mail_rows(), expected)
        self.assertIn("status=sent", self.log("mail.log"))
        call("admin")
        wait_for(rows, "the row of the admin log")
        self.assertEqual(mail_rows(), expected)

    @staticmethod
    def rejected():
        return re.findall('"USER":"([^"]*)"', (SPOOL / "rejected.log").read_text())


if __name__ == "__main__":
    unittest.main()
