#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# ./bench.sh [--soak | OPTION OF bench/bench.py...]
#   Installs what is missing, builds, and measures the gate beside its floors; with the full number of runs the tables go
#   into docs/performance.md and the plots into docs/images. Takes 10 minutes; nothing else should run meanwhile.
#   --soak   looks for growth in 2,000 logins and 500 starts instead, for docs/reliability.md; takes 10 minutes
set -euo pipefail
cd "$(dirname "$0")"
exec < /dev/null

missing=$(grep '^[^#]' bench/packages.txt | while read -r package; do
    dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null | grep -qx installed || echo "$package"
done)
if [ -n "$missing" ]; then
    root=
    [ "$UID" = 0 ] || root=sudo
    $root apt-get update -q
    # One word a package.
    # shellcheck disable=SC2086
    $root apt-get install -qy --no-install-recommends $missing
fi
cmake -S bench -B build-bench
cmake --build build-bench --parallel "$(nproc)"
if [ "${1-}" = --soak ]; then
    exec lab/sandbox bench/soak.py
fi
exec lab/sandbox bench/bench.py "$@"
