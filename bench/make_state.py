#!/usr/bin/env python3
"""Write a state file of one policy whose rules are those of a filter set, over and over.

Usage: make_state.py FILTERS RULES > state.json
"""
import ipaddress
import itertools
import json
import sys

PORTS = [f"Ethernet{i}" for i in range(1, 49)]
ACTIONS = ({"drop": True, "count": True}, {"count": "permitted"},
           {"drop": True, "log": True, "count": "denied"})


def text(value):
    return json.dumps(value, separators=(",", ":"))


def prefixes(field):
    network = ipaddress.ip_network(field, strict=False)
    return [str(network)] if network.prefixlen else None


def ports(field):
    low, high = (int(bound) for bound in field.split(":"))
    return None if (low, high) == (0, 65535) else [low if low == high else [low, high]]


def given(**members):
    return {name: value for name, value in members.items() if value is not None}


def match(line):
    """What a filter matches, without DSCP values."""
    source, destination, sources, destinations, protocol, flags = line.lstrip("@").split("\t")[:6]
    value, mask = (int(number, 16) for number in protocol.split("/"))
    result = given(sources=prefixes(source), destinations=prefixes(destination))
    if mask:
        condition = {"protocol": value}
        if value in (6, 17):
            condition |= given(sourcePorts=ports(sources), destinationPorts=ports(destinations))
        bits, known = (int(number, 16) for number in flags.split("/"))
        names = [name for name, bit in (("initial-syn", 0x0200), ("established", 0x1000))
                 if bits & known & bit]
        if value == 6 and names:
            condition["tcpFlags"] = names
        result["protocols"] = [condition]
    return result


def rule(number, conditions):
    dscp = {"dscp": [46, [8, 14]]} if number % 17 == 0 else {}
    kind = number % 5
    actions = (ACTIONS[kind] if kind < len(ACTIONS) else
               {"police": {"rate": 1000 + number, "unit": "kbps"}, "count": True} if kind == 3 else
               {"setTrafficClass": number % 8})
    return {"name": f"R{number}", "match": {"ipv4": conditions | dscp}, "actions": actions}


def status(number):
    return {"families": ["ipv4"], "counterId": number, "packets": (number - 1) * 7919 % 1000003}


def write_elements(out, elements):
    for number, element in enumerate(elements):
        out.write((",\n" if number else "\n") + element)


def main(path, count):
    with open(path, encoding="ascii") as file:
        conditions = [match(line) for line in file if line.startswith("@")]
    numbers = range(1, int(count) + 1)
    out = sys.stdout
    out.write('{"config":{"trafficPolicies":{"filters":{"namedCounters":["denied","permitted"],'
              '"rules":[')
    write_elements(out, (text(rule(number, one))
                         for number, one in zip(numbers, itertools.cycle(conditions))))
    out.write(']}},"cpu":%s,"interfaces":%s},' % (
        text({vrf: "filters" for vrf in ("default", "mgmt", "all")}),
        text({port: "filters" for port in PORTS})))
    counter = {"counterId": 1, "packets": 48000, "bytes": 48000 * 84,
               "interfaces": {port: {"counterId": 2 + i, "packets": 1000, "bytes": 84000}
                              for i, port in enumerate(PORTS)}}
    out.write('"status":{"byteCounters":true,"perInterfaceCounting":true,"vrfs":["default","mgmt"],'
              '"l3Interfaces":%s,"policies":{"filters":{"namedCounters":%s,"interfaces":%s,"rules":{' % (
                  text({port: ("default", "mgmt")[i % 2] for i, port in enumerate(PORTS)}),
                  text({"denied": counter, "permitted": counter}),
                  text({port: {"ipv4": {"status": "programmed"}} for port in PORTS})))
    write_elements(out, (f'"R{number}":{text(status(number))}' for number in numbers))
    out.write("}}}}}\n")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
