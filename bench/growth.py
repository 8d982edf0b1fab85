#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
"""The cost of one job of the gate as its work grows, measured by growth.cpp and plotted into docs/images."""
import os
import subprocess
import tempfile

import lab

RUNS = 5
LOG_FOLDER = "/tmp/config/files"
# subject: title, numbers of items; a start log stops growing at 64 KiB, some 1,300 lines, and an answer above 1 MiB,
# some 27,500 lines, is refused
SUBJECTS = {"answer": ("Answer of the directory, lines", [3, 100, 1000, 3000, 10000, 27000]),
            "keys": ("Configuration, keys", [10, 100, 1000, 3000, 10000]),
            "starts": ("Start log, lines", [1, 10, 100, 300, 1000, 3000]),
            "audit": ("Audit file, entries", [1, 10, 100, 1000, 3000, 10000])}


def write_configuration(folder, keys):
    """The bench's configuration with so many further keys in front of those that are read."""
    further = "".join(f"<key{i}>value {i}</key{i}>\n" for i in range(keys))
    lab.configuration(folder, ("<security>", "<security>\n" + further))


def run(subject, count, folder):
    environment = dict(os.environ, TAV3_CONFIG_DIR=folder, BENCH_LINES=str(count), QT_LOGGING_RULES="*=false",
                       PATH=lab.BUILD + ":" + os.environ["PATH"])
    for path in ["/tmp/AdPwdTest.log", LOG_FOLDER + "/QXlogin.log"]:
        if os.path.exists(path):
            os.remove(path)
    out = subprocess.run([lab.tool("growth"), subject, str(count)], env=environment, check=True,
                         stdout=subprocess.PIPE).stdout
    return [float(word) for word in out.split()]


def measure_all():
    """{subject: [(count, ms, MB)]}, each the median of RUNS."""
    os.makedirs(LOG_FOLDER, exist_ok=True)
    results = {}
    with tempfile.TemporaryDirectory() as folder:
        for subject, (_, counts) in SUBJECTS.items():
            results[subject] = []
            for count in counts:
                write_configuration(folder, count if subject == "keys" else 0)
                times, peaks = zip(*[run(subject, count, folder) for _ in range(RUNS)])
                results[subject].append((count, lab.median(times), lab.median(peaks) / 1024))
    return results


def plot(results, path):
    import matplotlib
    matplotlib.use("svg")
    matplotlib.rcParams.update({"svg.hashsalt": "growth", "svg.fonttype": "none"})  # same figures, same file
    from matplotlib import pyplot
    figure, axes = pyplot.subplots(2, 2, figsize=(9, 6.5))
    for (subject, (title, _)), left in zip(SUBJECTS.items(), axes.flat):
        counts, times, peaks = zip(*results[subject])
        left.loglog(counts, times, "o-", color="#b54708", label="ms")
        left.loglog(counts, [max(peak, .01) for peak in peaks], "s--", color="#26292e", label="MB more memory")
        left.set_title(title, fontsize=10)
        left.grid(True, alpha=.3)
        left.legend(fontsize=8)
    figure.tight_layout()
    figure.savefig(path, metadata={"Date": None})


def table(results):
    lines = ["| work | items | ms | µs an item | MB more memory |", "|---|---|---|---|---|"]
    for subject, rows in results.items():
        for count, ms, mb in rows:
            lines.append(f"| {SUBJECTS[subject][0]} | {count:,} | {ms:.2f} | {ms * 1000 / count:.2f} | {mb:.1f} |")
    return "\n".join(lines)


def measure(dry):
    results = measure_all()
    print(table(results))
    if not dry:
        lab.write_section("growth", table(results))
        plot(results, os.path.join(lab.ROOT, "docs/images/cost-growth.svg"))


if __name__ == "__main__":
    measure(dry=False)
