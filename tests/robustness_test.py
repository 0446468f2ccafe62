#!/usr/bin/env python3
"""What goes wrong around the program: outputs that cannot be written, interrupts, and clears that are
killed, run beside each other or find no room. Runs the program in $TPCLI."""
import json
import os
import pathlib
import random
import resource
import shutil
import signal
import subprocess
import tempfile
import time
import unittest


def state(packets):
    rules = [f"rule-{number}" for number in range(4000)]
    match = {"ipv4": {"sources": [f"192.0.2.{number}/32" for number in range(100, 130)]}}
    return json.dumps({
        "config": {"trafficPolicies": {"P": {"rules": [
            {"name": rule, "match": match, "actions": {"count": True}} for rule in rules]}}},
        "status": {"policies": {"P": {"rules": {
            rule: {"families": ["ipv4"], "packets": packets} for rule in rules}}}}})


# A store from before the test.
STORE = '{"timestamp": 1, "rules": [], "namedCounters": []}'


class Robustness(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.folder.chmod(0o755)
        # A copy, which another user can run, too.
        cls.program = shutil.copy(os.environ["TPCLI"], cls.folder / "tpcli")
        for packets in (1, 2):
            (cls.folder / f"state{packets}").write_text(state(packets))

    def setUp(self):
        self.stores = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(dir=self.folder)))
        self.stores.chmod(0o755)
        self.store = self.stores / "store"

    def start(self, *words, packets=1, **options):
        return subprocess.Popen(
            [self.program, "--state", self.folder / f"state{packets}", "--counter-store",
             self.store, *words],
            **{"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options})

    def show(self, *words, **options):
        return self.start("show", "traffic-policy", "cpu", *words, **options)

    def clear(self, **options):
        return self.start("clear", "traffic-policy", "counters", **options)

    def finish(self, process, status, error_lines=0):
        output, error = process.communicate(timeout=60)
        self.assertEqual((process.returncode, output or b"", error.count(b"\n")),
                         (status, b"", error_lines), error)
        return error

    def stored(self):
        """The count that all snapshots have: one clear's, or the other's."""
        counts = {rule["packets"] for rule in json.loads(self.store.read_text())["rules"]}
        self.assertEqual(len(counts), 1)
        return counts.pop()

    def test_output_cannot_be_written(self):
        with open("/dev/full", "wb") as full:
            for process in (self.show("summary", stdout=full), self.show("|", "json", stdout=full),
                            self.show("policy", "none", "|", "json", stdout=full),
                            self.show("| include match", stdout=full), self.show("| count", stdout=full),
                            self.start("--help", stdout=full)):
                self.assertIn(b"No space left on device", self.finish(process, 1, error_lines=1))
        for words in ("detail", "| include a"):
            reader, writer = os.pipe()
            show = self.show(words, stdout=writer)
            os.close(writer)
            os.read(reader, 10)
            os.close(reader)
            self.finish(show, 1)

    def test_interrupt_of_output(self):
        for words in (["detail"], ["|", "json"]):
            whole = self.show(*words).communicate()[0]
            self.assertGreater(len(whole), 2 << 20)
            show = self.show(*words)
            begin = os.read(show.stdout.fileno(), 10)  # The first flush waits for a reader now.
            show.send_signal(signal.SIGINT)
            output = begin + show.communicate()[0]
            self.assertEqual(show.returncode, 130)
            self.assertTrue(output.endswith(b"exiting on interrupt\n"), output[-80:])
            self.assertTrue(whole.startswith(output[:-len(b"exiting on interrupt\n")]))

    def test_interrupt_of_filtered_output(self):
        show = self.show("detail", "|", "include", "a")
        os.read(show.stdout.fileno(), 10)
        show.send_signal(signal.SIGINT)
        output = show.communicate()[0]
        self.assertEqual((show.returncode, output[-21:]), (130, b"exiting on interrupt\n"))

    def test_interrupt_of_input(self):
        pipe = self.stores / "pipe"
        os.mkfifo(pipe)
        self.interrupt_wait(self.show("--state", pipe))
        self.interrupt_wait(self.show("--state", "-"))

    def interrupt_wait(self, show):
        caught = 0
        while not caught >> (signal.SIGINT - 1) & 1:
            status = pathlib.Path(f"/proc/{show.pid}/status").read_text()
            caught = int(status.split("SigCgt:")[1].split()[0], 16)
        while show.poll() is None:  # The first may come before the wait.
            show.send_signal(signal.SIGINT)
            time.sleep(0.01)
        self.finish(show, 130)

    def test_slow_input(self):
        """Reading that takes long shows how far it is, at a terminal alone, and takes that away."""
        text = (self.folder / "state1").read_bytes()
        whole = self.show("summary").communicate()[0]
        terminal, end = os.openpty()
        for errors in (end, subprocess.PIPE):
            show = self.show("--state", "-", "summary", stderr=errors)
            show.stdin.write(text[:len(text) // 2])
            time.sleep(1.1)
            show.stdin.write(text[len(text) // 2:])
            output, error = show.communicate(timeout=60)
            self.assertEqual((show.returncode, output), (0, whole))
            self.assertFalse(error)
        self.assertRegex(os.read(terminal, 9999), rb"^(\rreading: \d+ MB *\r)+\r {%d}\r$"
                         % len(f"reading: {len(text) // 10**6} MB"))

    def test_ignored_interrupt(self):
        show = self.show("--state", "-", preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN))
        ignored = 0
        while not ignored >> (signal.SIGPIPE - 1) & 1:
            status = pathlib.Path(f"/proc/{show.pid}/status").read_text()
            ignored = int(status.split("SigIgn:")[1].split()[0], 16)
        show.send_signal(signal.SIGINT)
        self.assertEqual((show.communicate(b"{}")[1], show.returncode), (b"", 0))

    def test_commands_cannot_be_read(self):
        self.assertIn(b"standard input: Is a directory",
                      self.finish(self.start(stdin=os.open("/", os.O_RDONLY)), 1, error_lines=1))
        long_line = self.stores / "line"
        with open(long_line, "wb") as file:
            file.truncate(400 << 20)
        if b"__asan_init" not in pathlib.Path(self.program).read_bytes():
            with open(long_line, "rb") as lines:
                self.assertIn(b"out of memory", self.finish(self.start(
                    stdin=lines, preexec_fn=lambda: resource.setrlimit(
                        resource.RLIMIT_AS, (200 << 20, 200 << 20))), 1, error_lines=1))

    def test_long_name(self):
        state = shutil.copy(self.folder / "state1", self.stores / ("n" * 255))
        show, clear = (subprocess.run([self.program, "--state", state, *words.split()], capture_output=True)
                       for words in ("show traffic-policy cpu", "clear traffic-policy counters"))
        self.assertEqual((show.returncode, show.stderr, clear.returncode), (0, b"", 1))
        self.assertIn(b"File name too long", clear.stderr)

    def test_killed_clears(self):
        begin = time.monotonic()
        self.finish(self.clear(), 0)
        duration = time.monotonic() - begin
        while time.monotonic() < begin + max(3, 5 * duration):
            before = self.stored()
            clear = self.clear(packets=3 - before)
            time.sleep(random.uniform(0.5, 1.1) * duration)
            clear.kill()
            clear.communicate()
            self.assertIn(self.stored(), (before, 3 - before))
        self.finish(self.clear(packets=2), 0)
        self.assertEqual((self.stored(), os.listdir(self.stores)), (2, ["store"]))

    def test_clears_beside_each_other(self):
        for _ in range(2):
            for clear in [self.clear(packets=packets) for packets in (1, 2, 1, 2)]:
                self.finish(clear, 0)
            self.assertIn(self.stored(), (1, 2))
        self.assertEqual(os.listdir(self.stores), ["store"])

    def test_no_room_for_the_store(self):
        self.store.write_text(STORE)
        # Without signals restored, the one about the file's size stays ignored.
        self.finish(self.clear(restore_signals=False, preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_FSIZE, (100000, 100000))), 1, error_lines=1)
        self.stores.chmod(0o555)
        self.finish(self.clear(user=65534 if os.geteuid() == 0 else None), 1, error_lines=1)
        self.assertEqual(self.store.read_text(), STORE)
        self.assertEqual(os.listdir(self.stores), ["store"])

    def test_mode_and_link_are_kept(self):
        target = self.stores / "target"
        target.write_text(STORE)
        target.chmod(0o640)
        self.store.symlink_to("target")
        self.finish(self.clear(packets=2), 0)
        self.assertEqual((self.stored(), os.readlink(self.store)), (2, "target"))
        self.assertEqual(target.stat().st_mode & 0o7777, 0o640)


if __name__ == "__main__":
    unittest.main()
