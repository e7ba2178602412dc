#!/usr/bin/python3 -I
"""The management endpoint behind a real lighttpd with the configuration that we ship.

Runs in the sandbox. Its arguments are the program and the endpoint.
"""

import base64
import contextlib
import glob
import http.client
import json
import os
import pathlib
import queue
import shutil
import socket
import sqlite3
import stat
import subprocess
import sys
import threading
import unittest
import urllib.parse

import jsonschema

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))

from waiting import wait_for

PROJECT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM, ENDPOINT = sys.argv[1:3]
del sys.argv[1:3]
FOLDER = pathlib.Path("/tmp/endpoint-test")
PACKAGE = pathlib.Path("/var/packages/PostCube-Server")
HANDLERS = PACKAGE / "target/webapi"
SETTINGS = PACKAGE / "etc/mailserver.conf"
SPOOL = pathlib.Path("/var/spool/@PostCube-Server/aggr_log")
ARCHIVE = pathlib.Path("/volume1/archive of logs")
ADDRESS = "/webapi/mailserver-log.cgi"
DOCUMENT = json.loads((PROJECT / "docs/openapi.json").read_text())

ADMIN_LOG = "MERO.PostCubeServer.Audit.AdminLog"
MAIL_LOG = "MERO.PostCubeServer.Log.Mail"
SECURITY_LOG = "MERO.PostCubeServer.Log.Security"
STATISTIC = "MERO.PostCubeServer.Statistic"
DOMAIN = "MERO.PostCubeServer.Domain"
QUEUE = "MERO.PostCubeServer.Queue"

# The statistics belong to the mail server's own user.
SECOND_USER = int(pathlib.Path("/proc/self/uid_map").read_text().split()[2]) > 1

LIMIT_OF_QUERY = 16 << 10
LIMIT_OF_BODY = 1 << 20


def program(*arguments, text=""):
    return subprocess.run([PROGRAM, *arguments], input=text, check=True, capture_output=True,
                          text=True).stdout


def load(store, rows):
    program("load", store, text="".join(json.dumps(row) + "\n" for row in rows))


def handler(api, script):
    file = HANDLERS / api
    file.write_text(f"#!/bin/sh\n{script}\n")
    file.chmod(0o755)


def empty(folder):
    for entry in folder.iterdir():
        shutil.rmtree(entry) if entry.is_dir() and not entry.is_symlink() else entry.unlink()


# What the document tells about the methods.
METHODS = {(row["api"], row["method"]): row for row in DOCUMENT["x-methods"]}


def schema(name):
    return {"$ref": f"#/components/schemas/{name}", "components": DOCUMENT["components"]}


def check(method, reply):
    """Looks whether the document tells of such a reply to a method."""
    responses = DOCUMENT["paths"][ADDRESS]["post"]["responses"]
    if str(reply.status) not in responses:
        raise AssertionError(f"the document has no status {reply.status}")
    if reply.status == 200 and not METHODS[method]["document"]:
        jsonschema.validate(reply.json(), schema(METHODS[method]["reply"]))


class SystemLog(threading.Thread):
    """Takes what is written to the system log: nobody who writes waits for us."""

    def __init__(self):
        super().__init__(daemon=True)
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.socket.bind("/dev/log")
        self.queue = queue.SimpleQueue()

    def run(self):
        while True:
            self.queue.put(self.socket.recv(1 << 20).decode())

    def lines(self):
        """All since the last look: the mark comes behind what was written before."""
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as marker:
            marker.sendto(b"mark", "/dev/log")
        return list(iter(self.queue.get, "mark"))


class Reply:
    def __init__(self, response):
        self.status = response.status
        self.headers = response.headers
        self.body = response.read()

    def json(self):
        return json.loads(self.body)

    def code(self):
        """The error's code, behind a look at the whole: nothing but the code may stand there."""
        jsonschema.validate(self.json(), schema("Failure"))
        return self.json()["error"]["code"]


class EndpointTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            cls.port = probe.getsockname()[1]
        cls.log = SystemLog()
        cls.log.start()
        cls.server = subprocess.Popen(
            [PROJECT / "scripts/sandbox-lighttpd", ENDPOINT, FOLDER, str(cls.port)],
            stderr=subprocess.DEVNULL)
        cls.addClassCleanup(cls.server.wait)
        cls.addClassCleanup(cls.server.terminate)
        wait_for(cls.listens, "lighttpd")
        for source, target in ((PROJECT / "texts/enu", PACKAGE / "target/app/texts/enu"),
                               (PROJECT / "texts/platform/enu",
                                "/usr/mero/meroman/webman/texts/enu")):
            shutil.copytree(source, target)
        ARCHIVE.mkdir()

    @classmethod
    def listens(cls):
        with contextlib.suppress(ConnectionRefusedError):
            socket.create_connection(("127.0.0.1", cls.port)).close()
            return True
        return cls.server.poll() is not None and sys.exit("lighttpd does not start")

    def setUp(self):
        for folder in (SPOOL, HANDLERS, ARCHIVE):
            empty(folder)
        SETTINGS.write_text(f'archive_destination="{ARCHIVE}"\n')
        self.log.lines()  # what the test before left

    # ---- Asking ----

    def connect(self):
        return http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)

    @staticmethod
    def authorization(user, password="secret"):
        text = base64.b64encode(f"{user}:{password}".encode()).decode()
        return {"Authorization": f"Basic {text}"}

    def ask(self, http_method, query=(), body=None, headers=(), user="admin"):
        """One request. A body that is no bytes is sent as JSON."""
        headers = dict(headers)
        if user:
            headers = {**self.authorization(user), **headers}
        if body is not None and not isinstance(body, bytes):
            body = json.dumps(body).encode()
            headers.setdefault("Content-Type", "application/json")
        if not isinstance(query, str):
            query = urllib.parse.urlencode(query)
        with contextlib.closing(self.connect()) as connection:
            connection.request(http_method, f"{ADDRESS}?{query}", body, headers)
            return Reply(connection.getresponse())

    def get(self, api, method, **params):
        reply = self.ask("GET", {"api": api, "method": method, "version": 1, **params})
        check((api, method), reply)
        return reply

    def token(self):
        return {"X-Mero-Token": self.get("MERO.PostCubeServer.Token", "get").json()["data"]["token"]}

    def post(self, api, method, headers=None, **params):
        reply = self.ask("POST", {}, {"api": api, "method": method, "version": 1, **params},
                         self.token() if headers is None else headers)
        check((api, method), reply)
        return reply

    def statements(self):
        lines = [line for line in self.log.lines() if '"type":"admin_log"' in line]
        # The line end of the parameters is in the line as it is.
        return [json.loads(line[line.index("{"):], strict=False) for line in lines]

    # ---- Who may ----

    def test_strangers_are_refused(self):
        query = {"api": ADMIN_LOG, "method": "list", "version": 1}
        for name, user, headers, status, code in (
                ("nobody", None, {}, 401, None),
                ("wrong password", None, self.authorization("admin", "guess"), 401, None),
                ("another group", "PostCube-Server", {}, 403, 105),
                ("unknown to the system", "ghost", {}, 403, 105)):
            with self.subTest(name):
                reply = self.ask("GET", query, headers=headers, user=user)
                self.assertEqual(reply.status, status)
                self.assertEqual(reply.code() if code else None, code)
        self.assertEqual(list(SPOOL.iterdir()), [])

    def test_a_change_takes_a_post_with_the_token(self):
        handler(QUEUE, 'touch /tmp/called; echo \'{"success":true}\'')
        call = {"api": QUEUE, "method": "delete_all", "version": 1}
        token = self.token()
        wrong = {"X-Mero-Token": token["X-Mero-Token"][:-1] + "x"}
        for name, http_method, headers, status in (
                ("GET", "GET", token, 405), ("HEAD", "HEAD", token, 405),
                ("no token", "POST", {}, 403), ("empty token", "POST", {"X-Mero-Token": ""}, 403),
                ("wrong token", "POST", wrong, 403),
                ("PUT", "PUT", token, 405), ("DELETE", "DELETE", token, 405)):
            with self.subTest(name):
                reply = self.ask(http_method, call, headers=headers)
                self.assertEqual(reply.status, status)
                if status == 405:
                    self.assertEqual(reply.headers["Allow"], "POST")
                if http_method != "HEAD":
                    self.assertEqual(reply.code(), 105)
        self.assertFalse(os.path.exists("/tmp/called"))
        self.assertEqual(self.statements(), [])

        self.assertEqual(self.ask("POST", call, headers=token).status, 200)
        os.unlink("/tmp/called")
        self.assertEqual(len(self.statements()), 1)
        self.assertEqual(self.token(), token)
        secret = os.stat("/run/mailserver-log/token-1024")
        self.assertEqual(stat.S_IMODE(secret.st_mode), 0o600)

    # ---- How the web server calls ----

    def test_as_a_cgi_program_it_answers_the_same(self):
        load("mail", [{"subject": f"s{i}", "status": i} for i in range(3)])
        call = {"api": MAIL_LOG, "method": "list", "version": 1, "subject": "s1"}
        body = json.dumps(call).encode()
        user = {"REMOTE_USER": "admin"}
        post = {**user, "REQUEST_METHOD": "POST", "CONTENT_TYPE": "application/json"}
        for name, environment, status, reply in (
                ("GET", {**user, "REQUEST_METHOD": "GET",
                         "QUERY_STRING": urllib.parse.urlencode(call)}, b"200 OK", None),
                ("POST", {**post, "CONTENT_LENGTH": str(len(body))}, b"200 OK", None),
                ("short body", {**post, "CONTENT_LENGTH": str(len(body) + 1)}, b"400 Bad Request",
                 b'{"success":false,"error":{"code":101}}'),
                ("nobody authenticated", {"REQUEST_METHOD": "GET", "QUERY_STRING": "api=x"},
                 b"401 Unauthorized", b'{"success":false,"error":{"code":105}}')):
            with self.subTest(name):
                answer = subprocess.run([ENDPOINT], input=body, check=True, capture_output=True,
                                        env=environment).stdout
                head, _, rest = answer.partition(b"\r\n\r\n")
                self.assertEqual(head.split(b"\r\n")[0], b"Status: " + status)
                self.assertEqual(rest.rstrip(), reply or self.ask("POST", {}, call).body.rstrip())

    def test_what_is_no_scgi_request_is_dropped(self):
        for name, sent, reason in (
                ("garbage", b"GET / HTTP/1.1", "length of its variables"),
                ("no length", b":,", "length of its variables"),
                ("too long", b"131073:", "128 KiB"),
                ("no comma", b"4:a\0b\0;", "comma"),
                ("no value", b"2:a\0,", "without an end"),
                ("half", b"24:CONTENT_LENGTH\0", "ends before"),
                ("nothing", b"", "ends before")):
            with self.subTest(name), socket.socket(socket.AF_UNIX) as connection:
                connection.connect(f"{FOLDER}/mailserver-log.socket-0")
                connection.sendall(sent)
                connection.shutdown(socket.SHUT_WR)
                with contextlib.suppress(ConnectionResetError):
                    self.assertEqual(connection.recv(1), b"")
                wait_for(lambda: any(reason in line for line in self.log.lines()), reason)
        self.assertEqual(self.get(MAIL_LOG, "list").status, 200)

    # ---- What may be asked for ----

    def test_names_that_are_none(self):
        for api, method, version, code in (
                ("", "list", 1, 102), ("MERO.PostCubeServer.Nothing", "list", 1, 102),
                (ADMIN_LOG.lower(), "list", 1, 102), ("../../../../bin/sh", "list", 1, 102),
                (f"{QUEUE}/../{DOMAIN}", "list", 1, 102),
                (ADMIN_LOG, "", 1, 103), (ADMIN_LOG, "List", 1, 103), (ADMIN_LOG, "set", 1, 103),
                (QUEUE, "../list", 1, 103), (ADMIN_LOG, "list", 2, 104),
                (ADMIN_LOG, "list", "", 104), (ADMIN_LOG, "list", "1.0", 104)):
            with self.subTest(api=api, method=method, version=version):
                query = {"api": api, "method": method, "version": version}
                for reply in (self.ask("GET", query), self.ask("POST", {}, query, self.token())):
                    self.assertEqual((reply.status, reply.code()), (404, code))
        self.assertEqual(self.post(f"{QUEUE}\0", "list").code(), 102)

    def test_requests_that_cannot_be_used(self):
        call = {"api": ADMIN_LOG, "method": "list", "version": 1}
        text = urllib.parse.urlencode(call)
        fill = "&query=" + "x" * (LIMIT_OF_QUERY - len(text) - len("&query="))
        longest = json.dumps(call)[:-1] + ',"query":"x"}'
        longest += " " * (LIMIT_OF_BODY - len(longest))
        as_json = {"Content-Type": "application/json"}
        for name, query, body, headers, status, code in (
                ("longest query string", text + fill, None, {}, 200, None),
                ("longer query string", text + fill + "x", None, {}, 414, 101),
                ("longest body", "", longest.encode(), as_json, 200, None),
                ("longer body", "", longest.encode() + b" ", as_json, 413, 101),
                ("no JSON", text, b'{"limit":', as_json, 400, 101),
                ("no object", text, b"[1]", as_json, 400, 101),
                ("nested", text, b"[" * 100000, as_json, 400, 101),
                ("another kind", text, b"x", {"Content-Type": "text/plain"}, 415, 101),
                ("language", text + "&lang=../../etc", None, {}, 403, 105)):
            with self.subTest(name):
                reply = self.ask("GET" if body is None else "POST", query, body, headers)
                self.assertEqual(reply.status, status)
                self.assertEqual(reply.code() if code else None, code)

    def test_db_path_stays_in_the_folders_of_the_logs(self):
        load("admin", [{"statement": "s"}])
        load("mail", [{"subject": "s"}])
        with contextlib.closing(sqlite3.connect(SPOOL / "log_statistic.db")) as file:
            file.execute("CREATE TABLE log_statistic_day (time)")
        for folder, name in ((FOLDER, "elsewhere.db"), (ARCHIVE, "20261122_admin_log.db")):
            shutil.copy(SPOOL / "admin_log.db", folder / name)
        (SPOOL / "link.db").symlink_to(FOLDER / "elsewhere.db")
        (SPOOL / "dangling.db").symlink_to(FOLDER / "new.db")
        (SPOOL / "folder").symlink_to(FOLDER)
        (SPOOL / "sub").mkdir()
        beside = SPOOL.parent / "aggr_log_old"
        beside.mkdir()
        self.addCleanup(shutil.rmtree, beside)
        shutil.copy(SPOOL / "admin_log.db", beside / "admin_log.db")
        before = (SPOOL / "log_statistic.db").read_bytes()
        here = {path.name for path in SPOOL.iterdir()}
        for path, status in (
                (SPOOL / "admin_log.db", 200), (ARCHIVE / "20261122_admin_log.db", 200),
                (f"{SPOOL}/sub/../admin_log.db", 200), ("/etc/passwd", 403), ("", 403),
                (f"{SPOOL}/../../../../etc/passwd", 403), ("admin_log.db", 403),
                (FOLDER / "elsewhere.db", 403), (SPOOL / "link.db", 403),
                (SPOOL / "dangling.db", 403), (SPOOL / "folder/elsewhere.db", 403), (SPOOL, 403),
                (f"{SPOOL}/", 403), (SPOOL / "sub", 403), (beside / "admin_log.db", 403),
                (SPOOL / "missing.db", 403), (SPOOL / "log_statistic.db", 403),
                (SPOOL / "aggr_mail_log.db", 403)):
            with self.subTest(path=str(path)):
                reply = self.get(ADMIN_LOG, "list", db_path=path)
                self.assertEqual(reply.status, status)
                if status == 403:
                    self.assertEqual(reply.code(), 105)
                else:
                    self.assertEqual(reply.json()["data"]["total"], 1)
        for path in (1, f"{SPOOL}/admin_log.db\0.db"):
            self.assertEqual(self.post(ADMIN_LOG, "list", db_path=path).status, 403)
        self.assertEqual((SPOOL / "log_statistic.db").read_bytes(), before)
        self.assertEqual({path.name for path in SPOOL.iterdir()}, here, "nothing was made")
        SETTINGS.write_text('archive_destination=""\n')
        reply = self.get(ADMIN_LOG, "list", db_path=ARCHIVE / "20261122_admin_log.db")
        self.assertEqual(reply.status, 403)

    # ---- Logs ----

    def fill_logs(self):
        load("admin", [{"tab_type": 20, "user": f"u{i}", "statement": "<s> \u00fc", "date": i}
                       for i in range(20)])
        load("mail", [{"subject": f"s{i} <&>", "mail_from": "a@b.org", "status": i % 5, "size": i,
                       "date": i} for i in range(20)])
        load("security", [{"subject": f"s{i}", "type": "spam", "date": i} for i in range(20)])

    def test_lists_are_those_of_the_library(self):
        self.fill_logs()
        for api, method, name, params in (
                (ADMIN_LOG, "list", "admin.list", {"limit": 3, "offset": 2}),
                (ADMIN_LOG, "list", "admin.list", {"query": "Queue", "action": "find"}),
                (MAIL_LOG, "list", "mail.list", {"size_from": 3, "limit": 5, "status": "send"}),
                (SECURITY_LOG, "list", "security.list", {"type": "spam", "sort_by": "subject"})):
            with self.subTest(name, params=params):
                expected = program("query", name, "-", "--request", text=json.dumps(params))
                for reply in (self.get(api, method, **params), self.post(api, method, **params),
                              self.post(api, method, {}, **params)):
                    self.assertEqual(reply.body.decode(), expected)
                    self.assertEqual(reply.headers["Content-Type"],
                                     "application/json; charset=utf-8")
        users = self.get(ADMIN_LOG, "list_user").json()
        self.assertEqual(len(users["data"]["users"]), 20)
        self.assertEqual(self.statements(), [])

    def test_exports_come_byte_for_byte_and_are_logged(self):
        self.fill_logs()
        for api, name, kind, file in (
                (ADMIN_LOG, "admin.export", "text/html; charset=utf-8", "admin_log.html"),
                (MAIL_LOG, "mail.export", "application/octet-stream", "meromaillog.html"),
                (SECURITY_LOG, "security.export", "application/octet-stream",
                 "merosecuritylog.html")):
            with self.subTest(name):
                expected = program("query", name, "-", "--request", text='{"query":"s1"}')
                reply = self.get(api, "export", query="s1")
                self.assertEqual(reply.status, 200)
                self.assertEqual(reply.body, expected.partition("\n\n")[2].encode())
                self.assertEqual(reply.headers["Content-Type"], kind)
                self.assertEqual(reply.headers["Content-Disposition"],
                                 f'attachment; filename="{file}"')
                line, = self.statements()
                self.assertRegex(line["STATEMENT"], "was exported")
                self.assertEqual((line["USER"], line["UID"], line["IP"]),
                                 ("admin", 1024, "127.0.0.1"))
                self.assertEqual(json.loads(line["WEBAPI_PARAM"]), {"query": "s1"})

    def test_a_client_that_hangs_up_ends_its_export(self):
        load("mail", ({"subject": "x" * 1000, "date": i} for i in range(30000)))
        wait_for(lambda: not self.answering(), "the requests before to end")
        connection = self.connect()
        connection.connect()
        connection.sock.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
        connection.request("GET", f"{ADDRESS}?api={MAIL_LOG}&method=export&version=1",
                           headers=self.authorization("admin"))
        response = connection.getresponse()
        self.assertEqual(response.status, 200)
        response.read(1000)
        self.assertEqual(self.answering(), 1, "the export waits for its reader")
        self.assertEqual(self.get(MAIL_LOG, "list", limit=1).status, 200)
        response.close()
        connection.close()
        wait_for(lambda: not self.answering(), "the export to end")
        line, = self.statements()
        self.assertRegex(line["STATEMENT"], "was exported")

    @staticmethod
    def answering():
        """The number of processes that answer a request, which those that wait for one start."""
        parents = {}
        for link in glob.glob("/proc/[0-9]*/exe"):
            with contextlib.suppress(OSError):
                if os.readlink(link) == os.path.realpath(ENDPOINT):
                    status = pathlib.Path(link).with_name("stat").read_text()
                    parents[link.split("/")[2]] = status.rpartition(")")[2].split()[1]
        return sum(parent in parents for parent in parents.values())

    def test_the_inside_of_a_failure_stays_inside(self):
        for store in ("admin_log.db", "aggr_mail_log.db"):
            (SPOOL / store).write_text("no database " * 100)
        for api, method in ((ADMIN_LOG, "list"), (ADMIN_LOG, "list_user"), (ADMIN_LOG, "export"),
                            (MAIL_LOG, "list"), (MAIL_LOG, "export")):
            with self.subTest(api=api, method=method):
                reply = self.get(api, method)
                self.assertEqual((reply.status, reply.code()), (500, 117))
        self.assertTrue(any("Log_API" in line for line in self.log.lines()))

    # ---- Traces ----

    def trace(self, **params):
        """The subjects of the rows that a trace tells, and whether there are more."""
        data = self.get(MAIL_LOG, "trace", **params).json()["data"]
        return [row["subject"] for row in data["rows"]], data["more"]

    def test_a_trace_tells_all_about_a_mail(self):
        mail = {"queue_id": "B2", "message_id": "<m@x>", "mail_from": "a@x"}
        load("mail", [{**mail, "subject": "first", "mail_to": "b@y", "size": 7, "date": 1000}])
        program("rotate", "mail")
        load("mail", [{**mail, "subject": "last", "mail_to": "c@y", "date": 1002},
                      {"subject": "other", "mail_to": "c@y", "date": 1003}])
        load("security", [{"subject": "spf", "type": "spf", "sender": "a@x", "recipient": "b@y",
                           "date": 1000},
                          {"subject": "refused", "event": "R1: \u00fc", "date": 2000}])
        whole = ["spf", "first", "last"]
        for params, expected in (
                ({"what": "B2"}, whole), ({"what": "m@x"}, whole), ({"what": "<m@x>"}, whole),
                ({"what": "a@x"}, whole), ({"what": "c@y"}, ["last", "other"]),
                ({"what": "R1"}, ["refused"]), ({"what": "nobody@x"}, []), ({"what": "b2"}, []),
                ({"what": "B2", "time_from": 1001}, ["last"]),
                ({"what": "B2", "time_from": 1000, "time_to": 1002}, ["spf", "first"]),
                ({"what": "B2", "time_to": 1000}, []), ({"what": "B2", "limit": 3}, whole)):
            with self.subTest(params=params):
                self.assertEqual(self.trace(**params), (expected, False))
        for limit in (1, 2):
            self.assertEqual(self.trace(what="B2", limit=limit), (whole[:limit], True))
        data = self.post(MAIL_LOG, "trace", {}, what="B2", limit=2, time_from=1000).json()["data"]
        self.assertEqual(data["rows"], json.loads(program("trace", "B2", "--format", "json"))[:2])
        self.assertEqual(self.statements(), [])

    def test_traces_that_cannot_be_told(self):
        load("mail", [{"queue_id": "MANY", "message_id": f"{i}@x", "date": i} for i in range(1001)])
        for params in ({}, {"what": ""}, {"what": "<>"}, {"what": "x", "limit": 0},
                       {"what": "x", "limit": 10001}, {"what": "x", "limit": "many"},
                       {"what": "x", "time_from": "now"}, {"what": "x", "time_to": ""},
                       {"what": "MANY"}):
            with self.subTest(params=params):
                reply = self.get(MAIL_LOG, "trace", **params)
                self.assertEqual((reply.status, reply.code()), (400, 101))
        self.assertEqual(self.post(MAIL_LOG, "trace", {}, what=1).code(), 101)
        rows, more = self.trace(what="MANY", time_from=1)
        self.assertEqual((len(rows), more), (1000, False))

        for store in ("aggr_mail_log.db", "aggr_security_log.db", "mail_events.db"):
            with self.subTest(store):
                empty(SPOOL)
                self.log.lines()
                (SPOOL / store).write_text("no database " * 100)
                reply = self.get(MAIL_LOG, "trace", what="x")
                self.assertEqual((reply.status, reply.code()), (500, 100))
                self.assertTrue(any("a request failed: cannot" in line and store in line
                                    for line in self.log.lines()))

    # ---- Statistics ----

    @unittest.skipUnless(SECOND_USER, "needs a second user: run the tests as root to have it")
    def test_statistics(self):
        empty_reply = {"success": True, "data": {"count": [], "top": []}}
        self.assertEqual(self.get(STATISTIC, "get_traffic").json(), empty_reply)
        program("statistics", "--period", "1", "--cycles", "1")
        with contextlib.closing(sqlite3.connect(SPOOL / "log_statistic.db")) as file:
            file.executescript("""
                DELETE FROM log_statistic_day; DELETE FROM log_statistic_top5;
                INSERT INTO log_statistic_day VALUES(0, 1, 2, 3, 4, 5), (86400, 6, 0, 0, 0, 0);
                INSERT INTO log_statistic_top5 VALUES(86400, 8, 0, 0, 'ann@x.org', 6);""")
        with contextlib.closing(sqlite3.connect(SPOOL / "security_statistic.db")) as file:
            file.executescript("""
                INSERT INTO threat_overview_hour VALUES(3600, 'inbound', 'spam', 7);
                INSERT INTO blocked_address_hour VALUES(3600, 'inbound', 'sender', 'a@b.org', 7);
                INSERT INTO threat_origin_hour VALUES(3600, 'NL', 'Netherlands', '', 1, 2, 7);""")

        second_day = self.get(STATISTIC, "get_traffic", time_from=86400, time_to=86401)
        counts = second_day.json()["data"]["count"]
        self.assertEqual([row["count"] for row in counts], [6, 0, 0, 0, 0])
        self.assertEqual(second_day.json()["data"]["top"],
                         [{"time": 86400, "group": "sent", "name": "ann@x.org", "count": 6}])
        first_day = self.post(STATISTIC, "get_traffic", time_to=86400).json()["data"]
        self.assertEqual([row["count"] for row in first_day["count"]], [1, 2, 3, 4, 5])
        self.assertEqual(first_day["top"], [])

        threats = self.get(STATISTIC, "get_threat", scale="hour").json()
        self.assertEqual({kind: [(row["group"], row["name"]) for row in rows]
                          for kind, rows in threats["data"].items()},
                         {"threat": [("inbound", "spam")],
                          "address": [("inbound sender", "a@b.org")],
                          "origin": [("NL", "Netherlands")]})
        for method, params in (("get_traffic", {"scale": "year"}), ("get_threat", {"scale": "week"}),
                               ("get_traffic", {"time_from": "x"}), ("get_threat", {"time_to": ""})):
            with self.subTest(method, params=params):
                reply = self.get(STATISTIC, method, **params)
                self.assertEqual((reply.status, reply.code()), (400, 101))

    # ---- Settings ----

    def test_a_change_is_carried_out_and_logged(self):
        shutil.copy(PROJECT / "scripts/demo.d/webapi" / DOMAIN, HANDLERS)
        shutil.copy(PROJECT / "scripts/demo.d/domains.json", PACKAGE / "etc")
        reply = self.post(DOMAIN, "set", domain_id=1, desc="All of them")
        self.assertEqual((reply.status, reply.json()), (200, {"success": True, "data": None}))
        line, = self.statements()
        self.assertEqual(line["STATEMENT"], "[Description] of domain [example.com] was changed "
                                            "from [Our first domain] to [All of them].")
        self.assertEqual((line["USER"], line["UID"], line["IP"]), ("admin", 1024, "127.0.0.1"))
        self.assertEqual(json.loads(line["WEBAPI_PARAM"]), {"desc": "All of them", "domain_id": 1})
        listed = self.get(DOMAIN, "list").json()["data"]["domains"]
        self.assertEqual(listed[0]["desc"], "All of them")

        refused = self.post(DOMAIN, "set", domain_id=99, desc="x")
        self.assertEqual((refused.status, refused.code()), (422, 404))
        self.assertEqual(self.statements(), [])

    def test_handlers_that_misbehave(self):
        secret = 'echo \'{"success":false,"error":{"code":7,"why":"secret"},"inside":"secret"}\''
        for name, script, status, code in (
                ("is missing", None, 404, 102), ("fails", secret, 422, 7),
                ("lacks the method", secret.replace("7", "103"), 404, 103),
                ("prints garbage", "echo secret", 502, 100), ("prints nothing", "", 502, 100),
                ("prints another value", "echo '[true]'", 502, 100),
                ("dies", 'echo \'{"success":true}\'; kill -9 $$', 502, 100),
                ("ends with a status", 'echo \'{"success":true}\'; exit 3', 502, 100),
                ("prints too much", "exec yes", 502, 100),
                ("hangs", "sleep 1000", 504, 100)):
            with self.subTest(name):
                empty(HANDLERS)
                if script is not None:
                    handler(QUEUE, script)
                reply = self.post(QUEUE, "flush_all")
                self.assertEqual((reply.status, reply.code()), (status, code))
        self.assertEqual(self.statements(), [])

    def test_a_call_that_cannot_be_logged_still_tells_what_it_did(self):
        handler(QUEUE, 'echo \'{"success":true}\'')
        (SPOOL / "admin_log.db").mkdir()
        self.assertEqual(self.post(QUEUE, "delete_all").status, 200)
        self.assertTrue(any("cannot log Webapi_Queue_DeleteAll" in line for line in self.log.lines()))

    # ---- The document ----

    def test_each_method_of_the_document_has_one_name_and_schemas(self):
        rows = DOCUMENT["x-methods"]
        self.assertEqual(len(METHODS), len(rows))
        operations = [row["operation"] for row in rows if row["operation"]]
        self.assertEqual(len(set(operations)), len(operations))
        for row in rows:
            for name in (row["params"], row["reply"]):
                jsonschema.Draft202012Validator.check_schema(
                    DOCUMENT["components"]["schemas"][name])


if __name__ == "__main__":
    unittest.main()
