#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
set -euo pipefail
cd "$(dirname "$0")"

usage() {
    cat <<'END'
Usage: ./run.sh [signin | local | expiring | must-change] [OPTION]...

Installs what is missing, builds the gate, and shows it on your display against a real directory that runs in a
sandbox or, where the kernel allows none, on the machine itself. Without a display it starts one of its own, does what
a user would do by real key presses, and saves pictures in build/demo. At the end it says what happened. Nothing but
the packages and the folder build stays behind.

  signin       a directory user signs in (the default)
  local        the terminal asks for its own password
  expiring     a user whose password expires in three days changes it
  must-change  a user who must set a new password does so

  --user NAME   the user who signs in when nobody is there to type (by default the one that fits)
  --ldap        speak to the directory without TLS
  --unattended  use a display and key presses of its own even if you have a display
  --help        show this text

The users of the domain example.org, and their password:

END
    awk -F '\t' '!/^#/ { printf "  %-12s  %s  %s\n", $1, $2, $5 }' lab/users.tsv
}

# Only a display behind a socket of this machine can be reached from the sandbox.
has_local_display() {
    local number=${DISPLAY-}
    number=${number#unix}
    number=${number#:}
    [ -S "/tmp/.X11-unix/X${number%%.*}" ]
}

mode=signin user='' type=LDAPS attended=''
has_local_display && attended=--display
while [ $# -gt 0 ]; do
    case $1 in
        signin | local | expiring | must-change) mode=$1 ;;
        --user) user=${2?"--user needs a name"}; shift ;;
        --ldap) type=LDAP ;;
        --unattended) attended='' ;;
        --help | -h) usage; exit ;;
        *) usage >&2; exit 2 ;;
    esac
    shift
done
needed=(lab/dc check)
[ "$mode" != local ] || needed=(true)
# Nothing is built when the machine is in the way.
lab/install
if ! lab/sandbox --check; then
    echo "This kernel allows no sandbox: the demo runs on the machine itself, on loopback only, and tidies up after itself."
    export GATE_NO_SANDBOX=1
    lab/sandbox "${needed[@]}"
fi
lab/prepare qorm-login tavctl
exec lab/sandbox $attended lab/demo "$mode" "$type" "$user" "$attended"
