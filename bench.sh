#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# ./bench.sh [--soak | OPTION of bench/bench.py...]
#   Installs what is missing, builds, and measures the gate beside its floors; the tables go into docs/performance.md and
#   the plots into docs/images. Takes 20 minutes; nothing else should run meanwhile. The status is 1 when a goal of
#   bench/goals.py is missed.
#   --soak   looks for growth in 2,000 logins and 500 starts instead, for docs/reliability.md; takes 10 minutes
#   --help   lists the other options, as those that measure a part only or change nothing in docs/
set -euo pipefail
cd "$(dirname "$0")"
exec < /dev/null

mapfile -t packages < <(grep -h '^[^#]' packages.txt bench/packages.txt)
lab/install "${packages[@]}"
cmake -S bench -B build-bench
cmake --build build-bench --parallel "$(nproc)"
if [ "${1-}" = --soak ]; then
    exec lab/sandbox bench/soak.py
fi
exec lab/sandbox bench/bench.py "$@"
