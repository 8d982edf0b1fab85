#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# ./package.sh [--twice]
#   Installs what is missing to build them, and builds the Debian packages and the tarball of their sources into
#   build/packages.
#   --twice   builds them once more in another folder, and fails unless every package and the tarball are the same byte by
#             byte
set -euo pipefail
cd "${0%/*}"
umask 022
results=$PWD/build/packages
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)

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
    if [ -e .git ] && command -v git > /dev/null; then
        git ls-files -z
    else
        find . -path './build*' -prune -o -type f -print0
    fi
}

# Leaves the packages in the folder $1. The time stamps are those of now, as in a fresh checkout, which dpkg-source turns
# into that of the changelog; the modes are the same whatever those of the checkout are.
build_in() {
    local sources=$1/qorm-login-$version
    mkdir -p "$sources"
    list_sources | tar --create --null --files-from=- --mode=u=rwX,go=rX |
        tar --extract --touch --same-permissions --directory "$sources"
    (cd "$sources" && dpkg-buildpackage --unsigned-source --unsigned-changes)
}

checksums() {
    (cd "$1" && sha256sum -- *.deb *.tar.xz)
}

case ${1-} in
    '' | --twice) ;;
    *) sed -n '5,9s/^# \?//p' "${0##*/}" >&2; exit 2 ;;
esac
install_build_dependencies
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
build_in "$work/first"
if [ "${1-}" = --twice ]; then
    build_in "$work/a-second-and-longer-name"
    diff <(checksums "$work/first") <(checksums "$work/a-second-and-longer-name")
    echo "Both builds gave the same packages."
fi
rm -rf "$results"
mkdir -p "$results"
cp "$work"/first/*_* "$results"
checksums "$results"
cd "$results"
if command -v lintian > /dev/null; then
    lintian --allow-root --pedantic --fail-on error,warning,pedantic -- *.changes
fi
