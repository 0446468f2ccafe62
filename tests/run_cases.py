#!/usr/bin/env python3
"""Runs the program on every case and compares what it writes byte for byte.

A case is a folder with the states and expected.txt: lines that begin with "$ ", each followed by what
the program then writes. They run in a copy of the folder, the state being state.json. Such a line is
   tpcli ARGUMENT... [< FILE]   its status where it is not 0, and standard error follow
   trace LEVELS COMMAND...      what it traces follows: level, text, and which view or count says it
   cp FROM TO
   state BYTES, store BYTES     a file that clear and show must refuse, as in a Python bytes literal;
                                what they write on standard error follows

Usage: run_cases.py TPCLI CASES_DIR [--update]    (--update: takes what it gets as expected)
"""
import ast
import difflib
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

STORE = "state.json.counters"


def run(program, words, folder):
    feed = (folder / words[-1]).read_bytes() if "<" in words else b""
    return subprocess.run([program, *words[:-2 if "<" in words else None]], cwd=folder, input=feed,
                          capture_output=True, timeout=60)


def refusal(program, kind, document, folder):
    files = {"state.json": b"{}", STORE: b'{"timestamp":1,"rules":[],"namedCounters":[]}',
             {"state": "state.json", "store": STORE}[kind]: document}
    for name, content in files.items():
        (folder / name).write_bytes(content)
    errors = set()
    for command in ("clear traffic-policy counters", "show traffic-policy cpu"):
        done = run(program, command.split(), folder)
        errors.add(done.stderr)
        if done.returncode != 1 or done.stdout or len(errors) > 1 or done.stderr.count(b"\n") != 1:
            return b"%s: status %d, %r\n" % (command.encode(), done.returncode, done.stdout)
    intact = all((folder / name).read_bytes() == content for name, content in files.items())
    return errors.pop() if intact else b"a file was changed\n"


def reply(program, line, folder):
    kind, _, rest = line.partition(" ")
    if kind in ("state", "store"):
        return refusal(program, kind, ast.literal_eval("b'''%s'''" % rest), folder)
    if kind == "cp":
        shutil.copy(*(folder / name for name in rest.split()))
        return b""
    if kind == "trace":
        return re.sub(rb"(?m)^\w+ (\d+) (?:(?!render|get)\w+: )?", rb"\1 ",
                      run(program, shlex.split("--trace " + rest), folder).stderr)
    done = run(program, shlex.split(rest), folder)
    status = b"[%d] " % done.returncode if done.returncode else b""
    return done.stdout + status + (done.stderr or (status and b"\n"))


def main(program, cases, *options):
    os.environ.pop("TPCLI_STATE", None)
    passed = failed = 0
    for path in sorted(pathlib.Path(cases).glob("*/expected.txt")):
        updated = b""
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(shutil.copytree(path.parent, pathlib.Path(name, "case")))
            for step in re.split(rb"^(?=\$ )", path.read_bytes(), flags=re.M)[1:]:
                line, _, expected = step.partition(b"\n")
                got = reply(os.path.abspath(program), line[2:].decode(), folder)
                updated += line + b"\n" + got
                passed += got == expected
                failed += got != expected
                sys.stdout.writelines(difflib.unified_diff(
                    *(repr(text)[2:-1].replace("\\n", "\n").splitlines(keepends=True)
                      for text in (expected, got)), f"{path.parent.name}: {line.decode()}", "got"))
        if "--update" in options:
            path.write_bytes(updated)
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
