# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
"""What the measuring scripts share: the tools, a display, the costs of a process, statistics, the report."""
import glob
import os
import random
import re
import statistics
import subprocess
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(HERE)
BUILD = os.path.join(ROOT, "build-bench")
GATE = os.path.join(BUILD, "gate/bin/qorm-login")
REPORT = os.path.join(ROOT, "docs/performance.md")
median = statistics.median


def tool(name):
    return os.path.join(BUILD, name)


class Display:
    """A private X server without a window manager; gives the environment for a program on it. No session bus: libdbus
    would start one, which takes 7 ms."""

    def __enter__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-dpi", "96", "-noreset", "-nolisten",
             "tcp"], pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as numbers:
            number = numbers.readline().strip()
        self.home = tempfile.TemporaryDirectory()
        runtime = os.path.join(self.home.name, "runtime")
        os.mkdir(runtime, 0o700)
        return {"DISPLAY": ":" + number, "HOME": self.home.name, "XDG_RUNTIME_DIR": runtime, "LANG": "C.UTF-8",
                "PATH": "/usr/local/bin:/usr/bin:/bin", "DBUS_SESSION_BUS_ADDRESS": "disabled:"}

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()
        self.home.cleanup()


class Directory:
    """The lab's domain controller, which listens on dc1.example.org; gives what its clients' environment needs."""

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory()
        self.state = os.path.join(self.folder.name, "dc")
        template = tool("dc")
        self.order("provision", template)
        self.order("start", self.state, template)
        return {"LDAPTLS_CACERT": os.path.join(self.state, "private/tls/ca.pem")}

    def __exit__(self, *_):
        self.order("stop", self.state)
        self.folder.cleanup()

    def order(self, *words):
        with open(tool("dc.log"), "w") as log:
            subprocess.run([os.path.join(ROOT, "lab/dc"), *words], stdout=log, stderr=log, check=True)


def configuration(folder, *changes):
    """Writes the bench's configuration into the folder, with changes: pairs of a text and what stands in its place."""
    text = text_of(os.path.join(HERE, "config.xml"))
    for old, new in changes:
        text = text.replace(old, new)
    with open(os.path.join(folder, "config.xml"), "w") as file:
        file.write(text)


def text_of(path):
    with open(path) as file:
        return file.read()


def tree(pid):
    """The process and all its descendants."""
    found = [pid]
    for parent in found:
        for path in glob.glob(f"/proc/{parent}/task/*/children"):
            found += [int(child) for child in text_of(path).split()]
    return found


def number(text, name):
    return int(re.search(rf"^{name}:\s*(\d+)", text, re.MULTILINE)[1])


def cost(pid):
    """Processor ms and context switches so far."""
    cpu = switches = 0
    for process in tree(pid):
        for task in glob.glob(f"/proc/{process}/task/*"):
            cpu += int(text_of(task + "/schedstat").split()[0]) / 1e6
            status = text_of(task + "/status")
            switches += number(status, "voluntary_ctxt_switches") + number(status, "nonvoluntary_ctxt_switches")
    return cpu, switches


def memory(pid):
    """Peak, proportional and private dirty memory in MB; the libraries that are mapped."""
    row = {"peak": 0, "pss": 0, "dirty": 0}
    libraries = set()
    for process in tree(pid):
        rollup = text_of(f"/proc/{process}/smaps_rollup")
        row["peak"] += number(text_of(f"/proc/{process}/status"), "VmHWM") / 1024
        row["pss"] += number(rollup, "Pss") / 1024
        row["dirty"] += number(rollup, "Private_Dirty") / 1024
        libraries.update(re.findall(r"/\S+\.so\b\S*", text_of(f"/proc/{process}/maps")))
    return {**row, "libraries": len(libraries)}


def median_text(values, decimals, spread):
    text = f"{median(values):.{decimals}f}"
    return text + f" [{min(values):.0f}, {max(values):.0f}]" if spread else text


def ratio_text(values, base, tries=2000):
    """Ratio of the medians, and its 95 % interval by resampling."""
    chance = random.Random(1)
    ratios = sorted(median(chance.choices(values, k=len(values))) / median(chance.choices(base, k=len(base)))
                    for _ in range(tries))
    return f"{median(values) / median(base):.2f} [{ratios[tries // 40]:.2f}, {ratios[-tries // 40]:.2f}]"


def drop_caches():
    os.sync()
    with open("/proc/sys/vm/drop_caches", "w") as file:
        file.write("3")


def may_drop_caches():
    try:
        drop_caches()
    except OSError:
        return False
    return True


def load():
    return text_of("/proc/loadavg").split()[0]


def machine():
    processor = re.search(r"^model name\s*: (.*)", text_of("/proc/cpuinfo"), re.MULTILINE)
    qt = subprocess.run(["qmake", "-query", "QT_VERSION"], stdout=subprocess.PIPE, text=True).stdout.strip()
    return (f"{processor[1] if processor else 'unknown processor'}, {os.cpu_count()} cores, "
            f"Debian {text_of('/etc/debian_version').strip()}, Qt {qt}, Xvfb 1280x800x24")


def write_section(name, text, report=REPORT):
    """Replaces what stands between the report's two comments of that name."""
    begin, end = f"<!-- {name} -->\n", f"<!-- end of {name} -->\n"
    before, rest = text_of(report).split(begin)
    with open(report, "w") as file:
        file.write(before + begin + text + "\n" + end + rest.split(end)[1])
