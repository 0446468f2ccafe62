#!/usr/bin/env python3
"""The metrics in the hands of those that they are for: promtool reads all of them and tries the rules;
node_exporter and Prometheus carry the counts of a state, and odd names, to a query."""
import http.server
import json
import os
import pathlib
import re
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse
import urllib.request

ROOT = pathlib.Path(os.environ["TP_SOURCE_DIR"])
TPCLI = os.environ["TPCLI"]
STATE = ROOT / "examples/edge-switch.json"
# What promtool says of names with "counter" in them.
LINT = re.compile(r"traffic_policy_counter_\w+_total metric name should not include type 'counter'")
passed = failed = 0


def check(holds, what):
    global passed, failed
    passed += bool(holds)
    failed += not holds
    if not holds:
        print("FAILED:", what, file=sys.stderr)


def tpcli(state, *command):
    return subprocess.run([TPCLI, "--state", state, *command], check=True, stdin=subprocess.DEVNULL,
                          capture_output=True, text=True).stdout


def check_texts():
    states = [*ROOT.glob("examples/*.json"), *ROOT.glob("examples/openconfig/*.json"),
              ROOT / "examples/sonic/config_db.json", *ROOT.glob("tests/cases/*/state.json")]
    for state in states:
        for options in ((), ("--metrics-rules", "no")):
            done = subprocess.run(["promtool", "check", "metrics"], input=tpcli(state, "metrics", *options),
                                  capture_output=True, text=True)
            check(all(LINT.fullmatch(line) for line in done.stderr.splitlines()),
                  f"{state.name}: {done.stderr}")
    check(len(states) > 10, "no examples")
    without = tpcli(STATE, "metrics", "--metrics-rules", "no")
    check("traffic_policy_rule_packets" not in without and "traffic_policy_rules{" in without, without)


def check_rules():
    done = subprocess.run(["promtool", "test", "rules", ROOT / "examples/prometheus/traffic-policy.test.yml"],
                          capture_output=True, text=True)
    check(done.returncode == 0, done.stdout + done.stderr)


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as server:
        return server.getsockname()[1]


def serve(text):
    """A server of this text as OpenMetrics; returns its port."""
    class Handler(http.server.BaseHTTPRequestHandler):
        def do_GET(self):
            self.send_response(200)
            self.send_header("Content-Type", "application/openmetrics-text; version=1.0.0; charset=utf-8")
            self.end_headers()
            self.wfile.write(text.encode())

        def log_message(self, *_):
            pass

    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server.server_address[1]


def query(port, expression):
    """The labels and values of a query, or nothing while the server is not ready."""
    try:
        url = f"http://127.0.0.1:{port}/api/v1/query?query={urllib.parse.quote(expression)}"
        reply = json.load(urllib.request.urlopen(url, timeout=10))
        return [(sample["metric"], float(sample["value"][1])) for sample in reply["data"]["result"]]
    except OSError:
        return []


def counts(state):
    """The counts of named counters that the show tells, by policy and counter."""
    reply = json.loads(tpcli(state, "show", "traffic-policy", "interface", "counters", "per-interface", "--json",
                             "--counter-store", "/nowhere/store"))
    return {(policy, counter): count["totals"]["packetTotal"] for policy, view in reply["trafficPolicies"].items()
            for counter, count in view.get("namedCounters", {}).items()}


def check_scrape(folder):
    odd = ROOT / "tests/cases/odd-names/state.json"
    exporter, prometheus = free_port(), free_port()
    pathlib.Path(folder, "traffic-policy.prom").write_text(tpcli(STATE, "metrics"))
    targets = {"node": exporter, "odd": serve(tpcli(odd, "metrics", "--openmetrics"))}
    pathlib.Path(folder, "prometheus.yml").write_text(json.dumps({
        "global": {"scrape_interval": "1s"},
        "scrape_configs": [{"job_name": job, "static_configs": [{"targets": [f"127.0.0.1:{port}"]}]}
                           for job, port in targets.items()]}))
    commands = (["prometheus-node-exporter", "--collector.disable-defaults", "--collector.textfile",
                 f"--collector.textfile.directory={folder}", f"--web.listen-address=127.0.0.1:{exporter}"],
                ["prometheus", f"--config.file={folder}/prometheus.yml", f"--storage.tsdb.path={folder}/data",
                 f"--web.listen-address=127.0.0.1:{prometheus}"])
    processes = [subprocess.Popen(command, stderr=subprocess.DEVNULL) for command in commands]
    try:
        deadline = time.monotonic() + 60
        while len(query(prometheus, "up == 1")) < len(targets) and time.monotonic() < deadline:
            time.sleep(0.2)
        check(len(query(prometheus, "up == 1")) == len(targets), f"up: {query(prometheus, 'up')}")
        for job, state in (("node", STATE), ("odd", odd)):
            found = {(labels["policy"], labels["counter"]): value for labels, value in
                     query(prometheus, f'traffic_policy_counter_packets_total{{job="{job}"}}')}
            wanted = counts(state)
            check(wanted and wanted.items() <= found.items(), f"{job}: {found}, not {wanted}")
    finally:
        for process in processes:
            process.kill()
            process.wait()


check_texts()
check_rules()
with tempfile.TemporaryDirectory() as folder:
    check_scrape(folder)
print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0 or passed == 0)
