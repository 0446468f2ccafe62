#!/usr/bin/env python3
"""The databases of a SONiC switch, on a real server that each test starts and loads: shows, clear, and
whatever can go wrong on the way."""
import json
import os
import pathlib
import signal
import socket
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(os.environ["TP_SOURCE_DIR"])
TPCLI = os.environ["TPCLI"]
NUMBERS = {"config_db": 4, "counters_db": 2, "state_db": 6}
passed = failed = 0


def check(holds, what):
    global passed, failed
    passed += bool(holds)
    failed += not holds
    if not holds:
        print("FAILED:", what, file=sys.stderr)


def hashes(document):
    """The hashes of config_db.json or of a dump, by key."""
    for top, entries in document.items():
        if "value" in entries:
            yield top, entries["value"]
            continue
        for key, fields in entries.items():
            lists = {name + "@": ",".join(value) for name, value in fields.items() if isinstance(value, list)}
            yield f"{top}|{key}", {n: v for n, v in fields.items() if not isinstance(v, list)} | lists


class Server:
    """A real server on a socket of its own, with a user's state folder beside it."""

    def __init__(self, folder, *options):
        self.folder = folder
        self.path = f"{folder}/redis.sock"
        self.process = subprocess.Popen(
            ["redis-server", "--port", "0", "--unixsocket", self.path, "--save", "", "--dir", folder, *options],
            stdout=subprocess.DEVNULL)
        while not pathlib.Path(self.path).exists() and self.process.poll() is None:
            time.sleep(0.01)

    def request(self, database, *words):
        return subprocess.run(["redis-cli", "-s", self.path, "-n", str(database), *words], check=True,
                              capture_output=True, text=True, env={"PATH": os.environ["PATH"]}).stdout

    def load(self):
        for name, number in NUMBERS.items():
            for key, fields in hashes(json.loads((ROOT / f"examples/sonic/{name}.json").read_text())):
                self.request(number, "HSET", key, *(word for pair in fields.items() for word in pair))

    def stop(self):
        self.process.kill()
        self.process.wait()


def start(folder, state, *command, **environment):
    home = {"XDG_STATE_HOME": f"{folder}/home", "PATH": os.environ["PATH"], **environment}
    return subprocess.Popen([TPCLI, "--state", state, *command], env=home, text=True, stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def run(folder, state, *command, **environment):
    process = start(folder, state, *command, **environment)
    out, err = process.communicate(timeout=60)
    return process.returncode, out, err


SHOW = ("show", "traffic-policy", "interface")
COUNTS = (*SHOW, "counters", "policy", "SERVERS-IN")


def test_example(server):
    """The databases and one document with all of their hashes are shown alike."""
    whole = {key: {"type": "hash", "value": fields} for name in NUMBERS for key, fields in
             hashes(json.loads((ROOT / f"examples/sonic/{name}.json").read_text()))}
    document = pathlib.Path(server.folder, "whole.json")
    document.write_text(json.dumps(whole))
    before = server.request(0, "INFO", "keyspace")
    for side in ("cpu", "interface"):
        for options in ((), ("errors",), ("counters", "per-interface"), ("summary", "--json"), ("--json",)):
            command = ("show", "traffic-policy", side, *options)
            live = run(server.folder, f"sonic:unix:{server.path}", *command)
            filed = run(server.folder, str(document), *command)
            check(live == filed and live[0] == 0, f"{command}: {live} != {filed}")
    check(before == server.request(0, "INFO", "keyspace"), "the databases were changed")


def test_clear(server):
    state = f"sonic:unix:{server.path}"
    status, out, err = run(server.folder, state, "clear", "traffic-policy", "counters")
    check((status, out, err) == (0, "", ""), f"clear: {status} {out}{err}")
    check(pathlib.Path(server.folder, "home/tpcli/sonic.counters").exists(), "the store is elsewhere")
    server.request(2, "HSET", "COUNTERS:oid:0x9000000000601", "SAI_ACL_COUNTER_ATTR_PACKETS", "812014")
    # Made anew: its count begins anew, too.
    server.request(2, "HSET", "ACL_COUNTER_RULE_MAP", "SERVERS-IN:SYN-WEB", "oid:0x90000000009ff")
    server.request(2, "HSET", "COUNTERS:oid:0x90000000009ff", "SAI_ACL_COUNTER_ATTR_PACKETS", "5",
                   "SAI_ACL_COUNTER_ATTR_BYTES", "320")
    out = run(server.folder, state, *COUNTS)[1]
    for line in ("DNS: 10 packets", "SYN-WEB: 5 packets", "PING: 0 packets", "DEFAULT: 0 packets"):
        check(line in out, f"{line} is not in {out}")
    elsewhere = run(server.folder, state, *COUNTS, TPCLI_COUNTER_STORE=f"{server.folder}/other")[1]
    check("DNS: 812014 packets" in elsewhere, f"another store: {elsewhere}")


def test_kinds_of_states(server):
    state = f"sonic:unix:{server.path}"
    server.request(6, "FLUSHDB")
    out = run(server.folder, state, *SHOW, "policy", "SERVERS-IN", "summary")[1]
    check("Configured on interfaces: Ethernet0, Ethernet4, Ethernet8\n" in out and "IPv4 traffic: \n" in out,
          f"without status: {out}")
    server.request(4, "SET", "ACL_RULE|SERVERS-IN|TEXT", "x")
    status, out, err = run(server.folder, state, *SHOW)
    check((status, out) == (1, "") and err == f"tpcli: {state}: CONFIG_DB: ACL_RULE|SERVERS-IN|TEXT: WRONGTYPE "
          "Operation against a key holding the wrong kind of value\n", f"no hash: {status} {err}")
    server.request(4, "FLUSHDB")
    check(run(server.folder, state, *SHOW, "--json") == (0, '{"trafficPolicies":{}}\n', ""), "without ACLs")


def test_password(folder):
    server = Server(folder, "--requirepass", "se cret")
    state = f"sonic:unix:{server.path}"
    try:
        refused = run(folder, state, *SHOW)
        check(refused == (1, "", f"tpcli: {state}: CONFIG_DB: NOAUTH Authentication required. "
                          "(set TPCLI_REDIS_PASSWORD)\n"), refused)
        check("WRONGPASS" in run(folder, state, *SHOW, TPCLI_REDIS_PASSWORD="guess")[2], "a wrong password")
        check(run(folder, state, *SHOW, TPCLI_REDIS_PASSWORD="se cret")[0] == 0, "the password")
    finally:
        server.stop()


def test_servers_that_fail(folder):
    nowhere = run(folder, f"sonic:unix:{folder}/nowhere", *SHOW)
    check(nowhere == (1, "", f"tpcli: sonic:unix:{folder}/nowhere: CONFIG_DB: No such file or directory\n"), nowhere)
    listener = socket.create_server(("127.0.0.1", 0))
    state = f"sonic:127.0.0.1:{listener.getsockname()[1]}"
    answers = (b"", b"+OK\r\n", b"+OK\r\n*2\r\n$1\r\n0\r\n*1\r\n$9\r\nACL_", b"+OK\r\n:1\r\n", b"-ERR no\r\n",
               b"?\r\n", b"+OK\r\n*2\r\n$1\r\n0\r\n*1\r\n*-1\r\n", b"+OK\r\n*999999999\r\n")
    for answer in answers:
        process = start(folder, state, *SHOW)
        connection = listener.accept()[0]
        connection.recv(100)
        connection.sendall(answer)
        time.sleep(0.05)
        connection.close()
        out, err = process.communicate(timeout=60)
        check((process.returncode, out) == (1, "") and err.startswith(f"tpcli: {state}: CONFIG_DB: ")
              and err.count("\n") == 1, f"{answer}: {process.returncode} {out}{err}")
    # One that says nothing: an interrupt ends the wait at once.
    process = start(folder, state, *SHOW)
    connection = listener.accept()[0]
    connection.recv(100)
    begin = time.monotonic()
    process.send_signal(signal.SIGINT)
    process.communicate(timeout=60)
    check(process.returncode == 130 and time.monotonic() - begin < 1, f"an interrupt: {process.returncode}")
    listener.close()
    check("Connection refused" in run(folder, state, *SHOW)[2], "nobody listens")


for name, test in list(globals().items()):
    if name.startswith("test_"):
        with tempfile.TemporaryDirectory() as folder:
            if test.__code__.co_varnames[0] == "folder":
                test(folder)
                continue
            server = Server(folder)
            try:
                server.load()
                test(server)
            finally:
                server.stop()
print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0 or passed == 0)
