#!/usr/bin/env python3
"""Validates against the schemas: the example states, every JSON reply about them, and those that the
cases and the README expect. Checks that the schemas refuse broken ones.

Usage: schema_check.py TPCLI SOURCE_DIR
"""
import itertools
import json
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import warnings

warnings.simplefilter("ignore", DeprecationWarning)
from jsonschema import Draft202012Validator, RefResolver  # noqa: E402

# The schemas of replies, each with the words that its command has; the first that fits is meant.
REPLIES = {name: {name} for name in ("types", "status", "check", "last-clear", "rates")}
REPLIES.update(repeated={"interval"}, **{name: set(name.split("-")) for name in (
    "show-counters", "show-cpu-errors", "show-interface-errors", "show-cpu", "show-interface")})
# The word behind one of these may be any, even one of a schema's.
VALUED = ("policy", "rule", "vrf", "--state", "--counter-store", "--trace")
# A command and what it writes, up to the next one or the end of a block. One that only fails writes
# no reply.
STEP = re.compile(r"^\$ (.*)\n(?!\[\d+\] )((?:(?!\$ |```).*\n)*)", re.M)
SHOW = ["show", "traffic-policy"]
OPTIONS = ("summary", "detail", "errors", "counters", "per-interface")
# Members whose own members are names.
MAPS = set("""trafficPolicies cpu interfaces l3Interfaces policies rules namedCounters
    unnamedCounters countNamed""".split())
# Members of replies that may be absent.
OPTIONAL = set("""matches actions namedCounters unnamedCounters ingressCounterGranularity interfaces
    byteCount byteTotal srcPrefixes srcPrefixSets destPrefixes destPrefixSets protocols ipLengths
    fragment dscps ttls neighborProtocol matchL4Protocol matchIpOptions tcpFlags srcPorts
    srcL4PortFieldSets destPorts destL4PortFieldSets icmps icmpCodes drop setDscp setTc police count
    countNamed log place""".split())
# Members of replies whose strings, or whose elements, cannot be any name.
FORMED = set("""matchOption unit name neighborProtocol matchL4Protocol ingressCounterGranularity
    srcPrefixes destPrefixes ipv4InstallationErrors ipv6InstallationErrors""".split())
# Lists of replies that may be empty, beside those of VRFs and interfaces.
MAY_BE_EMPTY = ("rules", "tcpFlags", "constructor", "attributes", "failures", "errors", "findings", "recreated")
# Members of replies that are any number, or none.
REAL = ("packetsPerSecond", "bitsPerSecond", "seconds", "lastCleared")
WRONG = {str: (-1, "", "bogus"), bool: (-1, False), int: (-1, 2**64, 1.5, "1"), float: ("1", None),
         dict: (-1,), list: (-1, []), type(None): (-1,)}
results = {True: 0, False: 0}


def check(holds, failure):
    results[bool(holds)] += 1
    if not holds:
        print("FAILED:", failure)


def reply_schema(words):
    rest, said = iter(words), set()
    for word in rest:
        said.add(word)
        if word in VALUED:
            next(rest)
    return next((name for name, wanted in REPLIES.items() if said >= wanted), None)


def mutants(node, seen, place=()):
    """Breaks the document in place, one thing at a time, and mends it again; yields what is broken
    and where, with "*" for names and indices. What is in `seen` already is not broken again."""
    def is_new(kind, where):
        return (kind, where) not in seen and not seen.add((kind, where))

    is_map = isinstance(node, dict) and place and place[-1] in MAPS
    if isinstance(node, dict) and is_new("extra", place):
        node["bogus"] = -1
        yield "extra", place
        del node["bogus"]
    # That no two objects of a list have one name is more than a schema can say.
    are_named = isinstance(node, list) and place[-1] in MAPS and node and isinstance(node[0], dict)
    if isinstance(node, list) and node and not are_named and is_new("twice", place):
        node.append(node[0])
        yield "twice", place
        node.pop()
    for key, value in list(node.items() if isinstance(node, dict) else enumerate(node)):
        is_member = isinstance(node, dict) and not is_map
        where = place + (key if is_member else "*",)
        if is_member and is_new("missing", where):
            del node[key]
            yield "missing", where
        for wrong in WRONG[type(value)]:
            if is_new(repr(wrong), where):
                node[key] = wrong
                yield repr(wrong), where
        node[key] = value
        if isinstance(value, (dict, list)):
            yield from mutants(value, seen, where)


def must_refuse(kind, where):
    steps = ["", *(step for step in where if step != "*")]
    member = steps[-1]
    if member in REAL:
        return kind in ("missing", "'1'", "-1")
    return {"missing": member not in OPTIONAL,
            "twice": not member.endswith("InstallationErrors"),
            "''": not member.endswith(("Vrfs", "Intfs")),
            "[]": not member.endswith(("Vrfs", "Intfs")) and member not in MAY_BE_EMPTY,
            "'bogus'": member in FORMED and not {"constructor", "attributes"}.intersection(steps)}.get(kind, True)


class Checker:
    def __init__(self, program, schema_dir):
        self.program = program
        documents = {path: json.loads(path.read_text()) for path in schema_dir.glob("*.json")}
        store = {path.as_uri(): schema for path, schema in documents.items()}
        self.validators = {}
        for path, schema in documents.items():
            Draft202012Validator.check_schema(schema)
            self.validators[path.name.split(".")[0]] = Draft202012Validator(
                schema, resolver=RefResolver(path.as_uri(), schema, store))
        self.seen = {name: set() for name in self.validators}

    def run(self, state, store, *command):
        return subprocess.run([self.program, "--state", state, "--counter-store", store, *command],
                              stdin=subprocess.DEVNULL, capture_output=True)

    def check_valid(self, schema, document, what):
        error = next(self.validators[schema].iter_errors(document), None)
        check(not error, f"{what}: {error and error.message[:300]}")

    def check_file(self, schema, path, state, store):
        """The schema refuses what the program refuses, and nothing else."""
        document = json.loads(path.read_text())
        self.check_valid(schema, document, schema)
        for kind, where in mutants(document, self.seen[schema]):
            path.write_text(json.dumps(document))
            show = self.run(state, store, "show", "traffic-policy", "cpu", "counters")
            check((show.returncode == 1) != self.validators[schema].is_valid(document),
                  f"{schema}: {kind} at /{'/'.join(where)}: refused by schema or program alone")

    def check_reply(self, state, store, *command):
        what = " ".join(command)
        reply = self.run(state, store, "--json", *command)
        check(reply.returncode == {"check": 1, "status": 4}.get(command[0], 0), f"{what}: status {reply.returncode}")
        schema = reply_schema(command)
        document = json.loads(reply.stdout)
        self.check_valid(schema, document, what)
        # What is wrong in a repeated reply may be right in another.
        for kind, where in mutants(document, self.seen[schema]) if schema != "repeated" else ():
            check(not must_refuse(kind, where) or not self.validators[schema].is_valid(document),
                  f"{schema}: accepts {kind} at /{'/'.join(where)}")

    def check_transcript(self, path):
        """Returns the number of replies. Commands from a file may print text around theirs."""
        replies = 0
        for step, output in STEP.findall(path.read_bytes().decode()):
            if re.search(r"^\[2\] ", output, re.M):
                continue
            what = f"{path.parent.name}: {step}"
            step, _, feed = step.partition(" < ")
            lines = [step, *((path.parent / feed).read_text().splitlines() if feed else [])]
            asked = [shlex.split(line) for line in lines if re.search(r"--json|\|\W*js", line)]
            given = [line for line in output.split("\n") if line.startswith("{") and not line.startswith(('{"error"', '{"hint"'))]
            for line in re.findall(r'^(?:\[\d+\] )?({"(?:error|hint)".*)', output, re.M):
                self.check_valid("error", json.loads(line), what)
            check(len(asked) == len(given), f"{what}: {len(given)} replies to {len(asked)} commands")
            for words, reply in zip(asked, given):
                schema = reply_schema(words)
                check(schema, f"{what}: no schema")
                if schema:
                    self.check_valid(schema, json.loads(reply), what)
            replies += len(given)
        return replies

    def check_example(self, example, folder):
        state, store = folder / "state.json", folder / "store.json"
        cleared = self.run(example, store, "clear", "traffic-policy", "counters")
        check(cleared.returncode == 0, f"{example.name}: clear: {cleared.stderr.decode()}")
        for side, *bits in itertools.product(("cpu", "interface"), *[(0, 1)] * len(OPTIONS)):
            options = list(itertools.compress(OPTIONS, bits))
            if not {"errors", "detail"} <= set(options):
                self.check_reply(example, store, "show", "traffic-policy", side, *options)
        for words in (["types"], ["types", "TrafficPolicyCli::PolicyState"], ["status"], ["check"],
                      SHOW + ["counters", "last-clear"], SHOW + ["cpu", "rates", "interval", "0.01"],
                      SHOW + ["interface", "interval", "0.01", "count", "1"]):
            self.check_reply(example, store, *words)
        state.write_text(example.read_text())
        self.check_file("state", state, state, folder / "none")
        self.check_file("counter-store", store, example, store)


def main(program, source_dir):
    source = pathlib.Path(source_dir).resolve()
    checker = Checker(program, source / "docs/schemas")
    for transcripts in ("tests/cases/*/expected.txt", "README.md"):
        replies = sum(checker.check_transcript(path) for path in source.glob(transcripts))
        check(replies, f"{transcripts}: no replies")
    examples = list(source.glob("examples/*.json"))
    check(examples, "no examples")
    for example in examples:
        with tempfile.TemporaryDirectory() as folder:
            checker.check_example(example, pathlib.Path(folder))
    print(f"{results[True]} passed, {results[False]} failed")
    return 1 if results[False] else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
