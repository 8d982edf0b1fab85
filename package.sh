#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# ./package.sh [--twice]
#   Installs what is missing to build them, and builds the Debian packages into build/packages.
#   --twice   builds them once more in a folder of another name, and fails unless every package is the same byte by byte
set -euo pipefail
cd "${0%/*}"
results=$PWD/build/packages

as_root() {
    if [ "$UID" = 0 ]; then "$@"; else sudo "$@"; fi
}

install_build_dependencies() {
    if ! command -v dpkg-buildpackage > /dev/null || ! dpkg-checkbuilddeps 2> /dev/null; then
        as_root apt-get update -q
        as_root env DEBIAN_FRONTEND=noninteractive apt-get install -qy --no-install-recommends dpkg-dev
        as_root env DEBIAN_FRONTEND=noninteractive apt-get build-dep -qy --no-install-recommends ./
    fi
}

# What belongs to the project, as it stands now: nothing that was built, and no history.
list_sources() {
    if [ -e .git ]; then
        git ls-files -z
    else
        find . -path './build*' -prune -o -type f -print0
    fi
}

# Leaves the packages in the folder $1. The time stamps are those of now, as in a fresh checkout.
build_in() {
    mkdir -p "$1/source"
    list_sources | tar --create --null --files-from=- | tar --extract --touch --directory "$1/source"
    (cd "$1/source" && dpkg-buildpackage --unsigned-source --unsigned-changes)
}

same_packages() {
    diff <(cd "$1" && sha256sum -- *.deb) <(cd "$2" && sha256sum -- *.deb)
}

case ${1-} in
    '' | --twice) ;;
    *) sed -n '5,7s/^# \?//p' "${0##*/}" >&2; exit 2 ;;
esac
install_build_dependencies
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
build_in "$work/first"
if [ "${1-}" = --twice ]; then
    build_in "$work/a-second-and-longer-name"
    same_packages "$work/first" "$work/a-second-and-longer-name"
    echo "Both builds gave the same packages."
fi
rm -rf "$results"
mkdir -p "$results"
cp "$work"/first/*.* "$results"
cd "$results"
sha256sum -- *.deb
if command -v lintian > /dev/null; then
    lintian --allow-root --pedantic --fail-on error,warning,pedantic -- *.changes
fi
