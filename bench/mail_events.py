#!/usr/bin/python3
"""How many lines of a mail server's log the collector takes in a second, and in how much memory.

usage: bench/mail_events.py [--lines N] [--rounds N] [BUILD]

BUILD is a build folder with the program [build/release]. The log and the stores lie in a folder
beside it, on its disk, and are removed at the end. The collector runs on one core. The floor is the
sqlite3 program inserting the same rows into the same tables, in transactions of as many rows.
"""

import argparse
import os
import pathlib
import random
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

PROJECT = pathlib.Path(__file__).resolve().parent.parent
SPOOL = pathlib.Path("/volume1/@PostCube-Server/aggr_log")
START = 1795341600
ROWS_IN_TRANSACTION = 2500  # about as many as the collector's


def mail_lines(number, rng):
    """The lines of one mail, each with the seconds since its first line: most are received, some
    sent, deferred first, bounced or rejected; each comes with the noise of its connection."""
    queue_id = f"{0x4F9D000000 + number:X}"
    sender = f"user{rng.randrange(20000)}@example{rng.randrange(500)}.org"
    recipient = f"person{rng.randrange(2000)}@example.com"
    address = f"203.0.{rng.randrange(114)}.{rng.randrange(256)}"
    client = f"mail{rng.randrange(900)}.example.org[{address}]"
    yield 0, f"smtpd[{number % 90 + 100}]: connect from {client}"
    if rng.random() < 0.1:
        yield 0, (f"smtpd[{number % 90 + 100}]: NOQUEUE: reject: RCPT from {client}: 554 5.7.1 "
                  f"<{recipient}>: Relay access denied; from=<{sender}> to=<{recipient}> "
                  f"proto=ESMTP helo=<mail.example.org>")
        yield 0, f"smtpd[{number % 90 + 100}]: disconnect from {client} ehlo=1 mail=1 rcpt=0/1"
        return
    yield 0, f"smtpd[{number % 90 + 100}]: {queue_id}: client={client}"
    yield 0, f"cleanup[{number % 30 + 200}]: {queue_id}: message-id=<{rng.getrandbits(64):x}@example.org>"
    yield 0, (f"cleanup[{number % 30 + 200}]: {queue_id}: warning: header Subject: About number "
              f"{number} from {client}; from=<{sender}> to=<{recipient}> proto=ESMTP "
              f"helo=<mail.example.org>")
    yield 0, (f"qmgr[300]: {queue_id}: from=<{sender}>, size={rng.randrange(900, 90000)}, "
              f"nrcpt=1 (queue active)")
    yield 0, f"smtpd[{number % 90 + 100}]: disconnect from {client} ehlo=1 mail=1 rcpt=1 data=1"
    kind = rng.random()
    if kind < 0.05:
        yield 1, (f"smtp[400]: {queue_id}: to=<{recipient}>, relay=none, delay=30, "
                  f"delays=0.1/0/30/0, dsn=4.4.1, status=deferred (connect to mx: timed out)")
    status = "bounced (user unknown)" if kind > 0.97 else "sent (250 2.0.0 Ok)"
    agent = "lmtp" if kind < 0.7 else "smtp"
    yield 2, (f"{agent}[{number % 40 + 400}]: {queue_id}: to=<{recipient}>, "
              f"orig_to=<alias{number % 1000}@example.com>, relay=mx.example.com[192.0.2.1]:25, "
              f"delay=2, delays=0.1/0/1/0.9, dsn=2.0.0, status={status}")
    yield 2, f"qmgr[300]: {queue_id}: removed"


def write_log(path, count):
    """About 40 mails in each second, their lines mixed as they are on a busy server."""
    rng = random.Random(1)
    waiting = {}
    written = number = second = 0
    with open(path, "w", encoding="ascii") as log:
        while written < count:
            for _ in range(40):
                for after, text in mail_lines(number, rng):
                    waiting.setdefault(second + after, []).append(text)
                number += 1
            stamp = time.strftime("%b %e %H:%M:%S", time.localtime(START + second))
            for text in waiting.pop(second):
                log.write(f"{stamp} mx1 postfix/{text}\n")
                written += 1
            second += 1
    return written


def empty_spool():
    for path in SPOOL.iterdir():
        path.unlink()


def seconds_of(command, **arguments):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    start = time.monotonic()
    output = subprocess.run(command, check=True, capture_output=True, text=True, **arguments).stdout
    elapsed = time.monotonic() - start
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    processor = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    return elapsed, processor, output


def peak_memory(program, log):
    """MiB, of a run of its own, as the system counts the largest of all children."""
    reader = "import os, sys; pid = os.spawnv(os.P_NOWAIT, sys.argv[1], sys.argv[1:]); " \
             "print(os.wait4(pid, 0)[2].ru_maxrss)"
    output = subprocess.run(
        [sys.executable, "-c", reader, program, "collect", "--mail", "--input", log],
        check=True, capture_output=True, text=True).stdout
    return int(output.splitlines()[-1]) / 1024


def insert_script(path):
    """The rows that the collector stored, as statements for the sqlite3 program."""
    with open(path, "w", encoding="utf-8") as script:
        for store, table in (("aggr_mail_log", "mail_log_table"),
                             ("aggr_security_log", "security_log_table")):
            rows = subprocess.run(
                ["sqlite3", SPOOL / f"{store}.db", f".mode insert {table}",
                 f"SELECT * FROM {table}"],
                check=True, capture_output=True, text=True).stdout.splitlines()
            script.write(f".open {SPOOL / store}.db\n")
            for start in range(0, len(rows), ROWS_IN_TRANSACTION):
                script.write("BEGIN;\n")
                script.write("\n".join(rows[start:start + ROWS_IN_TRANSACTION]))
                script.write("\nCOMMIT;\n")


def measure(program, count, rounds, folder):
    log = f"{folder}/mail.log"
    lines = write_log(log, count)
    memory = peak_memory(program, log)
    insert_script(f"{folder}/rows.sql")
    ours, floors = [], []
    for number in range(rounds):
        for store in ("aggr_mail_log.db", "aggr_security_log.db"):
            table = "mail_log_table" if "mail_log" in store else "security_log_table"
            subprocess.run(["sqlite3", SPOOL / store, f"DELETE FROM {table}; VACUUM"], check=True)
        with open(f"{folder}/rows.sql", encoding="utf-8") as script:
            floor, _, _ = seconds_of(["sqlite3"], stdin=script)
        empty_spool()
        elapsed, processor, output = seconds_of([program, "collect", "--mail", "--input", log])
        print(f"round {number + 1}: sqlite3 {floor:.2f} s, collect {elapsed:.2f} s "
              f"({processor:.2f} s of the processor): {output.strip()}", file=sys.stderr)
        ours.append(elapsed)
        floors.append(floor)
    elapsed, floor = statistics.median(ours), statistics.median(floors)
    print(f"{lines} lines in {elapsed:.2f} s: {lines / elapsed:.0f} lines/s, {memory:.0f} MiB; "
          f"sqlite3 with the rows alone {floor:.2f} s, ratio {elapsed / floor:.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--lines", type=int, default=600000)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("build", nargs="?", type=pathlib.Path, default=PROJECT / "build/release")
    options = parser.parse_args()
    build = options.build.resolve()
    program = build / "apps/mailserver-log/mailserver-log"
    if not program.exists():
        sys.exit(f"mail_events.py: there is no {program}: build it first")
    if os.environ.get("MAILSERVER_LOG_SANDBOX") != "namespaces":
        folder = tempfile.mkdtemp(prefix="bench-mail-events.", dir=build)
        try:
            command = [PROJECT / "scripts/sandbox", "--bind", folder, __file__, "--lines",
                       str(options.lines), "--rounds", str(options.rounds), build]
            sys.exit(subprocess.run(command, env={**os.environ, "BENCH_FOLDER": folder},
                                    check=False).returncode)
        finally:
            shutil.rmtree(folder)
    folder = os.environ["BENCH_FOLDER"]
    # The files of the sandbox lie in memory, those of the product on a disk.
    os.mkdir(f"{folder}/disk")
    subprocess.run(["mount", "--bind", f"{folder}/disk", "/volume1/@PostCube-Server"], check=True)
    SPOOL.mkdir()
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
    measure(str(program), options.lines, options.rounds, folder)


if __name__ == "__main__":
    main()
