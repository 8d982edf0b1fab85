#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# tests/session_script.sh BUILD_DIR
#   The example scripts of a terminal: each exit status with a gate that ends as it is told, then the real gate on an X
#   server of its own. Started in lab/sandbox.
# shellcheck disable=SC2016 # what is in single quotes is for a stand-in
set -euo pipefail
build=$1 examples=$(realpath "${0%/*}/../docs/examples") table=$(realpath "${0%/*}/tables/session.tsv")
work=$(mktemp -d)
cd "$work"
# shellcheck disable=SC2046 # job numbers; this ends only what was started here
trap 'kill $(jobs -p) 2> /dev/null || true; wait; rm -rf "$work"' EXIT
PATH=$work:$build/bin:$examples:$PATH
export PATH TERMINAL_DESKTOP=$work/desktop TAV3_CONFIG_DIR=$work

fail() { echo "$1" >&2; exit 1; }

await() {
    local end=$((SECONDS + 15))
    until "$@"; do
        [ $SECONDS -lt $end ] || fail "This did not come true: $*"
        /bin/sleep 0.05
    done
}

stand_in() { printf '#!/bin/sh\n%s\n' "$(cat)" > "$1"; chmod +x "$1"; }

mkfifo answers commands display
stand_in logger <<< 'shift 5; echo "$1" >> journal'
stand_in sleep <<< '[ "$1" != 1 ] || { echo pause >> calls; set -- 0.02; }; exec /bin/sleep "$1"'
stand_in client <<< '{ echo "$*"; cat; } > client.out'
# Carries out a command at a time, and has a program that has left its process group.
stand_in desktop <<'END'
echo $$ > processes
[ -z "${DISPLAY-}" ] || openbox &
setsid /bin/sleep 100 &
echo $! >> processes
exec 3<> commands
while read -r command <&3; do $command; done
END
# Writes down what it finds when it is started; an ended process that init has not reaped yet has no command line.
stand_in qorm-login <<'END'
found=
[ ! -e /tmp/.config/.loggedin ] || found="$found marker"
[ ! -e /tmp/.user.1 ] || found="$found user"
[ ! -e /tmp/.newuser ] || found="$found hand-over"
for process in $(cat processes 2> /dev/null); do grep -qs . "/proc/$process/cmdline" && found="$found desktop"; done
echo "gate${*:+ $*}:$found" >> calls
read -r status 3<> answers <&3
[ "$status" != killed ] || kill -KILL $$
[ "$status" != 8 ] || touch /tmp/.newuser /tmp/.newuser.1
exit "$status"
END
stand_in ldapsearch <<'END'
[ "${*#*namingContexts}" = "$*" ] || { printf 'dn:\nnamingContexts: DC=example,DC=org\n\n'; exit; }
printf 'dn: CN=Somebody,DC=example,DC=org\npwdLastSet: 1\n\n'
END
echo '<c><user><system><security><enableremoteauth>true</enableremoteauth><remoteauthserver>dc1</remoteauthserver>
<remoteauthtype>LDAPS</remoteauthtype><remoteauthdomain>example.org</remoteauthdomain></security></system></user></c>' \
    > config.xml

# A request to lock that comes while the gate still runs changes nothing.
desktop_alone() { [ "$(wc -w < /proc/$session/task/$session/children)" = 1 ]; }
lock() { echo "terminal-session lock" > commands; }
has_keyboard() { [ "$(xdotool getwindowfocus getwindowname 2> /dev/null)" = "$1" ]; }
window_manager() { xdotool get_num_desktops > /dev/null 2>&1; }

# Each row of the table: what is done, what the gate then finds when it is started, how it ends.
every_status() {
    local action found status
    touch /tmp/.newuser /tmp/.newuser.1 /tmp/.user.1 # of an earlier session
    terminal-session 2> /dev/null & session=$!
    while IFS=$'\t' read -r action found status; do
        [ "$action" != lock ] || { await desktop_alone; lock; }
        await grep -qs gate calls
        diff <(echo "$found") <(paste -s -d ' ' calls) || fail "before status $status"
        rm calls
        echo "$status" > answers
        [ "$action" != leave-files ] || touch /tmp/.newuser /tmp/.newuser.1 /tmp/.user.1
    done < <(grep -v '^#' "$table")
    echo true > commands # until the desktop stands
    kill -TERM $session
    wait $session && fail "The session ended with 0."
    [ ! -e /tmp/.config/.loggedin ] || fail "The marker is left."
}

press() { xdotool key --delay 20 "$@"; }
# At the gate: the keys that lead to the field or button, then what is typed there.
sign_in() {
    await has_keyboard 'User Authentication'
    [ $# = 2 ] || press "${@:3}"
    xdotool type --delay 5 "$1"$'\t'"$2"
    press Return
}
signed_in() { [ "$(tavctl sso user 2> /dev/null)" = "$1" ] && [ -e /tmp/.config/.loggedin ]; }
at_the_start() { [ ! -e /tmp/.config/.loggedin ] && [ ! -e /tmp/.user.1 ] && [ ! -e /tmp/.newuser.1 ]; }

# A user signs in, another takes over at the lock and connects to a remote desktop, logs out.
real_users() {
    rm qorm-login journal
    # It stays as it is when the gate, its only client, ends: a new start of the server would turn the desktop away.
    Xvfb -displayfd 3 -noreset -nolisten tcp 2> /dev/null 3> display &
    read -r DISPLAY < display
    export DISPLAY=:$DISPLAY
    terminal-session 2> /dev/null &
    sign_in first 'Lantern 1'
    await window_manager
    signed_in first || fail "The first user is not saved."
    lock
    sign_in second 'Lantern "2"' Tab Tab space
    await grep -qs "ended with 8" journal
    await signed_in second
    echo "start-remote-desktop client /v:desktops" > commands
    await grep -qs Lantern client.out
    diff client.out - <<< $'/v:desktops\nsecond\nexample.org\nLantern "2"'
    lock
    await has_keyboard 'User Authentication'
    press Tab Tab Tab space # Logout
    await at_the_start
    await has_keyboard 'User Authentication'
    grep '^event' journal | diff - <(printf 'event=sec01 user=%s\n' first second)
}

hostile_name() {
    send_event.sh sec02 $'-n \u00fc%\nevent=sec01 user=root'
    [ "$(tail -n 1 journal)" = 'event=sec02 user=-n%20%C3%BC%25%0Aevent%3Dsec01%20user%3Droot' ] || fail "$(cat journal)"
}

every_status
real_users
hostile_name
