#!/usr/bin/env python3
"""The completion of shells, in the shells themselves, and what the program completes. Runs the program in $TPCLI."""
import os
import pathlib
import subprocess
import sys

PROGRAM = os.environ["TPCLI"]
STATE = pathlib.Path(os.environ["TP_SOURCE_DIR"]) / "examples/edge-switch.json"
SHELLS = {
    "bash": """source <( "$TPCLI" completion bash ); COMP_WORDS=( "$@" ); COMP_CWORD=$(( $# - 1 )); _tpcli
               printf '%s\\n' "${COMPREPLY[@]}" """,
    # The completion system's own functions, as far as the script calls them.
    "zsh": """compdef() { :; }; _describe() { print -rl -- "${(@P)2}"; }; _files() { print -rl -- ${PREFIX}*; }
              source <( $TPCLI completion zsh ); words=( "$@" ); CURRENT=$#; PREFIX=${@[-1]}; _tpcli""",
}
# Words before the one that is completed, and what they become.
CASES = [
    ("sho", ["show"]),
    ("show traffic-policy ", ["counters", "cpu", "interface"]),
    ("sh tr interface policy c", ["control-plane", "control-plane-minimal", "customer-in"]),
    ("sh tr cpu vrf cust-", ["cust-blue", "cust-green", "cust-red"]),
    ("sh tr cpu policy customer-in rule v", ["voice"]),
    ("sh tr cpu s", ["summary"]),
    ("--json schema show-cpu", ["show-cpu", "show-cpu-errors"]),
    ("--sta", ["--state"]),
    ("help cl", ["clear"]),
    ("completion ", ["bash", "zsh"]),
    ("nonsense ", []),
    (f"--state {STATE.parent}/edge-switch.j", [str(STATE)]),
]
passed = failed = 0
for shell, script in SHELLS.items():
    flags = ["--norc"] if shell == "bash" else ["-f"]
    for line, wanted in CASES:
        words = [PROGRAM, *line.split(" ")]
        done = subprocess.run([shell, *flags, "-c", script, shell, *words], capture_output=True, text=True, timeout=30,
                              env={**os.environ, "TPCLI_STATE": str(STATE)})
        got = [word.split(":")[0] for word in done.stdout.split("\n") if word]
        if (got, done.stderr) == (wanted, ""):
            passed += 1
        else:
            failed += 1
            print(f"{shell}: {line!r}: {got} {done.stderr}", file=sys.stderr)
print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0 or passed == 0)
