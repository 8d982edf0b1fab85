#!/bin/sh
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# tests/hardening.sh FILE...
#   Fails when a program or library lacks one of the protections that the build asks compiler and linker for.
set -u
export LC_ALL=C
status=0

# expect PROTECTION PATTERN TEXT
expect() {
    if ! printf '%s\n' "$3" | grep -Eq "$2"; then
        echo "$file: no $1"
        status=1
    fi
}

# expect_not FAULT PATTERN TEXT
expect_not() {
    if printf '%s\n' "$3" | grep -Eq "$2"; then
        echo "$file: $1"
        status=1
    fi
}

for file in "$@"; do
    headers=$(readelf -hldW "$file")
    imports=$(readelf --dyn-syms -W "$file")
    case $file in
        *.so*) ;;
        *) expect "random load address (PIE)" 'Flags:.* PIE' "$headers" ;;
    esac
    expect "read-only relocations (RELRO)" 'GNU_RELRO' "$headers"
    expect "binding of all symbols at the start" 'BIND_NOW' "$headers"
    expect "stack that is data only" 'GNU_STACK .* RW ' "$headers"
    # The current directory, to the loader.
    expect_not "empty entry in the run path" 'Library r(un)?path: \[(.*:)?(:.*)?\]' "$headers"
    expect "stack protector" '__stack_chk_fail' "$imports"
    expect "checks of the C library (FORTIFY)" '[a-z]_chk@' "$imports"
    # Each marked function begins with this instruction; two come with the compiler's own start-up code. The file's
    # property note says nothing, as the C library's start-up code is not built so everywhere.
    if [ "$(uname -m)" = x86_64 ]; then
        expect "marks of jump targets (CET)" endbr64 "$(objdump -d "$file" | grep endbr64 | tail -n +3)"
    fi
done
exit $status
