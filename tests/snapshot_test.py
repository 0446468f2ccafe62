#!/usr/bin/env python3
"""A snapshot of a state shows the same as the state, and is the same when it is taken again. Runs the program in
$TPCLI on the states of the cases and the examples."""
import os
import pathlib
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(os.environ["TP_SOURCE_DIR"])
SHOWS = "\n".join(f"show traffic-policy {side} {view} {output}\n" for side in ("cpu", "interface")
                  for view in ("", "errors", "counters per-interface") for output in ("", "| json")).encode()
passed = failed = 0


def run(state, *words, **options):
    return subprocess.run([os.environ["TPCLI"], "--state", state, "--counter-store", "/nonexistent/store", *words],
                          capture_output=True, timeout=60, **options)


with tempfile.TemporaryDirectory() as folder:
    copy = pathlib.Path(folder, "state")
    for state in sorted([*SOURCE.glob("tests/cases/*/*.json"), *SOURCE.glob("examples/*.json")]):
        snapshot = run(state, "snapshot")
        if snapshot.returncode == 1:
            continue  # broken on purpose, or no state
        copy.write_bytes(snapshot.stdout)
        wanted, got = (run(path, input=SHOWS) for path in (state, copy))
        # What the records cannot hold is noted on standard error, and is not in the snapshot.
        same = (wanted.stdout, wanted.returncode) == (got.stdout, got.returncode)
        if same and run(copy, "snapshot").stdout == snapshot.stdout:
            passed += 1
        else:
            failed += 1
            print(f"{state}: its snapshot is another state {got.stderr[:300]}", file=sys.stderr)
print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0 or passed < 5)
