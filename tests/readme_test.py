#!/usr/bin/env python3
"""The transcripts of the README are what the program writes today, and README and manual page have the
commands, words and options that the program has."""
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

    # Transcripts of the documents, standard error included, in a copy of the examples.
    shutil.copytree(ROOT / "examples", f"{folder}/examples")
    for path in sorted(ROOT.glob("docs/*.md")):
        blocks = re.findall(r"```console\n(.*?)```", path.read_text(), re.S)
        for command, wanted in re.findall(r"^\$ tpcli (.*)\n((?:(?!\$ ).*\n)*)", "".join(blocks), re.M):
            done = subprocess.run([os.environ["TPCLI"], *shlex.split(command)], cwd=folder, text=True,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
            passed += done.stdout == wanted
            failed += done.stdout != wanted
            if done.stdout != wanted:
                print(f"{path.name}: $ tpcli {command}\n{done.stdout}", file=sys.stderr)


def check(holds, failure):
    global passed, failed
    passed += bool(holds)
    failed += not holds
    if not holds:
        print(failure, file=sys.stderr)


def lines(text):
    return "\n".join(line.strip() for line in text.splitlines()) + "\n"


page = (ROOT / "docs/tpcli.1").read_text().replace("\\-", "-")
parts = dict(part.split(":\n", 1) for part in subprocess.run(
    [os.environ["TPCLI"], "--help"], capture_output=True, text=True).stdout.split("\n\n"))
usage, commands, actions, words, filters, options, statuses = parts.values()
check(lines(usage) in lines(page), "the manual page has another usage")
check(lines(commands) in lines(page), "the manual page has other commands")
check(lines(commands.partition("   exit\n")[0]) in lines((ROOT / "README.md").read_text()),
      "the README has other commands")
example = (ROOT / "examples/minimal.cpp").read_text()
check(f"```cpp\n{example}```" in (ROOT / "README.md").read_text(), "the README has another minimal.cpp")
for word in re.findall(r"^   (\S+)", words + filters + options + statuses, re.M):
    check(re.search(r"^\.B[IR]? .*(?<![-\w])%s(?![-\w])" % word, page, re.M), f"the manual page has no {word}")
print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0 or passed == 0)
