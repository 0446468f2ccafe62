#!/usr/bin/env python3
"""Clears and shows of one counter store that are killed, run beside each other, find no room or may not
write: whatever happens, the store is one clear's whole result, and shows read it.

Usage: store_torture.py TPCLI [ROUNDS]    (default: 1000)
"""
import collections
import contextlib
import json
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import time

RULES = [f"rule-{number}" for number in range(500)]


def state(packets):
    """A state in which all rules have one count, so that a mixture of two clears shows."""
    return json.dumps({
        "config": {"trafficPolicies": {"P": {"rules": [
            {"name": rule, "match": {"ipv4": {}}, "actions": {"count": True}} for rule in RULES]}}},
        "status": {"policies": {"P": {"rules": {
            rule: {"families": ["ipv4"], "packets": packets} for rule in RULES}}}}})


def limit_files():
    resource.setrlimit(resource.RLIMIT_FSIZE, (9000, 9000))


class Torture:
    def __init__(self, program, folder):
        self.folder = folder
        self.program = shutil.copy(program, folder / "tpcli")
        self.program.chmod(0o755)
        self.number = 1  # of the last state that was written
        self.write_state()
        self.stores = folder / "stores"
        self.stores.mkdir()
        self.store = self.stores / "store"
        begin = time.monotonic()
        self.finish(self.clear(), 0)
        self.duration = time.monotonic() - begin

    def write_state(self):
        (self.folder / "state").write_text(state(self.number))

    def start(self, *words, **options):
        return subprocess.Popen([self.program, "--state", self.folder / "state", "--counter-store",
                                 self.store, *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                text=True, **options)

    def clear(self, **options):
        return self.start("clear", "traffic-policy", "counters", **options)

    def finish(self, process, *statuses):
        output, error = process.communicate(timeout=60)
        assert process.returncode in statuses, (process.args, process.returncode, error)
        assert (process.returncode == 1) == error.startswith("tpcli: " + str(self.stores)), error
        return output

    def stored(self):
        store = json.loads(self.store.read_text())
        counts = {rule["packets"] for rule in store["rules"]}
        assert len(counts) == 1 and len(store["rules"]) == len(RULES), counts
        return counts.pop()

    def next_state(self):
        """What is stored before, and what a clear will store."""
        before, self.number = self.stored(), self.number + 1
        self.write_state()
        return before, self.number

    def killed_clear(self):
        before, after = self.next_state()
        clear = self.clear()
        time.sleep(random.uniform(0, 1.1) * self.duration)
        clear.kill()
        clear.communicate()
        stored = self.stored()
        assert stored in (before, after)
        return "old" if stored == before else "new"

    def together(self):
        before, after = self.next_state()
        shows = [self.start("show", "traffic-policy", "cpu", "counters") for _ in range(2)]
        clears = [self.clear() for _ in range(3)]
        clears[0].kill()
        clears[0].communicate()
        for clear in clears[1:]:
            self.finish(clear, 0)
        for show in shows:
            counts = set(re.findall(r": (\d+) packets", self.finish(show, 0)))
            assert counts <= {str(after - before), "0"} and len(counts) == 1, counts
        assert self.stored() == after

    def failing_clear(self, **options):
        before, _ = self.next_state()
        self.finish(self.clear(**options), 1)
        assert self.stored() == before
        assert os.listdir(self.stores) == ["store"], os.listdir(self.stores)

    def file_size_limit(self):
        (self.stores / "store.new").unlink(missing_ok=True)
        # Without signals restored, the one about the file's size stays ignored.
        self.failing_clear(restore_signals=False, preexec_fn=limit_files)

    def read_only_folder(self):
        (self.stores / "store.new").unlink(missing_ok=True)
        self.stores.chmod(0o555)
        self.failing_clear(user=65534 if os.geteuid() == 0 else None)
        self.stores.chmod(0o755)

    def full_disk(self):
        """Fuller each time, up to too full for even an empty file of the clear."""
        with mounted_tmpfs(self.folder / "small") as small:
            if not small:
                self.file_size_limit()
                return "nothing can be mounted here"
            home, store, self.store = self.stores, self.store, small / "store"
            self.stores = small
            shutil.copy(store, self.store)
            before, after = self.next_state()
            with open(small / "rest", "wb", buffering=0) as rest, contextlib.suppress(OSError):
                for _ in range(random.randrange(64)):
                    rest.write(bytes(4096))
            clear = self.clear()
            self.finish(clear, 0, 1)
            assert self.stored() == (before if clear.returncode else after)
            assert sorted(os.listdir(small)) == ["rest", "store"], os.listdir(small)
            self.stores, self.store = home, store
        return "old" if clear.returncode else "new"


@contextlib.contextmanager
def mounted_tmpfs(folder):
    """The folder, or None where nothing can be mounted."""
    folder.mkdir(exist_ok=True)
    mount = ["mount", "-t", "tmpfs", "-o", "size=192k", "tmpfs", str(folder)]
    if subprocess.run(mount, capture_output=True).returncode != 0:
        yield None
        return
    try:
        yield folder
    finally:
        subprocess.run(["umount", str(folder)], check=True)


def main(program, rounds="1000"):
    begin = time.monotonic()
    done = collections.Counter()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        torture = Torture(program, folder)
        kinds = [torture.killed_clear] * 6 + [torture.together, torture.file_size_limit,
                                              torture.read_only_folder, torture.full_disk]
        for _ in range(int(rounds)):
            kind = random.choice(kinds)
            result = kind()
            done[kind.__name__ + (f" ({result})" if result else "")] += 1
        torture.finish(torture.clear(), 0)
        assert (torture.stored(), os.listdir(torture.stores)) == (torture.number, ["store"])
    print(", ".join(f"{count} {kind}" for kind, count in sorted(done.items()))
          + f", in {time.monotonic() - begin:.0f} s")


if __name__ == "__main__":
    main(*sys.argv[1:])
