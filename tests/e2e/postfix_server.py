"""A real Postfix with a configuration, queue and log of its own."""

import json
import pathlib
import shutil
import subprocess

from waiting import wait_for

PROJECT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = pathlib.Path("/tmp/postfix-test")
RSYSLOG = FOLDER / "rsyslog"
CONFIGURATION = FOLDER / "etc"
QUEUE = FOLDER / "queue"
MAILBOXES = FOLDER / "mailboxes"

MAIN = f"""
compatibility_level = 3.6
queue_directory = {QUEUE}
data_directory = {FOLDER}/data
myhostname = mx.test
mydestination = mx.test
inet_interfaces = loopback-only
inet_protocols = ipv4
mynetworks = 127.0.0.0/8
smtpd_relay_restrictions = permit_mynetworks reject_unauth_destination
smtpd_peername_lookup = no
# A message id that is missing stays so, as in a mail from elsewhere.
local_header_rewrite_clients =
smtp_dns_support_level = disabled
smtp_host_lookup = native
smtpd_authorized_xclient_hosts = 127.0.0.1
mail_spool_directory = {MAILBOXES}/
virtual_mailbox_domains = virtual.test
virtual_mailbox_base = {MAILBOXES}
virtual_uid_maps = static:65534
virtual_gid_maps = static:65534
header_checks = regexp:{CONFIGURATION}/header_checks
# Nothing is tried again by itself.
minimal_backoff_time = 1h
maximal_backoff_time = 1h
"""

# The daemons of a Postfix, none of them in a chroot.
MASTER = """
pickup    unix  n - n 60 1 pickup
cleanup   unix  n - n - 0 cleanup
qmgr      unix  n - n 300 1 qmgr
rewrite   unix  - - n - - trivial-rewrite
bounce    unix  - - n - 0 bounce
defer     unix  - - n - 0 bounce
proxymap  unix  - - n - - proxymap
showq     unix  n - n - - showq
error     unix  - - n - - error
retry     unix  - - n - - error
local     unix  - n n - - local
virtual   unix  - n n - - virtual
smtp      unix  - - n - - smtp
lmtp      unix  - - n - - lmtp
"""

TRADITIONAL_LOG = f"""
mail.* action(type="omfile" file="{FOLDER}/mail.log" template="RSYSLOG_TraditionalFileFormat")
"""


class PostfixServer:
    """Postfix and an rsyslogd with the configuration that we ship. That hands the log to the
    collector, and writes it with RFC 3164 stamps to `log` and with RFC 3339 stamps to `new_log`."""

    log = FOLDER / "mail.log"
    new_log = RSYSLOG / "log/mail.log"

    def __init__(self, program, settings, services, header_checks):
        """program: the collector; settings: lines of main.cf; services: lines of master.cf;
        header_checks: its lines."""
        self.program = program
        shutil.rmtree(FOLDER, ignore_errors=True)
        for folder in (CONFIGURATION, QUEUE, MAILBOXES, FOLDER / "data", RSYSLOG / "rsyslog.d"):
            folder.mkdir(parents=True)
        MAILBOXES.chmod(0o1777)
        shutil.chown(FOLDER / "data", "postfix")
        (CONFIGURATION / "main.cf").write_text(MAIN + settings)
        (CONFIGURATION / "master.cf").write_text(MASTER + services)
        (CONFIGURATION / "header_checks").write_text(header_checks)
        (RSYSLOG / "rsyslog.d/20-traditional.conf").write_text(TRADITIONAL_LOG)
        self.processes = []

    def start(self):
        self._spawn([PROJECT / "scripts/sandbox-rsyslogd", self.program, RSYSLOG])
        wait_for(pathlib.Path("/dev/log").exists, "rsyslogd to open /dev/log")
        self._spawn(["postfix", "-c", CONFIGURATION, "start-fg"])
        # It says so when all of its services listen.
        wait_for(lambda: "daemon started" in self._logged(), "Postfix to start")

    def stop(self):
        """Ends both; the logs are whole then."""
        while self.processes:
            process = self.processes.pop()
            process.terminate()
            process.wait()

    def configure(self, setting):
        self._run("postconf", "-e", setting)
        self._run("postfix", "reload")

    def expire(self, queue_id):
        self._run("postsuper", "-e", queue_id)

    def queue(self):
        """Queue id and queue name of each mail that is not done with."""
        listed = self._run("postqueue", "-j").splitlines()
        return {mail["queue_id"]: mail["queue_name"] for mail in map(json.loads, listed)}

    def wait_until_all_is_tried(self):
        """Waits until each mail is delivered, given up or deferred."""
        wait_for(lambda: set(self.queue().values()) <= {"deferred"}, "all mails to be tried")

    def retry_until_left(self, queue_ids):
        """Has deferred mails tried again until no others are left than these."""
        def is_done():
            self._run("postqueue", "-f")
            return set(self.queue()) <= set(queue_ids)
        wait_for(is_done, f"all mails but {queue_ids} to be done with", pause=0.3)

    def _logged(self):
        return self.log.read_text(errors="replace") if self.log.exists() else ""

    def _run(self, command, *arguments):
        return subprocess.run([command, "-c", CONFIGURATION, *arguments], check=True, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE).stdout

    def _spawn(self, arguments):
        self.processes.append(subprocess.Popen(arguments))
