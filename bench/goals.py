# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
"""What is aimed at, each goal once, and whether it was met."""
from typing import Callable, NamedTuple

import environments
import lab

FLOOR, RASTER, REMOTE, LOCAL = "qtfloor", "qtfloor-raster", "remote dialog", "local window"
STAND_IN_FLOOR, GOOD_FLOOR, REFUSAL_FLOOR = "floor and two hashes", "floor, good", "floor, refusal"
STAND_IN, GOOD, REFUSAL = "gate", "gate, good", "gate, refusal"
ONE_HASH = "one hash"
IDLE_SECONDS = 20
# What these took, in ms, on the machines that the goals in ms are for.
FLOOR_FRAME_MS = 45.9
HASH_MS = 20


class Goal(NamedTuple):
    """`measured` and `scale`, by which the limit grows on a slower machine, are functions of the results."""
    name: str
    limit: float
    measured: Callable
    scale: Callable = lambda results: 1


def median(results, part, row, column):
    return lab.median([values[column] for values in results[part][row]])


def value(*place):
    return lambda results: median(results, *place)


def ratio(part, column, row, floor):
    return lambda results: median(results, part, row, column) / median(results, part, floor, column)


def beyond(part, column, row, floor):
    return lambda results: median(results, part, row, column) - median(results, part, floor, column)


def slowest_environment(results):
    rows = environments.without_fonts(results["environments"])
    return max(ratio("environments", "paint", row, environments.PLAIN)(results) for row in rows)


def by_start(results):
    return max(1, median(results, "start", FLOOR, "paint") / FLOOR_FRAME_MS)


def by_hash(results):
    return median(results, "directory", ONE_HASH, "total") / HASH_MS


def goals_of(screen):
    return [Goal(f"peak memory, {screen} / qtfloor", .37, ratio("start", "peak", screen, FLOOR)),
            Goal(f"private dirty, {screen}, MB", 3, value("start", screen, "dirty")),
            Goal(f"libraries, {screen}", 73, value("start", screen, "libraries")),
            Goal(f"idle switches/s, {screen}", 14, value("idle", screen, "switches")),
            Goal(f"idle CPU, {screen}, ms in {IDLE_SECONDS} s", 20, value("idle", screen, "cpu"), by_start),
            Goal(f"first key, {screen}, ms", 3, value("start", screen, "key"), by_start),
            Goal(f"next key, {screen}, ms", 1, value("start", screen, "key2"), by_start)]


GOALS = [
    Goal("first frame, remote dialog / qtfloor-raster", 1.08, ratio("start", "paint", REMOTE, RASTER)),
    Goal("first frame, remote dialog / qtfloor", .48, ratio("start", "paint", REMOTE, FLOOR)),
    Goal("first frame, local window / qtfloor-raster", .98, ratio("start", "paint", LOCAL, RASTER)),
    Goal("first frame, slowest environment but the fonts' / plain", 1.05, slowest_environment),
    *goals_of(REMOTE), *goals_of(LOCAL),
    Goal("good sign-in, domain controller, beyond its floor, ms", 15, beyond("directory", "total", GOOD, GOOD_FLOOR),
         by_hash),
    Goal("refusal, domain controller, beyond its floor, ms", HASH_MS,
         beyond("directory", "total", REFUSAL, REFUSAL_FLOOR), by_hash),
    Goal("good sign-in, stand-in, beyond floor and two hashes, ms", 6,
         beyond("login", "total", STAND_IN, STAND_IN_FLOOR), by_start),
    Goal("tavctl check / tavctl --help", 2, ratio("tavctl", "ms", "tavctl check", "tavctl --help")),
    Goal("tavctl probe beyond the client, ms", 50, beyond("tavctl", "ms", "tavctl probe", "the client alone"),
         by_start)]


def judge(results):
    """A table, and the names of the goals that were missed. Goals of parts that were not measured are left out."""
    lines = ["| goal | at most | measured | met |", "|---|---|---|---|"]
    missed = []
    for goal in GOALS:
        try:
            limit, measured = goal.limit * goal.scale(results), goal.measured(results)
        except KeyError:
            continue
        if measured > limit:
            missed.append(goal.name)
        lines.append(f"| {goal.name} | {limit:.4g} | {measured:.4g} | {'no' if measured > limit else 'yes'} |")
    return "\n".join(lines), missed
