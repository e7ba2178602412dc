#!/usr/bin/python3 -I
"""endpoint.py: how long requests at the endpoint take while rows are loaded.

usage: bench/endpoint.py [--rows N] [--rate N] [--parallel N] [--requests N] [BUILD]

Fifty clients at once list pages of the mail log behind a real lighttpd, each one request after the
other, while rows are loaded at a steady rate. Prints, for each kind of page, the median, the 95th and
the 99th percentile.
BUILD is a build folder with the program and the endpoint [build/release].
"""

import argparse
import base64
import contextlib
import http.client
import json
import os
import pathlib
import socket
import subprocess
import sys
import tempfile
import threading
import time

PROJECT = pathlib.Path(__file__).resolve().parents[1]
ADDRESS = "/webapi/mailserver-log.cgi?api=MERO.PostCubeServer.Log.Mail&method=list&version=1"
QUESTIONS = {
    "newest rows": "&limit=50",
    "a later page": "&limit=50&offset=5000",
    "sorted by sender": "&limit=50&sort_by=mail_from",
    "a part of a sender": "&limit=50&mail_from=user77",
    "one status": "&limit=50&status=bounce",
}


def options():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--rows", type=int, default=200000)
    parser.add_argument("--rate", type=int, default=1000)
    parser.add_argument("--parallel", type=int, default=50)
    parser.add_argument("--requests", type=int, default=500, help="of each kind")
    parser.add_argument("build", nargs="?", default=str(PROJECT / "build/release"))
    return parser.parse_args()


def enter_sandbox(build):
    with tempfile.TemporaryDirectory(dir=build, prefix="bench-endpoint.") as work:
        os.environ["BENCH_FOLDER"] = work
        return subprocess.run([PROJECT / "scripts/sandbox", "--bind", work, *sys.argv],
                              check=False).returncode


def row(number, date):
    return json.dumps({
        "date": date, "message_id": f"<{number}@example.org>", "size": number * 7919 % 100000,
        "mail_from": f"user{number % 5000}@example.org", "mail_to": f"to{number % 700}@example.com",
        "status": number % 4, "subject": f"about {number % 9973}", "host": "mx1"}) + "\n"


class Loader(threading.Thread):
    """Loads rows at a steady rate, a batch every tenth of a second."""

    def __init__(self, program, rate):
        super().__init__()
        self.rate = rate
        self.stopped = threading.Event()
        self.loaded = 0
        self.program = subprocess.Popen(
            [program, "load", "mail", "--batch", str(rate // 10)], stdin=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True)

    def run(self):
        begin = time.monotonic()
        while not self.stopped.is_set():
            for _ in range(self.rate // 10):
                self.program.stdin.write(row(self.loaded, int(time.time())))
                self.loaded += 1
            self.program.stdin.flush()
            self.stopped.wait(max(0, begin + self.loaded / self.rate - time.monotonic()))
        self.program.stdin.close()
        self.program.wait()


class Client(threading.Thread):
    def __init__(self, port, question, count):
        super().__init__()
        self.port, self.question, self.count = port, question, count
        self.times, self.failures = [], 0

    def run(self):
        login = {"Authorization": "Basic " + base64.b64encode(b"admin:secret").decode()}
        for _ in range(self.count):
            begin = time.monotonic()
            with contextlib.closing(http.client.HTTPConnection("127.0.0.1", self.port)) as server:
                server.request("GET", ADDRESS + self.question, headers=login)
                response = server.getresponse()
                body = json.loads(response.read())
            self.times.append(time.monotonic() - begin)
            self.failures += response.status != 200 or len(body["data"]["log_list"]) != 50


def start_server(endpoint):
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    server = subprocess.Popen([PROJECT / "scripts/sandbox-lighttpd", endpoint, "/tmp/bench",
                               str(port)], stderr=subprocess.DEVNULL)
    while server.poll() is None:
        with contextlib.suppress(ConnectionRefusedError):
            socket.create_connection(("127.0.0.1", port)).close()
            return server, port
    sys.exit("endpoint.py: lighttpd does not start")


def ask(endpoint, question, chosen):
    """Asks one kind of question; gives the times of all requests and the number of failures."""
    server, port = start_server(endpoint)
    clients = [Client(port, question, chosen.requests // chosen.parallel)
               for _ in range(chosen.parallel)]
    for client in clients:
        client.start()
    for client in clients:
        client.join()
    server.terminate()
    server.wait()
    return (sorted(time for client in clients for time in client.times),
            sum(client.failures for client in clients))


def main():
    chosen = options()
    build = os.path.realpath(chosen.build)
    program, endpoint = (f"{build}/apps/{name}" for name in (
        "mailserver-log/mailserver-log", "webapi/mailserver-log.cgi"))
    if not os.access(endpoint, os.X_OK):
        sys.exit(f"endpoint.py: there is no {endpoint}: build it first")
    if os.environ.get("MAILSERVER_LOG_SANDBOX") != "namespaces":
        sys.exit(enter_sandbox(build))
    # The files of the sandbox lie in memory, those of the product on a disk.
    subprocess.run(["mount", "--bind", os.environ["BENCH_FOLDER"], "/volume1/@PostCube-Server"],
                   check=True)
    os.mkdir("/volume1/@PostCube-Server/aggr_log")
    newest = int(time.time())
    rows = "".join(row(i, newest - chosen.rows + i) for i in range(chosen.rows))
    subprocess.run([program, "load", "mail"], input=rows, text=True, check=True,
                   stderr=subprocess.DEVNULL)

    loader = Loader(program, chosen.rate)
    loader.start()
    begin = time.monotonic()
    for name, question in QUESTIONS.items():
        times, failures = ask(endpoint, question, chosen)
        median, p95, p99 = (1000 * times[len(times) * part // 100] for part in (50, 95, 99))
        print(f"{name}: {len(times)} requests, {chosen.parallel} at once, {failures} failed, "
              f"median {median:.0f} ms, p95 {p95:.0f} ms, p99 {p99:.0f} ms", flush=True)
    rate = loader.loaded / (time.monotonic() - begin)
    loader.stopped.set()
    loader.join()
    print(f"{chosen.rows} rows at the beginning, {rate:.0f} more a second")


if __name__ == "__main__":
    main()
