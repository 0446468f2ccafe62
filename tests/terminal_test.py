#!/usr/bin/env python3
"""Commands at a terminal: a real one, of which we are the other side. Runs the program in $TPCLI, with line
editing unless it was built without."""
import fcntl
import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import tempfile
import termios
import time
import unittest

SOURCE = pathlib.Path(os.environ["TP_SOURCE_DIR"])
EDITED = b"tpcli-complete" in pathlib.Path(os.environ["TPCLI"]).read_bytes()
UP, TAB, INTERRUPT, END = "\x1b[A", "\t", "\x03", "\x04"


class Terminal(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.state = pathlib.Path(shutil.copy(SOURCE / "examples/edge-switch.json", self.folder))
        self.history = self.folder / "state/tpcli/history"

    def start(self, *words, **environment):
        ours, theirs = pty.openpty()
        self.addCleanup(os.close, ours)
        self.terminal, self.seen = ours, ""
        self.errors = open(self.folder / "errors", "w+")
        self.addCleanup(self.errors.close)
        self.program = subprocess.Popen(
            [os.environ["TPCLI"], "--state", self.state, *words], stdin=theirs, stdout=theirs, stderr=self.errors,
            start_new_session=True, preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0),
            env={"TERM": "vt100", "PATH": os.environ["PATH"], "HOME": str(self.folder), "LC_ALL": "C.UTF-8",
                 "XDG_STATE_HOME": str(self.folder / "state"), **environment})
        self.addCleanup(self.program.wait)
        self.addCleanup(self.program.kill)
        os.close(theirs)

    def read(self, seconds):
        if not select.select([self.terminal], [], [], seconds)[0]:
            return False
        try:
            data = os.read(self.terminal, 1 << 16)
        except OSError:  # the other side is closed
            data = b""
        # Without what moves the cursor.
        self.seen += re.sub(r"\x1b\[[0-9;?]*[A-Za-z]|\x1b[()=>].?|[\r\x07\0]", "", data.decode(errors="replace"))
        return bool(data)

    def await_text(self, wanted, end=10):
        """Takes what was seen up to the text."""
        limit = time.monotonic() + end
        while wanted not in self.seen:
            if not self.read(0.1) and time.monotonic() > limit:
                self.fail(f"no {wanted!r} in {self.seen!r}")
        before, _, self.seen = self.seen.partition(wanted)
        return before + wanted

    def dialogue(self, *steps):
        """Sends and awaits in turn; the first prompt is awaited before."""
        self.await_text("tpcli> ")
        for sent, *wanted in steps:
            os.write(self.terminal, sent.encode())
            for text in wanted:
                self.await_text(text)

    def finish(self, status):
        limit = time.monotonic() + 10
        while (self.read(0.05) or self.program.poll() is None) and time.monotonic() < limit:
            pass
        self.assertEqual(self.program.returncode, status)
        self.errors.seek(0)
        return self.errors.read()

    def test_leaving(self):
        for word in ("exit\n", "qu\n", "end\n", END):
            self.start()
            self.dialogue((word,))
            self.assertEqual(self.finish(0), "")

    def test_interrupts(self):
        self.start()
        self.dialogue(("sh tr bogus" + INTERRUPT, "tpcli> "), ("sh tr int sum pol lab-in\n", "Traffic policy lab-in", "tpcli> "),
                      (INTERRUPT, "tpcli> "), ("bogus\n", "tpcli> "), (END,))
        self.assertEqual(self.finish(2).splitlines(), ['tpcli: unknown word "bogus"', "   bogus", "   ^^^^^"])

    def test_interrupt_of_show(self):
        wait = self.folder / "pipe"
        os.mkfifo(wait)
        self.state = wait  # reading it takes as long as we like
        self.start()
        self.dialogue(("show traffic-policy cpu\n", "\n"))
        time.sleep(0.3)
        os.write(self.terminal, INTERRUPT.encode())
        self.await_text("tpcli> ")
        os.write(self.terminal, b"exit\n")
        self.assertEqual(self.finish(130), "")

    def test_redirected(self):
        """No prompt where standard input or output is no terminal."""
        self.start()
        self.await_text("tpcli> ")
        ours, theirs = pty.openpty()
        os.write(ours, b"types\n" + END.encode())
        done = subprocess.run([os.environ["TPCLI"]], stdin=theirs, capture_output=True, timeout=10)
        self.assertIn(b"TrafficPolicyCli::PolicyState\n", done.stdout)
        self.assertNotIn(b">", done.stdout)
        os.close(ours)
        os.close(theirs)

    def test_pager(self):
        self.start("--pager", "sed -n 's/^Traffic/paged &/p'", "sh", "tr", "int", "|", "ex", "edge")
        self.await_text("paged Traffic policy lab-in")
        self.finish(0)
        self.start("--pager", "head -n 1", "sh", "tr", "int", "|", "ex", "edge")
        self.await_text("Traffic policy control-plane\n")
        self.finish(0)
        self.start("--pager", "no-such-pager", "sh", "tr", "int")
        self.assertIn("tpcli: cannot run the pager: ", self.finish(1))
        done = subprocess.run([os.environ["TPCLI"], "--state", self.state, "sh", "tr", "cpu"], capture_output=True,
                              env={"TPCLI_PAGER": "cat >&2"}, timeout=10)
        self.assertEqual(done.stderr, b"")

    @unittest.skipUnless(EDITED, "built without line editing")
    def test_completion(self):
        self.state.write_text(self.state.read_text().replace('"lab-in"', '"lab in\'s"'))
        self.start()
        self.dialogue(
            ("sh" + TAB, "show "), ("tr" + TAB, "traffic-policy "), ("i" + TAB, "interface "),
            ("pol" + TAB + "c" + TAB, "policy ", "control-plane\n", "control-plane-minimal\n", "customer-in\n",
             "tpcli> show traffic-policy interface policy c"),
            ("u" + TAB, "ustomer-in "), ("s" + TAB + "\n", "summary", "match voice ipv4", "tpcli> "),
            ("sh tr int pol la" + TAB + "| in lab\n", "Traffic policy lab in's", "tpcli> "),
            ("help sh" + TAB, "help show "), ("t" + TAB + "\n", "traffic-policy", "interface", "tpcli> "),
            ("sh tr cpu pol 'what?'\n", "'what?'", "tpcli> "))
        # The completion sees what changed in the meantime.
        self.state.write_text(self.state.read_text().replace("customer-in", "kunden-ein"))
        os.write(self.terminal, ("sh tr cpu pol ku" + TAB).encode())
        self.await_text("kunden-ein ")

    @unittest.skipUnless(EDITED, "built without line editing")
    def test_question_mark(self):
        self.start()
        self.dialogue(
            ("show traffic-policy cpu e?", "errors", "where the installation failed",
             "tpcli> show traffic-policy cpu e"),
            ("rr?", "errors", "tpcli> show traffic-policy cpu err"),
            (" policy ?", "NAME", "this policy only", "edge-in\n", "tpcli> show traffic-policy cpu err policy "),
            ("x |?", "include TEXT", "json", "tpcli> show traffic-policy cpu err policy x |"),
            (INTERRUPT + "nonsense ?", "unknown word", "tpcli> nonsense "), (INTERRUPT, "tpcli> "), (END,))
        self.assertEqual(self.finish(0), "")

    @unittest.skipUnless(EDITED, "built without line editing")
    def test_history(self):
        self.start()
        self.dialogue(("sh tr int sum pol lab-in\n", "Traffic policy lab-in", "tpcli> "), ("exit\n",))
        self.finish(0)
        self.assertEqual(self.history.stat().st_mode & 0o077, 0)
        self.start()
        self.await_text("tpcli> ")
        with self.history.open("a") as others:
            others.write("others\n")
        os.write(self.terminal, b"\n")
        self.dialogue((UP, "exit"), (UP, "sh tr int sum pol lab-in"), ("\n", "Traffic policy lab-in", "tpcli> "),
                      (END,))
        self.finish(0)
        self.assertIn("\nothers\n", self.history.read_text())


if __name__ == "__main__":
    unittest.main()
