#!/usr/bin/env python3
"""The transcripts of the README are what the program writes today."""
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(os.environ["TP_SOURCE_DIR"])
blocks = re.findall(r"```console\n(.*?)```", (ROOT / "README.md").read_text(), re.S)
passed = failed = 0
with tempfile.TemporaryDirectory() as folder:
    state = shutil.copy(ROOT / "examples/edge-switch.json", folder)
    for command, wanted in re.findall(r"^\$ ./run (.*)\n((?:(?!\$ ).*\n)*)", "".join(blocks), re.M):
        done = subprocess.run([os.environ["TPCLI"], "--state", state, *shlex.split(command)],
                              capture_output=True, text=True, timeout=60)
        if (done.stdout, done.returncode) == (wanted, 0):
            passed += 1
        else:
            failed += 1
            print(f"$ {command}\n{done.stdout}{done.stderr}", file=sys.stderr)
print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0 or passed == 0)
