#!/usr/bin/env python3
"""Where a clear finds its store, and what it keeps of it: links, owner, folders and mounts that are in
its way. Runs the program in $TPCLI."""
import contextlib
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

STATE = '{"status": {"policies": {"P": {"rules": {"R": {"families": ["ipv4"], "packets": 7}}}}}}'
STORE = '{"timestamp": 1, "rules": [], "namedCounters": []}'
NOBODY = 65534
as_root = unittest.skipUnless(os.geteuid() == 0, "needs root")


@contextlib.contextmanager
def mounted(test, *words):
    if subprocess.run(["mount", *words], capture_output=True).returncode != 0:
        test.skipTest("nothing can be mounted here")
    try:
        yield
    finally:
        subprocess.run(["umount", words[-1]], check=True)


class CounterStore(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.folder.chmod(0o755)
        # A copy, which another user can run, too.
        self.program = shutil.copy(os.environ["TPCLI"], self.folder / "tpcli")
        (self.folder / "state").write_text(STATE)
        self.stores = self.folder / "stores"
        self.stores.mkdir()
        self.store = self.stores / "store"

    def run_program(self, *words, status=0, **options):
        result = subprocess.run([self.program, "--state", self.folder / "state", "--counter-store",
                                 self.store, *words], capture_output=True, text=True, **options)
        self.assertEqual(result.returncode, status, result.stderr)
        return result.stderr

    def clear(self, **options):
        return self.run_program("clear", "traffic-policy", "counters", **options)

    def assert_cleared(self, path=None):
        self.assertIn('"packets":7', (path or self.store).read_text())

    @as_root
    def test_owner_is_kept(self):
        self.store.write_text(STORE)
        self.store.chmod(0o640)
        os.chown(self.store, 1234, 4321)
        self.assertEqual(self.clear(), "")
        self.assert_cleared()
        status = self.store.stat()
        self.assertEqual((status.st_uid, status.st_gid, status.st_mode & 0o7777), (1234, 4321, 0o640))

    @as_root
    def test_owner_cannot_be_kept(self):
        """Another user who may replace the store, of a group that he is in, then of one that he is not."""
        self.stores.chmod(0o777)
        for group, kept in ((4321, 4321), (1, NOBODY)):
            self.store.write_text(STORE)
            self.store.chmod(0o644)
            os.chown(self.store, 1234, group)
            error = self.clear(user=NOBODY, group=NOBODY, extra_groups=[4321])
            self.assertEqual(error, f"tpcli: {self.store}: cannot keep owner 1234 and group {group} "
                             f"(Operation not permitted): it has now owner {NOBODY} and group {kept}\n")
            self.assert_cleared()
            self.assertEqual((self.store.stat().st_uid, self.store.stat().st_gid), (NOBODY, kept))

    def test_dangling_link(self):
        for number, target in enumerate(("other/target", str(self.folder / "elsewhere"))):
            self.store.unlink(missing_ok=True)
            (self.stores / "other").mkdir(exist_ok=True)
            self.store.symlink_to("link")
            (self.stores / "link").unlink(missing_ok=True)
            (self.stores / "link").symlink_to(target)
            self.assertEqual(self.clear(), "")
            self.assertEqual((os.readlink(self.store), os.readlink(self.stores / "link")),
                             ("link", target))
            self.assert_cleared(self.stores / target)
            self.assertEqual(self.clear(), "", number)
        self.store.unlink()
        self.store.symlink_to("store")
        self.assertIn("Too many levels of symbolic links", self.clear(status=1))

    @as_root
    def test_folder_that_cannot_be_searched(self):
        """A store behind it may well be there: nothing takes it as missing."""
        self.store.write_text(STORE)
        self.stores.chmod(0o700)
        for words in (("show", "traffic-policy", "cpu"), ("clear", "traffic-policy", "counters")):
            error = self.run_program(*words, status=1, user=NOBODY)
            self.assertEqual(error.replace("cannot write: ", ""),
                             f"tpcli: {self.store}: Permission denied\n")

    @as_root
    def test_file_in_the_way(self):
        """A file of somebody else where nobody may remove it."""
        self.stores.chmod(0o1777)
        (self.stores / "store.new").write_text("")
        self.assertEqual(self.clear(status=1, user=NOBODY),
                         f"tpcli: {self.store}.new: cannot write: it is in the way and cannot be removed "
                         "(Operation not permitted): have its owner remove it\n")
        self.assertFalse(self.store.exists())
        self.assertEqual(self.clear(), "")
        self.assert_cleared()

    @as_root
    def test_mounted_file(self):
        self.store.write_text(STORE)
        with mounted(self, "--bind", str(self.store), str(self.store)):
            self.assertEqual(self.clear(status=1), f"tpcli: {self.store}: cannot write: it is a mount of "
                             "its own, which cannot be replaced: mount its folder\n")
            self.assertEqual((self.store.read_text(), os.listdir(self.stores)), (STORE, ["store"]))

    @as_root
    def test_full_and_read_only_file_system(self):
        with mounted(self, "-t", "tmpfs", "-o", "size=64k", "tmpfs", str(self.stores)):
            self.store.write_text(STORE)
            with open(self.stores / "rest", "wb", buffering=0) as rest, contextlib.suppress(OSError):
                while True:
                    rest.write(bytes(4096))
            self.assertEqual(self.clear(status=1),
                             f"tpcli: {self.store}: cannot write: No space left on device\n")
            subprocess.run(["mount", "-o", "remount,ro", str(self.stores)], check=True)
            self.assertEqual(self.clear(status=1),
                             f"tpcli: {self.store}.new: cannot write: Read-only file system\n")
            self.assertEqual((self.store.read_text(), sorted(os.listdir(self.stores))),
                             (STORE, ["rest", "store"]))


if __name__ == "__main__":
    unittest.main()
