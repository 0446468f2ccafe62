#!/usr/bin/env python3
"""Every call of a kind failing once, in turn, in shows and in a clear: files that cannot be opened, read,
written, locked or replaced, no memory, signals, calls that do half. Runs the program in $TPCLI under
the library in $TP_FAULTS."""
import concurrent.futures
import errno
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

EXAMPLES = pathlib.Path(os.environ["TP_SOURCE_DIR"], "examples")
STORE = b'{"timestamp": 1, "rules": [], "namedCounters": []}'
FAILING = [("open", errno.EMFILE), ("read", errno.EIO), ("write", errno.ENOSPC), ("fsync", errno.EIO),
           ("rename", errno.EIO), ("stat", errno.EACCES), ("flock", errno.ENOLCK), ("malloc", errno.ENOMEM)]
HARMLESS = [*((call, errno.EINTR) for call in ("open", "read", "write", "fsync", "flock")),
            ("read", "short"), ("write", "short")]
SHOWS = ["show traffic-policy cpu", "show traffic-policy interface counters per-interface | json",
         "show traffic-policy interface detail | include Ethernet | exclude sip", "snapshot"]
CLEAR = "clear traffic-policy counters"


def contents(store):
    return dict(json.loads(store), timestamp=None)


class Faults(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.state = shutil.copy(EXAMPLES / "edge-switch.json", self.folder / "state")

    def run_program(self, words, fault=None, state=None):
        """Its status, output and errors, what the store is then, and whether the fault happened."""
        with tempfile.TemporaryDirectory(dir=self.folder) as name:
            store = pathlib.Path(name, "store")
            store.write_bytes(STORE)
            mark = os.memfd_create("mark")
            environment = dict(os.environ)
            if fault:
                environment.update(LD_PRELOAD=os.environ["TP_FAULTS"], TP_FAULT_MARK=str(mark),
                                   TP_FAULT=" ".join(map(str, fault)))
            done = subprocess.run(
                [os.environ["TPCLI"], "--state", state or self.state, "--counter-store", store,
                 *words.split()], capture_output=True, timeout=60, pass_fds=[mark], env=environment)
            happened = os.fstat(mark).st_size > 0
            os.close(mark)
            if done.returncode >= 0:
                self.assertEqual(set(os.listdir(name)) - {"store.lock"}, {"store"})
            return done.returncode, done.stdout, done.stderr.decode(), store.read_bytes(), happened

    def check(self, words, whole, fault, state):
        """False when the fault did not happen."""
        status, output, error, store, happened = self.run_program(words, fault, state)
        _, whole_output, whole_error, whole_store, _ = whole
        cleared = store != STORE
        if cleared:
            self.assertEqual(contents(store), contents(whole_store))
        if status == 0:
            self.assertEqual((output, error, cleared), (whole_output, whole_error, words == CLEAR))
            return happened
        self.assertTrue(happened)
        *notes, error = error.splitlines(keepends=True)
        self.assertTrue(whole_error.startswith("".join(notes)))
        self.assertEqual((status, error[:7], error[-1]), (1, "tpcli: ", "\n"))
        self.assertTrue(whole_output.startswith(output))
        if cleared:
            self.assertIn("the new store is in place", error)
        self.assertNotIn(fault[2], ("short", errno.EINTR))
        if error != "tpcli: out of memory\n":
            self.assertIn(os.strerror(fault[2]), error)
            self.assertRegex(error, f"{self.folder}/|the output|the command|process")
        return True

    def fail_each(self, words, call, kind, repeated="", state=None):
        """Returns how many of the calls there were."""
        whole = self.run_program(words, state=state)
        self.assertEqual(whole[0], 0)
        # The first two allocations are the C++ runtime's: the memory for exceptions, and the list of
        # thread-local objects, without which the C library itself ends the process.
        number = first = 3 if call == "malloc" else 1
        while True:
            with self.subTest(words=words, fault=(call, number, kind, repeated)):
                if not self.check(words, whole, (call, f"{number}{repeated}", kind), state):
                    return number - first
            number += 1

    def fail_all(self, jobs):
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            return list(pool.map(lambda job: self.fail_each(*job), jobs))

    def test_shows(self):
        counts = self.fail_all([(words, *kind) for words in SHOWS for kind in FAILING + HARMLESS])
        self.assertGreater(sum(counts), 1000)

    def test_clear(self):
        counts = self.fail_all([(CLEAR, *kind) for kind in FAILING + HARMLESS])
        self.assertNotIn(0, counts)

    def test_killed_clear(self):
        whole = self.run_program(CLEAR)
        for call, _ in FAILING:
            for number in range(1, 8):
                status, _, _, store, happened = self.run_program(CLEAR, (call, number, "kill"))
                self.assertEqual(status, -9 if happened else 0)
                self.assertIn(contents(store), (contents(STORE), contents(whole[3])))

    def test_from_then_on(self):
        self.fail_all([(words, *kind, "+") for words in (SHOWS[1], CLEAR)
                       for kind in (("malloc", errno.ENOMEM), ("write", errno.ENOSPC), ("read", errno.EIO))])

    def test_other_sources(self):
        self.fail_all([(SHOWS[0], *kind, "", str(EXAMPLES / name))
                       for name in ("openconfig/control-plane.json", "sonic/config_db.json")
                       for kind in (("malloc", errno.ENOMEM), ("read", "short"))])

    def test_locks_of_files_alone(self):
        """As on a network file system: a file is locked in place of the folder."""
        whole = self.run_program(CLEAR)
        self.assertTrue(self.check(CLEAR, whole, ("flock", "1+", "read-only"), None))


if __name__ == "__main__":
    unittest.main()
