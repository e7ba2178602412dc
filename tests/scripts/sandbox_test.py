#!/usr/bin/python3 -I
"""Tests scripts/sandbox from the outside."""

import os
import pathlib
import signal
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
SANDBOX = str(PROJECT / "scripts" / "sandbox")


def sandbox(*arguments, **options):
    return subprocess.run(
        [SANDBOX, *arguments], capture_output=True, text=True, check=False, **options)


class SandboxTest(unittest.TestCase):
    def need_namespaces(self):
        if sandbox("printenv", "MAILSERVER_LOG_SANDBOX").stdout != "namespaces\n":
            self.skipTest("no namespaces here, so the command sees this machine as it is")

    def test_exit_status_is_the_commands(self):
        for command, status in (
            (["true"], 0),
            (["sh", "-c", "exit 7"], 7),
            (["sh", "-c", "kill -SEGV $$"], 128 + signal.SIGSEGV),
            (["no-such-command"], 127),
            ([], 2),
            (["--bind"], 2),
        ):
            with self.subTest(command):
                self.assertEqual(sandbox(*command).returncode, status)

    def test_signals_reach_the_command(self):
        script = ("import signal, sys; number = int(sys.argv[1]);"
                  "signal.pthread_sigmask(signal.SIG_BLOCK, [number]);"
                  "print('up', flush=True); print(int(signal.sigwait([number])))")
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGUSR1):
            with self.subTest(number.name), subprocess.Popen(
                    [SANDBOX, "/usr/bin/python3", "-c", script, str(int(number))],
                    stdout=subprocess.PIPE, text=True) as process:
                self.assertEqual(process.stdout.readline(), "up\n")
                process.send_signal(number)
                self.assertEqual(process.stdout.read(), f"{int(number)}\n")
                self.assertEqual(process.wait(), 0)

    def test_what_still_runs_ends_with_the_command(self):
        # The background process holds the pipe open: communicate() returns when it is gone.
        result = sandbox("sh", "-c", "sleep 1000 & exit 3", timeout=60)
        self.assertEqual(result.returncode, 3)

    def test_only_named_folders_are_writable(self):
        self.need_namespaces()
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(sandbox("--bind", folder, "touch", f"{folder}/made").returncode, 0)
            self.assertTrue(os.path.exists(f"{folder}/made"))
            self.assertNotEqual(sandbox("touch", f"{folder}/made").returncode, 0)
        for file in (f"{PROJECT}/made", "/usr/bin/made", "/etc/made"):
            with self.subTest(file):
                self.assertIn("Read-only file system", sandbox("touch", file).stderr)

    def test_network_is_left_out_on_request(self):
        self.need_namespaces()
        script = "tail -n +3 /proc/net/dev | cut -d: -f1; echo >/dev/udp/127.0.0.1/9 && echo up"
        result = sandbox("--no-network", "bash", "-c", script)
        self.assertEqual(result.stdout.split(), ["lo", "up"], result.stderr)

    def test_another_identity_reaches_the_project(self):
        if os.geteuid() != 0:
            self.skipTest("an ordinary user has no second identity in a sandbox")
        # Whatever the modes of the folders above it on this machine.
        result = sandbox("setpriv", "--reuid", "8025", "--clear-groups", "ls", str(PROJECT))
        self.assertIn("scripts", result.stdout, result.stderr)

    def test_leaves_paths_alone_that_exist(self):
        self.need_namespaces()
        # Inside a sandbox the paths exist, and without bubblewrap there is no second one.
        inner = 'unset MAILSERVER_LOG_SANDBOX; PATH=/nowhere "$1" /bin/true; test -d /volume1'
        result = sandbox("sh", "-c", inner, "sh", SANDBOX)
        self.assertIn("no namespaces here, and /volume1 exists on this machine", result.stderr)
        self.assertEqual(result.returncode, 0)


if __name__ == "__main__":
    unittest.main()
