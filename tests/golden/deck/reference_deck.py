#!/usr/bin/env python3
"""A second writer of the one-step deck, which shares nothing with the library's.

    reference_deck.py JOB.json [DECK]        writes the deck of a job (to standard output without DECK)
    reference_deck.py --random SEED N DIR    makes N random jobs, DIR/random_0001.json and on, each with its .fpi

A job is JSON: mesh in positions, process definition, material, frame. The boundary is found by straightforward sets of
edges; the outer loop is the longest one, so jobs are meshes whose longest loop is the outer one.
"""

import json
import math
import os
import random
import sys


# ---- the boundary ---------------------------------------------------------------------------------------------------

def corners(row):
    return row[:3] if row[0] == row[3] else row[:4]


def free_edges(elems):
    """(element, start, end), in the order of elements and corners; all numbers from 1."""
    at = {}
    for e, row in enumerate(elems, 1):
        for n in set(row):
            at.setdefault(n, set()).add(e)
    edges = [None]
    for e, row in enumerate(elems, 1):
        for i in range(4):
            a, b = row[i], row[(i + 1) % 4]
            if a != b and not ((at[a] & at[b]) - {e}):
                edges.append((e, a, b))
    return edges


def loops_of(edges):
    """Lists of edge numbers in walking order."""
    at = {}
    for k, (_, a, b) in enumerate(edges[1:], 1):
        at.setdefault(a, []).append(k)
        at.setdefault(b, []).append(k)
    loops, seen = [], set()
    for first in range(1, len(edges)):
        if first in seen:
            continue
        loop, edge, node = [], first, edges[first][2]
        while True:
            seen.add(edge)
            loop.append(edge)
            one, other = at[node]
            edge = other if one == edge else one
            node = edges[edge][2] if edges[edge][2] != node else edges[edge][1]
            if edge == first:
                break
        loops.append(loop)
    return loops


def distance(p, q):
    d = [p[0] - q[0], p[1] - q[1], p[2] - q[2]]
    return math.sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2])


class Boundary:
    def __init__(self, job, nodes, local):
        self.edges = free_edges(job["elems"])
        self.loops = loops_of(self.edges)
        length = lambda k: distance(nodes[self.edges[k][1]], nodes[self.edges[k][2]])
        self.length = []
        for loop in self.loops:
            total = 0.0
            for k in sorted(loop):  # summed in the order of the edges, not of the walk
                total += length(k)
            self.length.append(total)
        self.outer = self.length.index(max(self.length))
        ratio = 0.20000000298023224  # single-precision 0.2
        self.large = [l for l in range(len(self.loops))
                      if l != self.outer and ratio * self.length[self.outer] <= self.length[l]]
        marks = [0] * len(self.loops[self.outer])
        self.plane_nodes = {"xz": [], "yz": []}
        for plane, on, axis, mark in (("xz", job["symmetry"][0], 1, 1), ("yz", job["symmetry"][1], 0, 2)):
            if not on:
                continue
            for i, k in enumerate(self.loops[self.outer]):
                s, t = local[self.edges[k][1]], local[self.edges[k][2]]
                tolerance = max(0.333 * distance(s, t), 0.0001)
                if abs(s[axis]) <= tolerance and abs(t[axis]) <= tolerance:
                    marks[i] = mark
            for i, k in enumerate(self.loops[self.outer]):
                if marks[i] == mark:
                    for n in self.edges[k][1:]:
                        if n not in self.plane_nodes[plane]:
                            self.plane_nodes[plane].append(n)
        self.held, self.held_length, self.held_loops = [], 0.0, 0
        full = job["full"]
        self.active = full["factor"] > 0 or full["totalForce"] > 0 or full["option"] > 0
        if self.active:
            for l, loop in enumerate(self.loops):
                if l == self.outer or l in self.large:
                    self.held_loops += 1
                    for i, k in enumerate(loop):
                        if i >= len(marks) or marks[i] == 0:  # an inner loop meets the outer loop's marks
                            self.held.append(k)
                            self.held_length += length(k)


# ---- the force of the full holder -----------------------------------------------------------------------------------

def full_force(job, boundary):
    """Force, restraint per length, length in metres."""
    entries = {}
    for line in job["config"]:
        key, value = line.split("=", 1)
        entries.setdefault(key, value)
    number = lambda key: float(entries.get(key, "0"))
    units, use_records = int(number("BHFValueUnits")), int(number("VOZBHRange")) == 1
    mu, full, props = job["friction"], job["full"], job["properties"]
    mean = lambda name: sum_in_order(p[name] for p in props) / len(props)
    strength = 0.0 if use_records else mean("yield")
    option = full["option"]
    if full["factor"] > 0:
        factor = 4448220000.0 if full["factor"] == 0.8 else full["factor"]
    else:
        factor = {0: 0.0, 1: 0.1, 2: 0.35, 3: 0.6, 4: 4448220000.0, 5: -1.0}.get(option, 0.0)
    length = boundary.held_length / 1000
    restraint = abs(factor) * mean("thickness") * strength
    if factor < 0:
        restraint = mu * 2 * full["totalForce"] / length
    total = lambda r: length * r / (2 * mu) if mu > 0.001 else 0.0
    force = total(restraint)
    key = f"BHFValue{option}"
    if not 1 <= option <= 5:
        return force, restraint, length
    if key not in entries:
        if option == 5 and units > 0:
            restraint = force * 1000
            force = total(restraint)
        return force, restraint, length
    value = float(entries[key])
    if value < 0:
        return force, restraint, length
    if abs(value) < 0.001:
        return 0.0, 0.0, length
    if option == 5:
        value = force
    restraint = value * 1000 if units > 0 else 2 * mu * value / length
    return total(restraint), restraint, length


def sum_in_order(values):
    total = 0.0
    for value in values:
        total += value
    return total


# ---- the deck -------------------------------------------------------------------------------------------------------

STARS = "*" * 24


def f(value):
    return "%f" % value


def holder_length(holder, nodes):
    return sum_in_order(distance(nodes[a], nodes[b]) for _, a, b in holder["edges"]) / 25.4


def deck(job, file_name):
    nodes = [None] + job["nodes"]
    rows, origin = job["axis"]["rows"], job["axis"]["origin"]
    local = [None]
    for p in nodes[1:]:
        d = [p[i] - origin[i] for i in range(3)]
        local.append([r[0] * d[0] + r[1] * d[1] + r[2] * d[2] for r in rows])
    b = Boundary(job, nodes, local)
    bare = job["noRestraints"]
    P, m, mu = len(job["properties"]), job["material"], job["friction"]
    points = m["ss"] if P > 0 and len(m["ss"]) > 3 else []
    out = [f"DRAVO3D - version 5.0 - {file_name}", STARS]

    def block(label, lines, stars=STARS):
        out.append("block " + label)
        out.extend(lines)
        out.append(stars)

    block("II: control line", control_lines(job, b, len(nodes) - 1, P))
    block("III: nodal coordinates",
          ["%d %s %s %s" % (n, f(q[0] / 25.4), f(q[1] / 25.4), f(q[2] / 25.4)) for n, q in enumerate(local[1:], 1)])
    block("IV: element connectivities",
          ["%d %d 1 0 %d" % (e, job["propertyIndex"][e - 1], 2 if row[0] == row[3] else 1)
           + "".join(" %d" % n for n in corners(row)) for e, row in enumerate(job["elems"], 1)])
    block("V: material properties",
          [line for record in list(range(1, P + 1)) + [P] for line in (
              "%d 0.0 0.0 0.0 %s %s %s %s" % (record, f(m["yield"]), f(m["nvalue"]), f(m["rBar"]), f(m["intercept"])),
              "0 0.0 0.0 0.0 0.0 %s 0.0 0.0" % f(m["thickness"] / 25.4),
              "0 0.0 0.0 0.0 0.0 0.0 0.0 0.0")])
    block("VI: fast boundary condition tables", ['0 0 0 0.0 0.0 0.0 "" 0', "0.0 0.0 0.0"])
    block("VII: beam tables", [])
    block("VIII: nodal displacement tables", [] if bare else displacements(job, b))
    block("IX PRESSURE PAD", pads([] if bare else job["pads"]))
    block("X: rigid constraint equations", [])
    block("XI: force boundary condition", [])
    block("XII: blankholder force", [] if bare else holders(job, b, nodes))
    block("XIII: friction tables", [])
    block("XIV: friction nodes", [])
    block("XV: bendline tables", ["0 0 0"])
    block("XVII: drawbead tables", beads([] if bare else job["beads"]), "*" * 25)
    block("XVIII: lockbead tables", ["0 0 0"])
    block("XIX: neutral surfaces", [])
    block("XX: tailor welded blank tables", ["0 0 0"])
    block("XXI", [])
    block("XXII", [])
    block("XXVI: user defined stress-strain curves",
          ['%d %d 0 0 0 0.000000 0.000000 "material" "none"' % (i, len(points)) for i in range(1, P + 1)]
          + ["%s %s" % (f(p[0]), f(p[1])) for _ in range(P) for p in points])
    block("XXVII: user defined forming limit curves", ["%d 0 0 0 0 0.000000 0.000000" % i for i in range(1, P + 1)])
    block("XXVIII: integration point information", ["0  0  0  0  0"])
    block("XXIX: friction table ", ["%s  0  0" % f(mu)])
    block("XXX: development table ", ["1  1"] + ["  ".join("0" * 10)] * 2)
    block("XXXI: form design 3d table ", [])
    block("XXXII: boundary condition line tables ", ["0  0  0"])
    block("XXXIII: transformation matrix ", ["1 0 0 0 ", "0 1 0 0 ", "0 0 1 0 ", "0 0 0 1 "])
    return "\n".join(out) + "\n"


def control_lines(job, b, N, P):
    E = len(job["elems"])
    if job["noRestraints"]:
        first = "%d %d %d 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 2 0 0 0 0 0 0 0 0 0 1" % (N, E, P + 1)
        third = "%d 0 0 0 0 1" % N
    else:
        rows = len(b.plane_nodes["xz"]) + len(b.plane_nodes["yz"]) + sum(len(t["nodes"]) for t in job["dispBCs"])
        heads = b.held_loops + len(job["holders"]) + (len(b.large) if b.active else 0)
        first = "%d %d %d 1 %d %d 0 0 0 0 0 0 0 0 0 0 0 0 0 2 0 0 0 0 0 0 0 %d 0 1" % (
            N, E, P + 1, job["controlFlag"], rows, heads)
        third = "%d 0 0 %d 0 1" % (N, sum(job["symmetry"]) + len(job["dispBCs"]))
    return [first, "4 3 3 19961024 2 1", third, "22 0 1 0 1 1", "0 0 0 0 0 1", "0 0 0 0 %d 1" % job["controlValue"],
            "0 0 0 0 0 0"]


def displacements(job, b):
    xz, yz = b.plane_nodes["xz"], b.plane_nodes["yz"]
    lines, tables = [], sum(job["symmetry"])
    if tables == 2:
        lines += ["1 %d 0 -1 1 1" % len(xz), "2 %d 0 -2 1 0" % len(yz)]
        lines += ["%d 010000 0 0 0 0 0 0 0" % n for n in xz]
        lines += ["%d 100000 0 0 0 0 0 0 0" % n for n in yz]
    elif tables == 1:
        lines += ["1 %d 0 -1 1 0" % len(yz)]
        lines += ["%d 100000 0 0 0 0 0 0 0" % n for n in yz]
    for i, t in enumerate(job["dispBCs"], 1):
        last = i == len(job["dispBCs"])
        lines.append("%d %d %d -%d 1 %d" % (tables + i, len(t["nodes"]), t["tableFlag"], tables + i, 0 if last else 1))
    for t in job["dispBCs"]:
        values = ["0" if v == 0.0 else f(v / 25.4 if i < 3 else v) for i, v in enumerate(t["values"])]
        for n in t["nodes"]:
            lines.append("%d %d%d%d%d%d%d %s %s %s %s %s %s 0" % (n, *t["flags"], *values))
    return lines


def pads(pad_list):
    lines = ["%d %d" % (-1, len(pad_list))]
    for i, pad in enumerate(pad_list, 1):
        lines.append("%d %d %s 1 1" % (i, len(pad["nodes"]), f(pad["value"])))
        lines += ["%d 1 %s 1 0 0 0 0 0 0 0 0" % (n, f(pad["value"])) for n in pad["nodes"]]
    return lines


def edge_lines(e, n1, n2, restraint):
    return ["%d %d -1 %d" % (e, n1, n2), "0 %s 0 %s 0 %s" % ((f(restraint),) * 3)]


def holders(job, b, nodes):
    mu, lines, number = job["friction"], [], 0
    if b.active:
        force, restraint, length = full_force(job, b)
        lines.append("1 %d %s 2 %s %s 1 1 0 0 1" % (len(b.held), f(force), f(mu), f(length)))
        number, share = 1, 0.0
        for l in b.large:
            number += 1
            inches = b.length[l] / 25.4
            if length > 0:
                share = inches * force / length
            lines.append("%d %d %s 2 %s %s 1 %d 0 0 1" % (number, len(b.loops[l]), f(share), f(mu), f(inches), number))
    for holder in job["holders"]:
        number += 1
        inches = holder_length(holder, nodes)
        share = 0.0 if mu <= 0.001 else ((mu * 2 * holder["force"] / inches) * inches * 0.5) / mu
        lines.append("%d %d %s 2 %s %s 1 %d 0 0 1" % (number, len(holder["edges"]), f(share), f(mu), f(inches), number))
    if b.active:
        for k in b.held + [k for l in b.large for k in b.loops[l]]:
            lines += edge_lines(*b.edges[k], restraint)
    for holder in job["holders"]:
        per_inch = (mu * 2 * holder["force"]) / holder_length(holder, nodes)
        for e, n1, n2 in holder["edges"]:
            lines += edge_lines(e, n1, n2, per_inch)
    return lines


def beads(bead_list):
    if not bead_list:
        return ["0 0 0"]
    total = sum(len(bead["edges"]) for bead in bead_list)
    lines = ["%d %d %d" % (len(bead_list), total, total)]
    for i, bead in enumerate(bead_list, 1):
        lines.append("%d 0 %d %s %s 1" % (i, len(bead["edges"]), f(bead["force"]), f(bead["force"] * 0.0001575)))
    last = bead_list[-1]["force"]
    for bead in bead_list:
        for edge in bead["edges"]:
            lines.append("%d 1 %s %s %s %s %s %s" % (edge[0], *(f(v) for v in edge[3:]), f(last), f(last * 0.0001575)))
    return lines


# ---- random jobs ----------------------------------------------------------------------------------------------------

def random_mesh(rnd):
    """A wavy plate over 0 .. nx, 0 .. ny, with a hole in its inside now and then; quads, some of them cut."""
    nx, ny = rnd.randint(1, 7), rnd.randint(1, 7)
    hole = nx >= 3 and ny >= 3 and rnd.random() < 0.6
    x0, x1 = (1, rnd.randint(2, nx - 1)) if hole else (0, 0)
    y0, y1 = (1, rnd.randint(2, ny - 1)) if hole else (0, 0)
    number, nodes = {}, []
    for j in range(ny + 1):
        for i in range(nx + 1):
            if not (x0 < i < x1 and y0 < j < y1):
                nodes.append([10.0 * i, 12.0 * j, rnd.uniform(-1.0, 1.0)])
                number[i, j] = len(nodes)
    elems = []
    for j in range(ny):
        for i in range(nx):
            if x0 <= i < x1 and y0 <= j < y1:
                continue
            a, b, c, d = number[i, j], number[i + 1, j], number[i + 1, j + 1], number[i, j + 1]
            if rnd.random() < 0.4:
                elems += [[a, b, c, a], [a, c, d, a]]
            else:
                elems.append([a, b, c, d])
    return nodes, elems


def random_axis(rnd):
    if rnd.random() < 0.5:
        return {"rows": [[1.0, 0.0, 0.0], [0.0, 1.0, 0.0], [0.0, 0.0, 1.0]], "origin": [0.0, 0.0, 0.0]}
    a = rnd.uniform(-math.pi, math.pi)
    return {"rows": [[math.cos(a), math.sin(a), 0.0], [-math.sin(a), math.cos(a), 0.0], [0.0, 0.0, 1.0]],
            "origin": [rnd.uniform(-50, 50) for _ in range(3)]}


def random_job(rnd):
    nodes, elems = random_mesh(rnd)
    edges = free_edges(elems)[1:]
    some = lambda most, make: [make() for _ in range(rnd.choice([0, 0, 1, rnd.randint(1, most)]))]
    value = lambda: rnd.choice([0.0, rnd.uniform(-3, 3), rnd.uniform(-1e5, 1e5)])
    pick = lambda low: rnd.sample(range(1, len(nodes) + 1), rnd.randint(low, len(nodes)))
    properties = [{"thickness": rnd.uniform(3e-4, 3e-3), "yield": rnd.uniform(5e7, 9e8)}
                  for _ in range(rnd.choice([0, 1, 1, 2, 3]))]
    full = {"factor": 0.0, "totalForce": 0.0, "option": -1}
    if properties and rnd.random() < 0.6:
        full = {"factor": rnd.choice([0.0, 0.0, 0.8, rnd.uniform(0.01, 1)]),
                "totalForce": rnd.choice([0.0, rnd.uniform(1, 1e5)]), "option": rnd.randint(-1, 6)}
    config = []
    if rnd.random() < 0.5:
        config.append("BHFValueUnits=%d" % rnd.randint(0, 1))
        for k in range(1, 6):
            if rnd.random() < 0.5:
                config.append("BHFValue%d=%s" % (k, rnd.choice(["-1", "0", "0.0005", "7.5", "12000"])))
        if rnd.random() < 0.2:
            config.append("VOZBHRange=1")
    return {
        "nodes": nodes, "elems": elems,
        "firstNode": rnd.choice([0, 0, 1000]), "firstElem": rnd.choice([0, 500]),
        "propertyIndex": [rnd.randint(1, max(1, len(properties))) for _ in elems],
        "properties": properties,
        "material": {"thickness": rnd.uniform(0.2, 3), "rBar": rnd.uniform(0.3, 3), "nvalue": rnd.uniform(0.05, 0.6),
                     "intercept": rnd.uniform(100, 1500), "yield": rnd.uniform(50, 900),
                     "ss": [[0.01 * i, 100.0 + 7.3 * i] for i in range(rnd.choice([0, 3, 4, 9]))]},
        "axis": random_axis(rnd), "symmetry": [rnd.random() < 0.4, rnd.random() < 0.4],
        "friction": rnd.choice([0.0, 0.001, 0.0011, 0.144]), "full": full, "config": config,
        "pads": some(3, lambda: {"value": rnd.uniform(0, 1e7), "nodes": pick(0)}),
        "beads": some(3, lambda: {"force": rnd.uniform(0, 1e5), "edges": [
            [rnd.randint(1, len(elems)), 1, 2] + [rnd.uniform(-1, 1) for _ in range(4)]
            for _ in range(rnd.randint(0, 4))]}),
        "holders": some(3, lambda: {"force": rnd.uniform(0, 1e5),
                                    "edges": [list(e) for e in rnd.sample(edges, rnd.randint(1, len(edges)))]}),
        "dispBCs": some(3, lambda: {"tableFlag": rnd.randint(0, 3), "nodes": pick(1),
                                    "flags": [rnd.randint(0, 1) for _ in range(6)],
                                    "values": [value() for _ in range(6)]}),
        "noRestraints": rnd.random() < 0.15, "controlFlag": rnd.random() < 0.5, "controlValue": rnd.randint(-3, 9),
    }


def main(arguments):
    if arguments[:1] == ["--random"] and len(arguments) == 4:
        rnd = random.Random(int(arguments[1]))
        for i in range(1, int(arguments[2]) + 1):
            stem = os.path.join(arguments[3], "random_%04d" % i)
            job = random_job(rnd)
            with open(stem + ".json", "w", newline="\n") as stream:
                json.dump(job, stream)
            with open(stem + ".golden", "w", newline="\n") as stream:
                stream.write(deck(job, os.path.basename(stem) + ".fpi"))
        return 0
    if not 1 <= len(arguments) <= 2 or arguments[0].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    with open(arguments[0]) as stream:
        job = json.load(stream)
    text = deck(job, os.path.splitext(os.path.basename(arguments[0]))[0] + ".fpi")
    if len(arguments) == 2:
        with open(arguments[1], "w", newline="\n") as stream:
            stream.write(text)
    else:
        sys.stdout.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
