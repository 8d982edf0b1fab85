#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
"""2,000 logins through one handler and 500 starts of the program: does memory, or the number of descriptors, grow?
./bench.sh --soak builds and runs it; the tables go into docs/reliability.md. Fails when something grew."""
import os
import subprocess
import tempfile
import time

import lab

REPORT = os.path.join(lab.ROOT, "docs/reliability.md")
LOGINS, STARTS, SAMPLES = 2000, 500, 10
MOST_GROWTH = 256  # KiB of resident memory; when a start is sampled is not the same each time


def environment(folder, **more):
    lab.configuration(folder)
    return {**os.environ, **more, "TAV3_CONFIG_DIR": folder, "QT_LOGGING_RULES": "*=false",
            "PATH": lab.BUILD + ":" + os.environ["PATH"]}


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def resident(pid):
    return lab.number(lab.text_of(f"/proc/{pid}/status"), "VmRSS")


def logins(folder):
    """[(logins so far, resident KiB, descriptors)] of one process."""
    command = [lab.tool("soak"), str(LOGINS), str(LOGINS // SAMPLES)]
    out = subprocess.run(command, env=environment(folder, QT_QPA_PLATFORM="offscreen"), check=True, stdout=subprocess.PIPE, text=True).stdout
    return [tuple(map(int, line.split())) for line in out.splitlines()]


def said(env, *command):
    return subprocess.run(["xdotool", *command], env=env, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          text=True).stdout.strip()


def sign_in(env):
    """One start that ends in a good login; the program's resident KiB and descriptors as its window stands."""
    gate = subprocess.Popen([lab.GATE], env=env, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    while said(env, "getwindowfocus", "getwindowname") != "User Authentication":
        time.sleep(0.02)
    figures = resident(gate.pid), descriptors(gate.pid)
    said(env, "type", "--delay", "1", "user1\tsecret1")
    said(env, "key", "Return")
    if gate.wait(timeout=60) != 0:
        raise SystemExit("a good login failed")
    return figures


def left_behind():
    """Files in /tmp, and processes of this sandbox."""
    return sum(len(files) for _, _, files in os.walk("/tmp")), sum(name.isdigit() for name in os.listdir("/proc"))


def starts(folder):
    """[(starts so far, resident KiB, descriptors, the X server's of both, files in /tmp, processes)]."""
    rows = []
    display = lab.Display()
    with display as shown:
        env = environment(folder, **shown)
        for start in range(1, STARTS + 1):
            figures = sign_in(env)
            if start % (STARTS // SAMPLES) == 0:
                server = display.server.pid
                rows.append((start, *figures, resident(server), descriptors(server), *left_behind()))
    return rows


def table(names, rows):
    lines = ["| " + " | ".join(names) + " |", "|---" * len(names) + "|"]
    lines += ["| " + " | ".join(f"{value:,}" for value in row) + " |" for row in rows]
    return "\n".join(lines)


def growth(name, rows, memory_columns):
    """What grew from the first half of the samples to the second: memory by more than noise, anything else at all."""
    half = len(rows) // 2
    faults = []
    for column in range(1, len(rows[0])):
        before, after = (lab.median([row[column] for row in part]) for part in (rows[:half], rows[half:]))
        if after - before > (MOST_GROWTH if column in memory_columns else 0):
            faults.append(f"{name}: column {column} grew from {before} to {after}")
    return faults


def main():
    with tempfile.TemporaryDirectory() as folder:
        login_rows, start_rows = logins(folder), starts(folder)
    text = table(["logins", "resident KiB", "descriptors"], login_rows) + "\n\n" + table(
        ["starts", "resident KiB", "descriptors", "X server's KiB", "X server's descriptors", "files in /tmp", "processes"],
        start_rows)
    print(text)
    lab.write_section("soak", text, REPORT)
    faults = growth("logins", login_rows, {1}) + growth("starts", start_rows, {1, 3})
    raise SystemExit("\n".join(faults) or 0)


if __name__ == "__main__":
    main()
