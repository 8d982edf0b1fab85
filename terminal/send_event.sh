#!/bin/sh
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# send_event.sh CODE USER
#   Started by the gate for each attempt, an example: writes it to the system journal.
#   The user "localuser" with sec01 is a wrong local password, with sec02 a right one; any other user with sec01 is a
#   good login, with sec02 a failed one. As somebody can type the name "localuser" in the remote-login dialog too, the
#   line keeps the code and draws no conclusion.
set -u

# USER is what was typed, by anybody. So that no name can end the line or feign another field, every byte but those of
# plain names is written as % and its value; a tool can turn it back.
encode() {
    printf %s "$1" | LC_ALL=C od -An -v -tu1 | LC_ALL=C awk '{
        for (i = 1; i <= NF; i++) {
            letter = sprintf("%c", $i)
            printf("%s", letter ~ /[A-Za-z0-9._@-]/ ? letter : sprintf("%%%02X", $i))
        }
    }'
}

exec logger -t qorm-login -p auth.notice -- "event=$(encode "${1-}") user=$(encode "${2-}")"
