#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# tests/lab_sandbox.sh
#   What lab/sandbox does where the kernel allows no namespaces: a checkout of its own uses "the machine itself", which is
#   the sandbox that this is started in.
set -euo pipefail
lab=$(realpath "${0%/*}/../lab") work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/lab"
cp "$lab/sandbox" "$lab/hosts" "$work/lab"
unset GATE_SANDBOX
export GATE_NO_SANDBOX=1 work

fail() { echo "$1" >&2; exit 1; }

# expect STATUS COMMAND...: runs the command in that lab/sandbox
expect() {
    local status=0
    "$work/lab/sandbox" "${@:2}" 2> "$work/complaint" || status=$?
    [ "$status" = "$1" ] || fail "status $status, not $1, of ${*:2}: $(cat "$work/complaint")"
}

nothing_is_left() {
    [ ! -e /tmp/.user ] || fail "/tmp/.user is left."
    [ ! -e "/proc/$(cat "$work/left")/exe" ] || fail "A process is left."
}

# shellcheck disable=SC2016 # for the shell in there
leave='touch /tmp/.user; setsid sleep 100 & echo $! > "$work/left"'

expect 7 sh -c "$leave; exit 7"
nothing_is_left

touch /tmp/.user
expect 125 true
grep -q '/tmp/.user exists already' "$work/complaint"
rm /tmp/.user

rm "$work/left"
"$work/lab/sandbox" sh -c "$leave; wait" 2> /dev/null & killed=$!
until [ -s "$work/left" ]; do sleep 0.05; done
expect 125 true
grep -q 'another run of this checkout is under way' "$work/complaint"
kill -KILL $killed
wait $killed || true
expect 0 true
nothing_is_left
