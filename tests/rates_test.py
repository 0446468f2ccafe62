#!/usr/bin/env python3
"""Readings of a source that changes: rates, and shows that are repeated. Runs the program in $TPCLI."""
import json
import os
import pathlib
import pty
import signal
import subprocess
import tempfile
import termios
import time
import unittest

RULES = {"fast": 3, "slow": 4, "renewed": 5, "backwards": 6}


def state(seconds):
    """What the counters are so long after the begin."""
    packets = {"fast": 1000 * seconds, "slow": 10 * seconds, "renewed": 9 * seconds, "backwards": 100 - seconds}
    ids = {**RULES, "renewed": 5 + seconds}
    return json.dumps({
        "config": {"trafficPolicies": {"P": {"namedCounters": ["bytes"], "rules": [
            {"name": "counted", "actions": {"count": "bytes"}},
            *({"name": rule, "actions": {"count": True}} for rule in RULES)]}}},
        "status": {"byteCounters": True, "policies": {"P": {
            "rules": {"counted": {"families": ["ipv4"]}, **{rule: {
                "families": ["ipv4"], "counterId": ids[rule], "packets": packets[rule]} for rule in RULES}},
            "namedCounters": {"bytes": {"packets": 100 * seconds, "bytes": 50000 * seconds}}}}}})


class Rates(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.state = self.folder / "state"
        self.write(1)

    def write(self, seconds):
        (self.folder / "new").write_text(state(seconds))
        (self.folder / "new").rename(self.state)

    def start(self, *words, **options):
        return subprocess.Popen([os.environ["TPCLI"], "--state", self.state, "show", "traffic-policy", "interface", *words],
                                **{"stdout": subprocess.PIPE, **options})

    def rates(self, *words, **options):
        rates = self.start("rates", *words, **options)
        time.sleep(0.4)
        self.write(2)
        output = rates.communicate(timeout=20)[0]
        self.assertEqual(rates.returncode, 0)
        return output

    def test_json(self):
        reply = json.loads(self.rates("interval", "1.0", "|", "json"))
        seconds, policy = reply["seconds"], reply["trafficPolicies"]["P"]
        self.assertGreaterEqual(seconds, 1)
        self.assertEqual(list(policy["rules"]), ["fast", "slow", "renewed", "backwards"])
        for rule, packets in ("fast", 1000), ("slow", 10), ("renewed", None), ("backwards", None):
            rate = policy["rules"][rule]
            self.assertIsNone(rate["bitsPerSecond"])
            if packets is None:
                self.assertIsNone(rate["packetsPerSecond"])
            else:
                self.assertAlmostEqual(rate["packetsPerSecond"] * seconds, packets)
        self.assertAlmostEqual(policy["namedCounters"]["bytes"]["bitsPerSecond"] * seconds, 400000, places=3)

    def test_text(self):
        lines = self.rates("policy", "P").decode().splitlines()
        self.assertEqual([line.split(":")[-2 if "match rule" in line else 0].split()[-1] for line in lines],
                         ["P", "fast", "bytes", "slow", "renewed", "backwards"])
        self.assertRegex(lines[4], r" +- packets/s +- bits/s$")

    def test_bars(self):
        ours, theirs = pty.openpty()
        termios.tcsetwinsize(theirs, (24, 120))
        self.rates("interval", "1", stdout=theirs)
        os.close(theirs)
        bars = [line.count("#") for line in os.read(ours, 1 << 16).decode().splitlines()]
        os.close(ours)
        self.assertEqual((bars[0], bars[3:]), (0, [0, 0, 0]))
        self.assertAlmostEqual(bars[1] / 10, bars[2], delta=1)
        self.assertGreater(bars[1], 10)

    def test_repeated(self):
        show = self.start("counters", "interval", "0.2", "count", "2")
        time.sleep(0.1)
        self.write(2)
        lines = show.communicate(timeout=20)[0].decode().splitlines()
        half = len(lines) // 2
        self.assertRegex(lines[0], r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d UTC$")
        self.assertRegex(lines[half], r" UTC$")
        self.assertIn("   match rule: fast: 1000 packets", lines[:half])
        self.assertIn("   match rule: fast: 2000 packets", lines[half:])
        show = self.start("summary", "interval", "0.01", "count", "3", "|", "json")
        replies = [json.loads(line) for line in show.communicate(timeout=20)[0].splitlines()]
        whole = json.loads(self.start("summary", "|", "json").communicate()[0])
        self.assertEqual([reply["reply"] for reply in replies], 3 * [whole])
        times = [reply["time"] for reply in replies]
        self.assertEqual((times, [abs(when - time.time()) < 60 for when in times]), (sorted(times), 3 * [True]))

    def test_interrupt_between_replies(self):
        show = self.start("summary", "interval", "1000")
        begin = os.read(show.stdout.fileno(), 1 << 16)
        time.sleep(0.1)
        show.send_signal(signal.SIGINT)
        self.assertTrue(begin)
        show.communicate(timeout=20)
        self.assertEqual(show.returncode, 130)


if __name__ == "__main__":
    unittest.main()
