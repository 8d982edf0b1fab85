# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
"""The environments that terminals have: what is set, what the machine lacks, which fonts it has."""
import os
import shutil
import subprocess
from typing import NamedTuple

PLAIN = "plain"
FONTS = 3, 100, 1000
# The second one is what most text is shown in.
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"
SANS = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"
LATIN = range(0x20, 0x180)
FONT_CONFIGURATION = """<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig><dir>{folder}</dir><include>/etc/fonts/conf.d</include><cachedir>{folder}.cache</cachedir></fontconfig>
"""


class Environment(NamedTuple):
    """What differs from the plain one: variables (None: not set), and what a shell does before each start, in mounts of
    its own."""
    variables: dict = {}
    preparation: str = ""

    def of(self, plain):
        merged = {**plain, **self.variables}
        return {name: value for name, value in merged.items() if value is not None}

    def command(self, command):
        if not self.preparation:
            return command
        return ["unshare", "--mount", "sh", "-ec", self.preparation + '\nexec "$0" "$@"', *command]


def make_fonts(folder, count):
    """The usual sans serif font and, under names of their own, copies of the Latin part of another."""
    from fontTools import subset, ttLib
    os.mkdir(folder)
    shutil.copy(SANS, folder)
    with ttLib.TTFont(FONT) as font:
        del font["FFTM"]  # the designer's time stamps, which a Subsetter only warns of
        latin = subset.Subsetter()
        latin.populate(unicodes=LATIN)
        latin.subset(font)
        names = font["name"]
        for i in range(1, count):
            for name_id in (1, 4, 6):  # family, full name, PostScript name
                names.setName(f"Copy{i}", name_id, 3, 1, 0x409)  # Windows, Unicode, English
                names.setName(f"Copy{i}", name_id, 1, 0, 0)  # Macintosh, Roman, English
            font.save(os.path.join(folder, f"{i}.ttf"))


def font_environment(work, name, count, preparation=""):
    folder = os.path.join(work, name)
    make_fonts(folder, count)
    variables = {"FONTCONFIG_FILE": folder + ".conf"}
    with open(variables["FONTCONFIG_FILE"], "w") as file:
        file.write(FONT_CONFIGURATION.format(folder=folder))
    subprocess.run(["fc-cache", folder], env={**os.environ, **variables}, check=True)
    return Environment(variables, preparation.format(folder=folder))


def environments(work):
    """{label: environment}; their fonts are made in the folder `work`."""
    no_bus = {"DBUS_SESSION_BUS_ADDRESS": None}
    rows = {PLAIN: Environment(),
            "no bus address, no dbus-launch": Environment(no_bus, "mount --bind /dev/null /usr/bin/dbus-launch"),
            "no bus address, dbus-launch": Environment(no_bus),
            "theme gtk3, of the desktop": Environment({"XDG_CURRENT_DESKTOP": "GNOME"}),
            "theme gtk3, named": Environment({"QT_QPA_PLATFORMTHEME": "gtk3"}),
            "no HOME": Environment({"HOME": None}),
            "read-only HOME": Environment({"HOME": "/mnt"}, "mount -t tmpfs -o ro none /mnt")}
    for count in FONTS:
        rows[f"{count:,} fonts"] = font_environment(work, f"fonts{count}", count)
    rows[f"{FONTS[0]} fonts, stale cache"] = font_environment(work, "stale", FONTS[0], "touch {folder}")
    return rows


def without_fonts(labels):
    return [label for label in labels if label != PLAIN and "fonts" not in label]
