#!/usr/bin/env python3
"""Validates the example states and every JSON reply about them against the schemas, and checks that
the schemas refuse broken ones.

Usage: schema_check.py TPCLI SCHEMA_DIR EXAMPLES_DIR...
"""
import itertools
import json
import pathlib
import subprocess
import sys
import tempfile
import warnings

warnings.simplefilter("ignore", DeprecationWarning)
from jsonschema import Draft202012Validator, RefResolver  # noqa: E402

OPTIONS = ("summary", "detail", "errors", "counters", "per-interface")
# Members of replies that may be absent; which of them are is the business of the other tests.
OPTIONAL = set("""matches actions namedCounters unnamedCounters ingressCounterGranularity interfaces
    byteCount byteTotal srcPrefixes srcPrefixSets destPrefixes destPrefixSets protocols ipLengths
    fragment dscps ttls neighborProtocol matchL4Protocol matchIpOptions tcpFlags srcPorts
    srcL4PortFieldSets destPorts destL4PortFieldSets icmps icmpCodes drop setDscp setTc police count
    countNamed log""".split())
# Members of replies whose strings have a fixed form, themselves or as elements.
FORMED = set("""matchOption unit name neighborProtocol matchL4Protocol ingressCounterGranularity
    srcPrefixes destPrefixes ipv4InstallationErrors ipv6InstallationErrors""".split())
WRONG = {str: (-1, "", "bogus"), bool: (-1, False), int: (-1, 2**64, 1.5, "1"), float: ("1", None),
         dict: ([], -1), list: ({}, -1), type(None): (-1, [])}

passed = 0
failures = []


def check(holds, what):
    global passed
    passed += holds
    if not holds:
        failures.append(what)
        print("FAILED:", what)


def members_of(schema):
    """Every member name that a schema knows, at any depth."""
    if isinstance(schema, dict):
        yield from schema.get("properties", ())
        for part in schema.values():
            yield from members_of(part)
    elif isinstance(schema, list):
        for part in schema:
            yield from members_of(part)


def mutants(node, members, place=(), seen=None):
    """Breaks the document in place, one thing at a time, and mends it again: yields what is broken
    and where. Names and indices are "*" there, and every place is broken once only."""
    seen = set() if seen is None else seen

    def is_new(kind, where):
        mark = (kind, where)
        return mark not in seen and not seen.add(mark)

    if isinstance(node, dict) and is_new("extra", place):
        node["bogus"] = -1
        yield "extra", place
        del node["bogus"]
    # That a list has no two objects of one name is more than a schema can say.
    named = place[-1:] in (("rules",), ("namedCounters",)) and isinstance(node, list) \
        and node and isinstance(node[0], dict)
    if isinstance(node, list) and node and not named and is_new("twice", place):
        node.append(node[0])
        yield "twice", place
        node.pop()
    for key in list(node) if isinstance(node, dict) else range(len(node)):
        where = place + (key if key in members else "*",)
        value = node[key]
        if key in members and is_new("missing", where):
            del node[key]
            yield "missing", where
        for wrong in WRONG[type(value)]:
            node[key] = wrong
            if is_new(repr(wrong), where):
                yield repr(wrong), where
        node[key] = value
        if isinstance(value, (dict, list)):
            yield from mutants(value, members, where, seen)


def must_refuse(kind, where):
    member = next((step for step in reversed(where) if step != "*"), "")
    if kind == "missing":
        return member not in OPTIONAL
    if kind == "twice":
        return not member.endswith("InstallationErrors")
    if kind == "''":
        return not member.endswith(("Vrfs", "Intfs"))
    return kind != "'bogus'" or member in FORMED


class Checker:
    def __init__(self, program, schema_dir):
        self.program = program
        documents = {path: json.loads(path.read_text()) for path in schema_dir.glob("*.schema.json")}
        store = {path.as_uri(): document for path, document in documents.items()}
        self.validators, self.members = {}, set()
        for path, schema in documents.items():
            Draft202012Validator.check_schema(schema)
            self.members.update(members_of(schema))
            self.validators[path.name[:-len(".schema.json")]] = Draft202012Validator(
                schema, resolver=RefResolver(path.as_uri(), schema, store))

    def run(self, state, store, *command):
        return subprocess.run([self.program, "--state", state, "--counter-store", store, *command],
                              stdin=subprocess.DEVNULL, capture_output=True)

    def check_valid(self, schema, document, what):
        error = next(self.validators[schema].iter_errors(document), None)
        check(error is None, f"{what}: {error and error.message[:300]}")

    def check_file(self, schema, path, arguments):
        """What the program refuses, the schema refuses, and the other way round."""
        document = json.loads(path.read_text())
        self.check_valid(schema, document, f"{schema} {path.name}")
        for kind, where in mutants(document, self.members):
            path.write_text(json.dumps(document))
            refused = self.run(*arguments, "show", "traffic-policy", "cpu", "summary").returncode == 1
            check(refused != self.validators[schema].is_valid(document),
                  f"{schema}: {kind} at /{'/'.join(where)}: the program "
                  f"{'refuses' if refused else 'accepts'} it, the schema does not agree")

    def check_replies(self, state, store, seen):
        for side, bits in itertools.product(("cpu", "interface"), itertools.product((0, 1), repeat=5)):
            options = [option for option, bit in zip(OPTIONS, bits) if bit]
            if {"errors", "detail"} <= set(options):
                continue
            what = " ".join([side, *options])
            reply = self.run(state, store, "--json", "show", "traffic-policy", *what.split())
            check(reply.returncode == 0, f"{what}: status {reply.returncode}")
            schema = "show-counters" if "counters" in options else \
                f"show-{side}-errors" if "errors" in options else f"show-{side}"
            document = json.loads(reply.stdout)
            self.check_valid(schema, document, what)
            for kind, where in mutants(document, self.members, seen=seen.setdefault(schema, set())):
                if must_refuse(kind, where):
                    check(not self.validators[schema].is_valid(document),
                          f"{schema}: accepts {kind} at /{'/'.join(where)}")


def main(program, schema_dir, *example_dirs):
    checker = Checker(program, pathlib.Path(schema_dir).resolve())
    examples = sorted(path for folder in example_dirs for path in pathlib.Path(folder).glob("*.json"))
    seen = {}
    for example in examples:
        with tempfile.TemporaryDirectory() as folder:
            broken, store = pathlib.Path(folder, "state.json"), pathlib.Path(folder, "store.json")
            cleared = checker.run(example, store, "clear", "traffic-policy", "counters")
            check(cleared.returncode == 0, f"{example.name}: clear: {cleared.stderr.decode()}")
            checker.check_replies(example, store, seen)
            broken.write_text(example.read_text())
            checker.check_file("state", broken, (broken, "missing"))
            checker.check_file("counter-store", store, (example, store))
    check(examples, "no examples")
    print(f"{passed} passed, {len(failures)} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
