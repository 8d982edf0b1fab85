#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
"""Start, memory, idle cost and login of the gate, in one run with their floors, alternating; then growth.py.

./bench.sh builds what this needs and starts it in the sandbox; docs/performance.md explains what is measured."""
import argparse
import configparser
import json
import os
import shlex
import subprocess
import time

import growth
import lab

FLOORS = ["qtfloor", "qtfloor-again", "qtfloor-raster"]
REMOTE, LOCAL = "remote dialog", "local window"
# name: heading, decimals, whether its spread is shown
START = {"map": ("mapped ms", 1, True), "paint": ("first frame ms", 1, True), "settle": ("settled ms", 1, True),
         "cpu": ("CPU ms", 1, True), "peak": ("peak memory MB", 1, False), "pss": ("proportional MB", 1, False),
         "dirty": ("private dirty MB", 2, False), "libraries": ("libraries", 0, False),
         "key": ("first key ms", 1, False), "key2": ("next key ms", 1, False)}
RATIOS = ["map", "paint", "settle", "cpu", "peak", "dirty", "libraries"]
IDLE = {"cpu": ("idle CPU ms", 1, False), "switches": ("switches/s", 1, False)}
LOGIN = {"total": ("Return to exit ms", 1, True), "first": ("to first child", 1, False),
         "between": ("to second child", 1, False), "last": ("to exit", 1, False)}
TAVCTL = {"ms": ("ms", 1, True)}
IDLE_GOAL_S = 20
GOALS_SET_MS = 45.9  # qtfloor's first frame where the goals in ms were set
CALLS = "/tmp/ldapsearch.calls"


def start_commands(peers):
    commands = {floor: [lab.tool(floor.removesuffix("-again"))] for floor in FLOORS}
    commands[REMOTE] = [lab.GATE, "force"]
    commands[LOCAL] = [lab.GATE, "setup"]
    if peers:
        config = configparser.ConfigParser(interpolation=None)
        config.read(os.path.join(lab.HERE, "commands.ini"))
        commands.update({label: shlex.split(config[label]["cmd"]) for label in config.sections()})
    return commands


class Watched:
    """A program under watchstart, which has just settled; ended when leaving the block."""

    def __init__(self, command, environment):
        self.process = subprocess.Popen([lab.tool("watchstart")] + command, env=environment, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        line = self.process.stdout.readline()
        if not line:
            raise SystemExit("no window: " + " ".join(command))
        self.start = json.loads(line)
        self.pid = self.start.pop("pid")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()

    def ask(self, question):
        self.process.stdin.write(question + "\n")
        self.process.stdin.flush()
        return self.process.stdout.readline()


def measure_start(command, environment):
    with Watched(command, environment) as watched:
        row = {**watched.start, **lab.memory(watched.pid), "cpu": lab.cost(watched.pid)[0]}
        for name in ["key", "key2"]:
            row[name] = float(watched.ask("key"))
            time.sleep(.15)
        return row


def measure_idle(command, environment, seconds):
    with Watched(command, environment) as watched:
        before = lab.cost(watched.pid)
        time.sleep(seconds)
        after = lab.cost(watched.pid)
    return {"cpu": after[0] - before[0], "switches": (after[1] - before[1]) / seconds}


def measure_login(command, environment):
    if command[0] == lab.GATE:
        with Watched(command, environment) as watched:
            row = json.loads(watched.ask("login"))
    else:
        row = json.loads(subprocess.run(command, env=environment, stdout=subprocess.PIPE, check=True).stdout)
    with open(CALLS) as file:
        calls = [float(line) for line in file]
    os.remove(CALLS)
    if row["status"] != 0 or len(calls) != 2:
        raise SystemExit(f"no good login: {command}: {row}, {len(calls)} calls of the directory client")
    return {"total": row["to"] - row["from"], "first": calls[0] - row["from"], "between": calls[1] - calls[0],
            "last": row["to"] - calls[1]}


def measure_tavctl(command, environment):
    begin = time.monotonic()
    subprocess.run(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return {"ms": (time.monotonic() - begin) * 1e3}


def tavctl_commands():
    tavctl = os.path.join(os.path.dirname(lab.GATE), "tavctl")
    return {"tavctl --help": [tavctl, "--help"], "tavctl check": [tavctl, "check"],
            "the client alone": [lab.tool("ldapsearch"), "base"], "tavctl probe": [tavctl, "probe"]}


def alternate(commands, runs, measure, *arguments):
    """The rows of each command; the first round warms up, and the order rotates."""
    labels = list(commands)
    rows = {label: [] for label in labels}
    for run in range(runs + 1):
        for i in range(len(labels)):
            label = labels[(run + i) % len(labels)]
            row = measure(commands[label], *arguments)
            if run > 0:
                rows[label].append(row)
    return rows


def table(rows, columns):
    lines = ["| |" + "".join(f" {heading} |" for heading, _, _ in columns.values()), "|---" * (len(columns) + 1) + "|"]
    for label, values in rows.items():
        cells = [lab.median_text([row[name] for row in values], *columns[name][1:]) for name in columns]
        lines.append(f"| {label} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def ratio_table(rows, floor):
    lines = [f"| to {floor} |" + "".join(f" {START[name][0].removesuffix(' ms').removesuffix(' MB')} |" for name in RATIOS),
             "|---" * (len(RATIOS) + 1) + "|"]
    for label, values in rows.items():
        cells = [lab.ratio_text([r[name] for r in values], [r[name] for r in rows[floor]]) for name in RATIOS]
        lines.append(f"| {label} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def goal_table(start, idle, login, tavctl):
    """What was aimed at. Goals in ms were set where qtfloor painted its first frame in GOALS_SET_MS; they grow with what
    this machine takes."""
    def of(label, name, rows=start):
        return lab.median([row[name] for row in rows[label]])

    def beside_bare(goal, name, rows=start):
        return goal, of(label, name, rows), of("qtfloor-raster", name, rows)

    slower = max(1, of("qtfloor", "paint") / GOALS_SET_MS)
    goals = [("first frame, remote dialog to qtfloor", of(REMOTE, "paint") / of("qtfloor", "paint"), None, .5),
             ("first frame, remote dialog to qtfloor-raster", of(REMOTE, "paint") / of("qtfloor-raster", "paint"), 1, 1.1),
             ("first frame, local window to qtfloor-raster", of(LOCAL, "paint") / of("qtfloor-raster", "paint"), 1, 1),
             ("Return to exit beyond floor and two hashes, ms",
              of("gate", "total", login) - of("floor and two hashes", "total", login), None, 6 * slower),
             ("tavctl check to tavctl --help", of("tavctl check", "ms", tavctl) / of("tavctl --help", "ms", tavctl), None, 2),
             ("tavctl probe beyond the client, ms",
              of("tavctl probe", "ms", tavctl) - of("the client alone", "ms", tavctl), None, 50 * slower)]
    for label in [REMOTE, LOCAL]:
        peak = of("qtfloor", "peak")
        goals += [(f"peak memory, {label} to qtfloor", of(label, "peak") / peak, of("qtfloor-raster", "peak") / peak, .38),
                  (*beside_bare(f"private dirty, {label}, MB", "dirty"), 3.5),
                  (*beside_bare(f"libraries, {label}", "libraries"), 74),
                  (*beside_bare(f"idle switches/s, {label}", "switches", idle), 14),
                  (*beside_bare(f"idle CPU, {label}, ms in {IDLE_GOAL_S} s", "cpu", idle), 20 * slower),
                  (*beside_bare(f"first key, {label}, ms", "key"), 3 * slower),
                  (*beside_bare(f"next key, {label}, ms", "key2"), 1 * slower)]
    lines = [f"Goals, those in ms for a machine {slower:.1f} times as slow as where they were set:", "",
             "| goal | at most | qtfloor-raster | measured | met |", "|---|---|---|---|---|"]
    for name, value, bare, limit in goals:
        lines.append(f"| {name} | {limit:.3g} | {'' if bare is None else f'{bare:.2f}'} | {value:.2f} | "
                     f"{'yes' if value <= limit else 'no'} |")
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(prog="bench.sh")
    parser.add_argument("--runs", type=int, default=20)
    parser.add_argument("--idle-runs", type=int, default=3)
    parser.add_argument("--peers", action="store_true", help="measure the programs of bench/commands.ini, too")
    parser.add_argument("--no-growth", action="store_true", help="leave out the cost as the work grows")
    parser.add_argument("--dry", action="store_true", help="print only: change nothing in docs/")
    options = parser.parse_args()

    load_before = lab.load()
    with lab.Display() as environment:
        environment.update(TAV3_CONFIG_DIR=os.path.join(lab.HERE, "config"), BENCH_CALLS=CALLS,
                           PATH=os.path.dirname(lab.tool("")) + ":" + environment["PATH"])
        commands = start_commands(options.peers)
        start = alternate(commands, options.runs, measure_start, environment)
        idle = alternate(commands, options.idle_runs, measure_idle, environment, IDLE_GOAL_S)
        login = alternate({"floor": [lab.tool("spawnfloor"), "0"],
                           "floor and two hashes": [lab.tool("spawnfloor"), "2"],
                           "gate": [lab.GATE, "force"]}, options.runs, measure_login, environment)
        del environment["BENCH_CALLS"]
        tavctl = alternate(tavctl_commands(), options.runs, measure_tavctl, environment)
    head = (f"{lab.machine()}; {time.strftime('%Y-%m-%d')}; {options.runs} runs, alternating; load average "
            f"{load_before} before, {lab.load()} after. Medians, in brackets the least and the most; ratios are those of "
            "the medians, in brackets their 95 % interval.")
    report = "\n\n".join([head, table(start, START), ratio_table(start, "qtfloor"), ratio_table(start, "qtfloor-raster"),
                          table(idle, IDLE), table(login, LOGIN), table(tavctl, TAVCTL),
                          goal_table(start, idle, login, tavctl)])
    print(report)
    if not options.dry:
        lab.write_section("measured", report)
    if not options.no_growth:
        growth.measure(options.dry)


if __name__ == "__main__":
    main()
