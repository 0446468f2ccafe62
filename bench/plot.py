#!/usr/bin/env python3
"""Plot time per rule against the number of rules: plot.py RESULTS.csv... > performance.svg

The files are those that tp_bench --csv writes, usually one of each word size.
"""
import csv
import math
import sys

CASE, SINK = "cpu/detail/json", "null"
# Column of the results, what it is, colour.
LINES = (("ns", "caching and JSON", "#1f5fbf"),
         ("reference_ns", "RapidJSON from plain structs", "#c0504d"),
         ("copy_ns", "copy of the finished bytes", "#6a6a6a"))
WIDTH, HEIGHT, LEFT, RIGHT, TOP, BOTTOM = 760, 440, 70, 250, 40, 60


def read(paths):
    """The points of each line: {(word, column): [(rules, ns per rule), ...]}."""
    points = {}
    for path in paths:
        with open(path, newline="", encoding="ascii") as file:
            for row in csv.DictReader(file):
                if row["case"] != CASE or row["sink"] != SINK:
                    continue
                for column, _, _ in LINES:
                    point = (int(row["rules"]), float(row[column]) / int(row["rules"]))
                    points.setdefault((row["word"], column), []).append(point)
    if not points:
        sys.exit(f"plot.py: no results of {CASE} to {SINK}")
    return {key: sorted(line) for key, line in points.items()}


class Axes:
    """Logarithmic in both directions, over whole powers of ten that hold all points."""

    def __init__(self, points):
        xs = [x for line in points.values() for x, _ in line]
        ys = [y for line in points.values() for _, y in line if y > 0]
        self.x_low, self.x_high = math.log10(min(xs)), math.log10(max(xs))
        if self.x_low == self.x_high:
            self.x_low, self.x_high = self.x_low - 1, self.x_high + 1
        self.y_low, self.y_high = math.floor(math.log10(min(ys))), math.ceil(math.log10(max(ys)))

    def x(self, value):
        share = (math.log10(value) - self.x_low) / (self.x_high - self.x_low)
        return LEFT + share * (WIDTH - LEFT - RIGHT)

    def y(self, value):
        share = (math.log10(value) - self.y_low) / (self.y_high - self.y_low)
        return HEIGHT - BOTTOM - share * (HEIGHT - TOP - BOTTOM)

    def x_ticks(self):
        return [10 ** e for e in range(math.ceil(self.x_low), math.floor(self.x_high) + 1)]

    def y_ticks(self):
        ticks = [m * 10 ** e for e in range(self.y_low, self.y_high) for m in (1, 2, 5)]
        return ticks + [10 ** self.y_high]


def text(x, y, content, anchor="middle", extra=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}"{extra}>{content}</text>'


def frame(axes):
    right, bottom = WIDTH - RIGHT, HEIGHT - BOTTOM
    for tick in axes.y_ticks():
        y = axes.y(tick)
        yield f'<path d="M{LEFT} {y:.1f}H{right}" stroke="#ddd"/>'
        yield text(LEFT - 8, y + 4, tick, "end")
    for tick in axes.x_ticks():
        x = axes.x(tick)
        yield f'<path d="M{x:.1f} {TOP}V{bottom}" stroke="#ddd"/>'
        yield text(x, bottom + 18, f"{tick:,}")
    yield f'<rect x="{LEFT}" y="{TOP}" width="{right - LEFT}" height="{bottom - TOP}" fill="none" stroke="#444"/>'
    yield text((LEFT + right) / 2, HEIGHT - 16, "rules of the policy")
    yield text(20, (TOP + bottom) / 2, "ns per rule", "middle",
               f' transform="rotate(-90 20 {(TOP + bottom) / 2:.1f})"')
    yield text(LEFT, 24, "show traffic-policy cpu detail | json, to /dev/null", "start",
               ' font-weight="bold"')


def curves(axes, points):
    legend = TOP + 12
    for column, label, colour in LINES:
        for word in sorted({word for word, _ in points}, reverse=True):
            line = [(x, y) for x, y in points.get((word, column), []) if y > 0]
            if not line:
                continue
            dash = ' stroke-dasharray="6 4"' if word == "32" else ""
            style = f'fill="none" stroke="{colour}" stroke-width="2"{dash}'
            path = " ".join(f"{axes.x(x):.1f},{axes.y(y):.1f}" for x, y in line)
            yield f'<polyline points="{path}" {style}/>'
            for x, y in line:
                yield f'<circle cx="{axes.x(x):.1f}" cy="{axes.y(y):.1f}" r="3" fill="{colour}"/>'
            start = WIDTH - RIGHT + 14
            yield f'<path d="M{start} {legend}h26" {style}/>'
            yield text(start + 32, legend + 4, f"{label}, {word} bit", "start")
            legend += 22


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    points = read(sys.argv[1:])
    axes = Axes(points)
    print(f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
          f'viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" font-size="12">')
    print(f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#fff"/>')
    for element in (*frame(axes), *curves(axes, points)):
        print(element)
    print("</svg>")


main()
