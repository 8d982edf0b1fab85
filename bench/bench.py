#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
"""Start, memory, idle cost and login of the gate, in one run with their floors, alternating; and growth.py.

./bench.sh builds what this needs and starts it in the sandbox; docs/performance.md explains what is measured. The
status is 1 when a goal is missed."""
import argparse
import configparser
import json
import os
import shlex
import subprocess
import sys
import tempfile
import time

import environments
import goals
import growth
import lab
from goals import FLOOR, LOCAL, RASTER, REMOTE

FLOORS = [FLOOR, "qtfloor-again", RASTER]
# name: heading, decimals, whether its spread is shown
PAINT = {"paint": ("first frame ms", 1, True)}
START = {"map": ("mapped ms", 1, True), **PAINT, "settle": ("settled ms", 1, True),
         "cpu": ("CPU ms", 1, True), "peak": ("peak memory MB", 1, False), "pss": ("proportional MB", 1, False),
         "dirty": ("private dirty MB", 2, False), "libraries": ("libraries", 0, False),
         "key": ("first key ms", 1, False), "key2": ("next key ms", 1, False)}
RATIOS = ["map", "paint", "settle", "cpu", "peak", "dirty", "libraries"]
IDLE = {"cpu": ("idle CPU ms", 1, False), "switches": ("switches/s", 1, False)}
TOTAL = {"total": ("ms", 1, True)}
LOGIN = {"total": ("Return to exit ms", 1, True), "first": ("to first child", 1, False),
         "between": ("to second child", 1, False), "last": ("to exit", 1, False)}
ENVIRONMENT = {**PAINT, "cpu": ("CPU ms", 1, True)}
COLD = {**PAINT, "total": ("Return to exit ms", 1, True)}
TAVCTL = {"ms": ("ms", 1, True)}
PARTS = ["start", "idle", "login", "tavctl", "environments", "directory", "cold", "growth"]
COLD_RUNS = 5
MESSAGE_MS = 50  # in which "Logging in" is read
CALLS = "/tmp/ldapsearch.calls"
STAND_IN_USER = "user1", "secret1"
GOOD_USER, REFUSED_USER = ("fine", "Lantern-2026"), ("disabled", "Lantern-2026")  # of lab/users.tsv


def start_commands(peers):
    commands = {floor: [lab.tool(floor.removesuffix("-again"))] for floor in FLOORS}
    commands[REMOTE] = [lab.GATE, "force"]
    commands[LOCAL] = [lab.GATE, "setup"]
    if peers:
        config = configparser.ConfigParser(interpolation=None)
        config.read(os.path.join(lab.HERE, "commands.ini"))
        commands.update({label: shlex.split(config[label]["cmd"]) for label in config.sections()})
    return commands


def client_commands(uri, user, password):
    """As the gate writes them, blanks included."""
    client = ["ldapsearch", "-LLL", "-x", "-H", uri]
    return [client + ["-s", "base", "namingContexts"],
            client + ["-D", f"{user}@ example.org", "-w", password, "-b", " DC=example,DC=org",
                      f"(sAMAccountName={user})", "dn", "pwdLastSet", "msDS-UserPasswordExpiryTimeComputed",
                      "pwdMaxAge", "pwdPolicySubentry"]]


def floor_command(hashes, pause_ms, commands):
    first, second = commands
    return [lab.tool("spawnfloor"), str(hashes), str(pause_ms), *first, "--", *second]


class Watched:
    """A program under watchstart, which has just settled; ended when leaving the block."""

    def __init__(self, command, environment, wrap=lambda command: command):
        self.process = subprocess.Popen(wrap([lab.tool("watchstart")] + command), env=environment, text=True,
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

    def ask(self, *question):
        self.process.stdin.write(" ".join(question) + "\n")
        self.process.stdin.flush()
        answer = self.process.stdout.readline()
        if not answer:
            raise SystemExit("no answer: " + " ".join(question))
        return answer


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


def output_of(command, environment):
    return subprocess.run(command, env=environment, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def measure_sign_in(command, environment, question):
    """The ms of a floor, or of the gate's answer to a question of watchstart."""
    if command[0] == lab.GATE:
        with Watched(command, environment) as watched:
            row = {**watched.start, **json.loads(watched.ask(*question))}
    else:
        row = json.loads(output_of(command, environment))
    if row["status"] != 0:
        raise SystemExit(f"no such outcome: {question}: {command}: {row}")
    return {**row, "total": row["to"] - row["from"]}


def measure_login(command, environment):
    row = measure_sign_in(command, environment, ("login", *STAND_IN_USER))
    with open(CALLS) as file:
        calls = [float(line) for line in file]
    os.remove(CALLS)
    if len(calls) != 2:
        raise SystemExit(f"{len(calls)} calls of the directory client: {command}")
    return {**row, "first": calls[0] - row["from"], "between": calls[1] - calls[0], "last": row["to"] - calls[1]}


def measure_tavctl(command, environment):
    begin = time.monotonic()
    subprocess.run(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return {"ms": (time.monotonic() - begin) * 1e3}


def measure_environment(environment, command, plain):
    with Watched(command, environment.of(plain), environment.command) as watched:
        return {**watched.start, "cpu": lab.cost(watched.pid)[0]}


def measure_directory(job, environment):
    command, question = job
    return measure_sign_in(command, environment, question)


def measure_cold(job, environment):
    """The first frame, and the sign-in if there is a question, with no file in memory that nobody has open."""
    command, question = job
    lab.drop_caches()
    if question:
        return measure_sign_in(command, environment, question)
    with Watched(command, environment) as watched:
        return watched.start


def tavctl_commands():
    tavctl = os.path.join(os.path.dirname(lab.GATE), "tavctl")
    return {"tavctl --help": [tavctl, "--help"], "tavctl check": [tavctl, "check"],
            "the client alone": [lab.tool("ldapsearch"), "base"], "tavctl probe": [tavctl, "probe"]}


def login_commands():
    client = client_commands("ldap://127.0.0.1:389", *STAND_IN_USER)
    return {"floor": floor_command(0, MESSAGE_MS, client), goals.STAND_IN_FLOOR: floor_command(2, MESSAGE_MS, client),
            goals.STAND_IN: [lab.GATE, "force"]}


def directory_floor(pause_ms, user):
    return floor_command(0, pause_ms, client_commands("ldaps://dc1.example.org:636", *user))


def directory_jobs():
    """{label: (command, what watchstart is asked)}."""
    good, refusal = ("login", *GOOD_USER), ("refusal", *REFUSED_USER)
    return {goals.GOOD_FLOOR: (directory_floor(MESSAGE_MS, GOOD_USER), good),
            goals.GOOD: ([lab.GATE, "force"], good),
            goals.REFUSAL_FLOOR: (directory_floor(0, REFUSED_USER), refusal),
            goals.REFUSAL: ([lab.GATE, "force"], refusal),
            goals.ONE_HASH: ([lab.tool("spawnfloor"), "1", "0"], None)}


def cold_jobs():
    commands, sign_in = start_commands(False), ("login", *GOOD_USER)
    return {FLOOR: (commands[FLOOR], None), RASTER: (commands[RASTER], None), LOCAL: (commands[LOCAL], None),
            REMOTE: (commands[REMOTE], sign_in),
            goals.GOOD_FLOOR: (directory_floor(MESSAGE_MS, GOOD_USER), sign_in)}


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


def measure_environments(runs, environment):
    with tempfile.TemporaryDirectory() as work:
        return alternate(environments.environments(work), runs, measure_environment, [lab.GATE, "force"], environment)


def measure_at_directory(parts, runs, environment):
    """The parts that need the domain controller."""
    results = {}
    with tempfile.TemporaryDirectory() as folder, lab.Directory() as variables:
        lab.configuration(folder, ("127.0.0.1", "dc1.example.org"), (">LDAP<", ">LDAPS<"),
                          ("<reqcert>false", "<reqcert>true"))
        # As the gate sets it for the client.
        real = {**environment, **variables, "TAV3_CONFIG_DIR": folder, "LDAPBASE": ""}
        if "directory" in parts:
            results["directory"] = alternate(directory_jobs(), runs, measure_directory, real)
        if "cold" in parts and lab.may_drop_caches():
            results["cold"] = alternate(cold_jobs(), min(runs, COLD_RUNS), measure_cold, real)
    return results


def measure(options):
    """{part: {row: [values]}}"""
    results, parts, runs = {}, options.part, options.runs
    with lab.Display() as environment:
        environment["TAV3_CONFIG_DIR"] = lab.HERE
        stand_in = {**environment, "PATH": lab.BUILD + ":" + environment["PATH"]}
        commands = start_commands(options.peers)
        if "start" in parts:
            results["start"] = alternate(commands, runs, measure_start, environment)
        if "idle" in parts:
            results["idle"] = alternate(commands, options.idle_runs, measure_idle, environment, goals.IDLE_SECONDS)
        if "login" in parts:
            results["login"] = alternate(login_commands(), runs, measure_login, {**stand_in, "BENCH_CALLS": CALLS})
        if "tavctl" in parts:
            results["tavctl"] = alternate(tavctl_commands(), runs, measure_tavctl, stand_in)
        if "environments" in parts:
            results["environments"] = measure_environments(runs, environment)
        if {"directory", "cold"} & set(parts):
            results.update(measure_at_directory(parts, runs, environment))
    return results


def table(rows, columns):
    lines = ["| |" + "".join(f" {heading} |" for heading, _, _ in columns.values()), "|---" * (len(columns) + 1) + "|"]
    for label, values in rows.items():
        cells = [lab.median_text([row[name] for row in values], *columns[name][1:]) if name in values[0] else ""
                 for name in columns]
        lines.append(f"| {label} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def ratio_table(rows, floor, names=RATIOS):
    headings = [START[name][0].removesuffix(" ms").removesuffix(" MB") for name in names]
    lines = [f"| to {floor} |" + "".join(f" {heading} |" for heading in headings), "|---" * (len(names) + 1) + "|"]
    for label, values in rows.items():
        cells = [lab.ratio_text([r[name] for r in values], [r[name] for r in rows[floor]]) for name in names]
        lines.append(f"| {label} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def tables(part, rows):
    if part == "start":
        return [table(rows, START), ratio_table(rows, FLOOR), ratio_table(rows, RASTER)]
    if part == "environments":
        return [table(rows, ENVIRONMENT), ratio_table(rows, environments.PLAIN, list(ENVIRONMENT))]
    columns = {"idle": IDLE, "login": LOGIN, "tavctl": TAVCTL, "directory": TOTAL, "cold": COLD}
    return [table(rows, columns[part])]


def report(results, options, load_before):
    head = (f"{lab.machine()}; {time.strftime('%Y-%m-%d')}; {options.runs} runs, alternating; load average "
            f"{load_before} before, {lab.load()} after. Medians, in brackets the least and the most; ratios are those "
            "of the medians, in brackets their 95 % interval.")
    sections = [head]
    for part, rows in results.items():
        sections += tables(part, rows)
    if "cold" in options.part and "cold" not in results:
        sections.append("From cold: this machine does not allow to drop the page cache.")
    return "\n\n".join(sections)


def parse_options():
    parser = argparse.ArgumentParser(prog="bench.sh")
    parser.add_argument("--runs", type=int, default=20)
    parser.add_argument("--idle-runs", type=int, default=3)
    parser.add_argument("--peers", action="store_true", help="measure the programs of bench/commands.ini, too")
    parser.add_argument("--part", action="append", choices=PARTS,
                        help="measure this part only; can be repeated, and changes nothing in docs/")
    parser.add_argument("--no-growth", action="store_true", help="leave out the cost as the work grows")
    parser.add_argument("--dry", action="store_true", help="print only: change nothing in docs/")
    options = parser.parse_args()
    options.dry |= options.part is not None
    options.part = options.part or PARTS
    options.growth = "growth" in options.part and not options.no_growth
    return options


def main():
    options = parse_options()
    load_before = lab.load()
    results = measure(options)
    if options.growth:
        growth.measure(options.dry)
    if not results:
        return
    goal_table, missed = goals.judge(results)
    text = report(results, options, load_before) + "\n\n" + goal_table
    print(text)
    if not options.dry:
        lab.write_section("measured", text)
    if missed:
        sys.exit("Missed: " + "; ".join(missed))


if __name__ == "__main__":
    main()
