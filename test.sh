#!/bin/sh
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# ./test.sh [OPTION OF CTEST]...
#   Installs what is missing, builds, and runs every test, each in a sandbox of its own (lab/sandbox).
set -eu
cd "$(dirname "$0")"
exec < /dev/null
lab/prepare
if lab/sandbox --check; then
    GATE_NO_SANDBOX=0 jobs=2
else
    echo "This kernel allows no sandbox: the tests run one by one on the machine itself."
    GATE_NO_SANDBOX=1 jobs=1
fi
export GATE_NO_SANDBOX
exec ctest --test-dir build --no-tests=error --output-on-failure --repeat until-pass:3 --parallel "$jobs" "$@"
