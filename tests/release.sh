#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# tests/release.sh VERSION TAVCTL
#   What would be wrong in a release: a place with another version than CMakeLists.txt has, a sample in the manual that is not
#   the one that is installed, a translation without a sentence or with one too many.
set -euo pipefail
cd "${0%/*}/.."
version=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

same() { diff <(printf '%s\n' "$2") <(printf '%s\n' "$3") || { echo "$1 does not fit." >&2; exit 1; }; }

same debian/changelog "$(sed -n '1s/^qorm-login (\(.*\)) .*/\1/p' debian/changelog)" "$version"
same tavctl "$("$2" --version)" "tavctl $version"
same CHANGELOG.md "$(sed -n 's/^## \([0-9.]*\) .*/\1/p' CHANGELOG.md | head -n 1)" "$version"
for page in docs/man/*.[1-8]; do
    same "$page" "$(sed -n 's/^\.TH .* "qorm-login \([0-9.]*\)" .*/\1/p' "$page")" "${version%.*}"
done

sample=$(sed -n '/^<?xml/,/^\.RE/{/^\.RE/!p}' docs/man/qorm-login-config.5)
same "The sample of qorm-login-config.5" "$sample" "$(cat terminal/config.xml.example)"

cp -r app base config ldap ui translations check.sh "$work"
(cd "$work" && ./check.sh translations)
diff -r translations "$work/translations"
