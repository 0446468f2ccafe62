#!/usr/bin/env python3
"""Holds the layers: what the files of each folder may include of this repository."""
import os
import pathlib
import re
import sys

ROOT = pathlib.Path(os.environ["TP_SOURCE_DIR"])
# A folder's files include those of the folder itself and of the ones given. The longest folder that
# a file stands in counts.
LAYERS = {
    "TrafficPolicy": ["TrafficPolicy/engine", "TrafficPolicy/views", "TrafficPolicy/counters",
                      "TrafficPolicy/model", "TrafficPolicy/platform"],
    "TrafficPolicy/engine": ["TrafficPolicy/views", "TrafficPolicy/counters", "TrafficPolicy/model",
                             "TrafficPolicy/platform"],
    "TrafficPolicy/views": ["TrafficPolicy/model", "TrafficPolicy/platform"],
    "TrafficPolicy/counters": ["TrafficPolicy/model", "TrafficPolicy/platform"],
    "TrafficPolicy/model": ["TrafficPolicy/platform"],
    "TrafficPolicy/platform": [],
    "sources": ["sources/file", "sources/json", "sources/openconfig", "sources/rules", "sources/sonic",
                "TrafficPolicy/platform"],
    "sources/file": ["sources", "sources/json", "TrafficPolicy/platform"],
    "sources/json": ["sources", "TrafficPolicy/platform"],
    "sources/openconfig": ["sources", "sources/json", "sources/rules", "TrafficPolicy/platform"],
    "sources/redis": ["sources", "TrafficPolicy/platform"],
    "sources/rules": ["sources", "TrafficPolicy/platform"],
    "sources/sonic": ["sources", "sources/json", "sources/redis", "sources/rules",
                      "TrafficPolicy/platform"],
    "cli": ["sources", "sources/file", "TrafficPolicy", "TrafficPolicy/platform"],
}
# Where two layers meet all the same: the action writer looks up counters, and what writes a reply or
# a file writes through the renderer. What takes rules out by their counts looks these up, too.
EXCEPTIONS = {
    ("TrafficPolicy/views/ActionView.h", "TrafficPolicy/counters/CounterLookup.h"),
    ("TrafficPolicy/counters/CounterView.h", "TrafficPolicy/views/RendererV2.h"),
    ("TrafficPolicy/counters/CounterView.h", "TrafficPolicy/views/Selection.h"),
    ("sources/file/CounterStoreWriter.cpp", "TrafficPolicy/views/RendererV2.h"),
    ("cli/Reply.h", "TrafficPolicy/views/RendererV2.h"),
    ("cli/RecordFilter.cpp", "TrafficPolicy/counters/CounterLookup.h"),
    ("sources/file/RuleWriter.cpp", "TrafficPolicy/views/RendererV2.h"),
    ("sources/file/StateWriter.cpp", "TrafficPolicy/views/RendererV2.h"),
    ("cli/BoundShow.h", "TrafficPolicy/model/Binding.h"),
    ("cli/Metrics.h", "TrafficPolicy/views/RendererV2.h"),
}


def layer(path):
    return max((folder for folder in LAYERS if path.startswith(folder + "/")), key=len, default=None)


seen, unused, failed = set(), set(EXCEPTIONS), 0
for top in ("TrafficPolicy", "sources", "cli"):
    for path in sorted((ROOT / top).rglob("*.[ch]*")):
        name = str(path.relative_to(ROOT))
        for included in re.findall(r'^\s*#\s*include\s*["<]([^">]+)', path.read_text(), re.M):
            found = [folder / included for folder in (path.parent, ROOT)
                     if (folder / included).exists()]
            if not found:
                continue  # of the system
            included = str(found[0].resolve().relative_to(ROOT.resolve()))
            own, other = layer(name), layer(included)
            unused.discard((name, included))
            seen.add((own, other))
            if other not in (own, *LAYERS[own]) and (name, included) not in EXCEPTIONS:
                failed += 1
                print(f"{name} must not include {included}", file=sys.stderr)
for exception in sorted(unused):
    print("an exception that nothing needs:", *exception, file=sys.stderr)
# Every folder is there and includes something.
missing = LAYERS.keys() - {own for own, _ in seen}
print(f"{len(seen)} ways between layers; without includes: {sorted(missing) or 'none'}")
sys.exit(1 if failed or unused or missing else 0)
