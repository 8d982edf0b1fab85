#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# tests/session_script.sh BUILD_DIR
#   The programs of a terminal: each exit status with a gate that ends as it is told, then the real gate, and a lock that
#   is tried by clicks and keys, on a screen as wide as two. Started in lab/sandbox.
# shellcheck disable=SC2016 # what is in single quotes is for a stand-in
set -euo pipefail
build=$1 programs=$(realpath "${0%/*}/../terminal") table=$(realpath "${0%/*}/tables/session.tsv")
work=$(mktemp -d)
cd "$work"
# shellcheck disable=SC2046 # job numbers; this ends only what was started here
trap 'kill $(jobs -p) 2> /dev/null || true; wait; rm -rf "$work"' EXIT
PATH=$work:$build/bin:$programs:$PATH
export PATH TERMINAL_CONFIG_DIR=$work TAV3_CONFIG_DIR=$work

fail() { echo "$1" >&2; exit 1; }

await() {
    local end=$((SECONDS + 30))
    until "$@"; do
        [ $SECONDS -lt $end ] || fail "This did not come true: $*"
        /bin/sleep 0.05
    done
}

stand_in() { printf '#!/bin/sh\n%s\n' "$(cat)" > "$1"; chmod +x "$1"; }

mkfifo answers commands display
cp "$programs"/*.xml .
sed -i "s|/etc/qorm-terminal|$work|" desktop.xml
stand_in logger <<< 'shift 5; echo "$1" >> journal'
stand_in sleep <<< '[ "$1" != 1 ] || echo pause >> calls; exec /bin/sleep 0.02'
# It does not start for a root who stands for an ordinary user and may not change groups: there it is that user's.
read -r _ _ users < /proc/self/uid_map
[ "$users" != 1 ] || stand_in xterm <<< 'exec unshare --user --map-user=1000 --map-group=1000 /usr/bin/xterm "$@"'
# Carries out a command at a time, and has a program that has left its process group.
stand_in autostart <<'END'
echo $$ > processes
setsid /bin/sleep 100 &
echo $! >> processes
exec 3<> commands
while read -r command <&3; do eval "$command"; done
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
case "$*" in
    *namingContexts*) printf 'dn:\nnamingContexts: DC=example,DC=org\n\n' ;;
    *"-w Lantern "*) printf 'dn: CN=Somebody,DC=example,DC=org\npwdLastSet: 1\n\n' ;;
    *) printf 'ldap_bind: Invalid credentials (49)\n\tadditional info: LdapErr: comment, data 52e, v1\n' >&2; exit 49 ;;
esac
END
echo '<c><user><system><security><enableremoteauth>true</enableremoteauth><remoteauthserver>dc1</remoteauthserver>
<remoteauthtype>LDAPS</remoteauthtype><remoteauthdomain>example.org</remoteauthdomain></security></system></user></c>' \
    > config.xml
# It stays as it is when its only client ends: a new start of the server would turn the next one away.
Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 1600x600x24 2> /dev/null 3> display &
read -r DISPLAY < display
export DISPLAY=:$DISPLAY

start_session() { terminal-session 2> session.log & session=$!; }
on_desktop() { printf '%s\n' "$1" > commands; } # by a program of the desktop
window() { xdotool search --sync --onlyvisible --name "^$1\$"; }
# Keys reach a window only once it has the focus.
in_front() { [ "$(xdotool getwindowfocus -f getwindowname 2> /dev/null)" = "$1" ]; }
# Which virtual desktop: 0 the user's, 1 the gate's.
in_view() { [ "$(xprop -root _NET_CURRENT_DESKTOP)" = "_NET_CURRENT_DESKTOP(CARDINAL) = $1" ]; }
# A request to lock that comes while the gate still runs, or openbox is replaced, changes nothing.
locks() { on_desktop "terminal-session lock"; in_view 1; }

# Each row of the table: what is done, what the gate then finds when it is started, how it ends.
every_status() {
    local action found status
    touch /tmp/.newuser /tmp/.newuser.1 /tmp/.user.1 # of an earlier session
    start_session
    while IFS=$'\t' read -r action found status; do
        [ "$action" != lock ] || { await in_view 0; await locks; }
        await grep -qs gate calls
        in_view 1 || fail "The desktop is not covered before status $status."
        diff <(echo "$found") <(paste -s -d ' ' calls) || fail "before status $status"
        rm calls
        echo "$status" > answers
        [ "$action" != leave-files ] || touch /tmp/.newuser /tmp/.newuser.1 /tmp/.user.1
    done < <(grep -v '^#' "$table")
    on_desktop true # until the desktop stands
    kill -TERM $session
    wait $session && fail "The session ended with 0."
    [ ! -e /tmp/.config/.loggedin ] || fail "The marker is left."
}

press() { xdotool key --delay 20 "$@"; }
# At the gate: a name and a password.
sign_in() {
    await in_front 'User Authentication'
    xdotool type --delay 5 "$1"$'\t'"$2"
    press Return
}
at_the_start() { [ ! -e /tmp/.config/.loggedin ] && [ ! -e /tmp/.user.1 ] && [ ! -e /tmp/.newuser.1 ]; }

# A red window that writes down what is typed into it; F9 grabs the keyboard.
open_window() {
    on_desktop "xterm -title $1 -geometry $2 -bg '#ff0000' -fg '#ff0000' -cr '#ff0000' +sb \
-xrm '*translations: #override <Key>F9: secure()' -e sh -c 'cat >> $work/typed' 2> /dev/null &"
}

# One at each side, one on all virtual desktops, one as a panel, and one that has grabbed the keyboard.
open_windows() {
    local place
    for place in left:80x24+0+0 right:80x24+800+0 everywhere:80x24+0+300 panel:20x5+1300+500 grabbing:20x5+500+300; do
        open_window "${place%%:*}" "${place#*:}"
        window "${place%%:*}" > /dev/null
    done
    xdotool set_desktop_for_window "$(window everywhere)" -1
    xprop -name panel -f _NET_WM_WINDOW_TYPE 32a -set _NET_WM_WINDOW_TYPE _NET_WM_WINDOW_TYPE_DOCK
    xdotool windowactivate --sync "$(window grabbing)"
    press F9
}

red_can_be_seen() {
    rm -f screen.ppm
    scrot screen.ppm
    python3 -c 'import sys
points = open("screen.ppm", "rb").read()[-1600 * 600 * 3:]
sys.exit(not any(points[i:i + 3] == b"\xff\0\0" for i in range(0, len(points), 3)))'
}

desktop_is_open() {
    await in_view 0
    await red_can_be_seen
    xdotool type $'into the desktop\n'
    await grep -q 'into the desktop' typed
    : > typed
}

nothing_is_open() {
    await in_view 1
    ! red_can_be_seen || fail "The desktop can be seen: $1."
    xdotool type xyz
    [ ! -s typed ] || fail "The desktop can be typed into: $1."
}

# Places beside the gate, which stands in the middle; then along its title bar.
click_around() {
    local x y X Y WIDTH
    for x in 5 550 1050 1595; do
        for y in 5 200 400 595; do
            xdotool mousemove $x $y click 1 click 2 click 3 click 4 key --delay 5 x
        done
    done
    eval "$(xdotool getwindowgeometry --shell "$1" | grep -E '^(X|Y|WIDTH)=')"
    for ((x = X + 2; x < X + WIDTH; x += 15)); do
        xdotool mousemove $x $((Y - 8)) click --repeat 2 --delay 5 1 click 2 click 3 mousedown 1 mousemove_relative 9 9 \
            mouseup 1
    done
}

lock_holds() {
    rm qorm-login journal
    start_session
    sign_in somebody Lantern
    await in_view 0
    open_windows
    desktop_is_open
    await locks
    gate=$(window 'User Authentication')
    click_around "$gate"
    press super+l alt+Tab alt+F4 alt+Escape ctrl+alt+Right super+d alt+space
    [ "$(window 'User Authentication')" = "$gate" ] || fail "The gate has gone."
    nothing_is_open "clicks and keys"
    open_window late 20x5+0+0
    xdotool search --sync --name '^late$' > /dev/null
    nothing_is_open "a new window"
    xdotool windowactivate "$(xdotool search --name '^left$')"
    nothing_is_open "a window that asks to be shown"
    for _ in 1 2 3; do
        window 'Authentication Error' > /dev/null & box=$!
        press Return
        wait $box
        nothing_is_open "a box"
        press Return
    done
    await grep -q "The gate ended with 6" journal
    nothing_is_open "the third refusal"
    await in_front 'User Authentication'
    press ctrl+a
    xdotool type Lantern
    press Return
    desktop_is_open
    kill -TERM "$(pgrep -s 0 -x openbox)" # log out
    await no_window_left
}

no_window_left() { ! pgrep -s 0 -x xterm > /dev/null; }

# Whatever dies under the lock, the desktop goes with it.
lock_ends() {
    sign_in somebody Lantern
    await in_view 0
    open_windows
    await locks
    await in_front 'User Authentication'
    kill -KILL "$(pgrep -s 0 -x "$1")"
    await no_window_left
    await at_the_start
}

hostile_name() {
    send_event.sh sec02 $'-n \u00fc%\nevent=sec01 user=root'
    [ "$(tail -n 1 journal)" = 'event=sec02 user=-n%20%C3%BC%25%0Aevent%3Dsec01%20user%3Droot' ] || fail "$(cat journal)"
}

hostile_name
every_status
lock_holds
lock_ends qorm-login
lock_ends openbox
