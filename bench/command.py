#!/usr/bin/env python3
"""The whole command: what a show of a large state costs, reading included.

Usage: command.py [--rules N,...] [--rounds N] TPCLI...

Runs each program in turn, round by round, on states of bench/filters.txt, and prints the best wall
time of a show that reads everything and shows nothing ("read"), of the JSON of every rule, and with
it the user and system time and the peak of memory; of further programs also the ratio to the first.
"""
import argparse
import os
import pathlib
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
READ = ["show", "traffic-policy", "cpu", "policy", "none"]
WHOLE = ["show", "traffic-policy", "cpu", "detail", "|", "json"]


def run(program, state, command):
    """Wall, user and system seconds, and the peak in MB."""
    begin = time.monotonic()
    child = subprocess.Popen([program, "--state", state, *command], stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode:
        sys.exit(f"{program}: status {child.returncode}")
    return time.monotonic() - begin, usage.ru_utime, usage.ru_stime, usage.ru_maxrss / 1000


def measure(programs, state, rounds):
    """The best of each number, by program and command."""
    best = {}
    for number in range(rounds):
        for program in programs if number % 2 else programs[::-1]:
            for name, command in (("read", READ), ("whole", WHOLE)):
                now = run(program, state, command)
                best[program, name] = [min(pair) for pair in
                                       zip(now, best.get((program, name), now))]
    return best


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--rules", default="100000,1000000,2003003")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("programs", nargs="+", metavar="TPCLI")
    options = parser.parse_args()
    print(f"{'rules':>9} {'read':>7} {'whole':>7} {'user':>7} {'system':>7} {'MB':>6} {'ratio':>6}  program")
    for rules in options.rules.split(","):
        with tempfile.NamedTemporaryFile(suffix=".json") as state:
            subprocess.run([sys.executable, HERE / "make_state.py", HERE / "filters.txt", rules],
                           stdout=state, check=True)
            best = measure(options.programs, state.name, options.rounds)
        for program in options.programs:
            wall, user, system, peak = best[program, "whole"]
            ratio = wall / best[options.programs[0], "whole"][0]
            print(f"{rules:>9} {best[program, 'read'][0]:7.3f} {wall:7.3f} {user:7.3f} {system:7.3f} "
                  f"{peak:6.0f} {ratio:6.2f}  {program}")


main()
