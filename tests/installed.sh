#!/bin/sh
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# tests/installed.sh BUILD_DIR
#   Fails unless the programs start from a folder that they were installed into, with no help to find their library and
#   their configuration.
set -eu
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
unset LD_LIBRARY_PATH
cmake --install "$1" --prefix "$prefix" > /dev/null
env -u TAV3_CONFIG_DIR "$prefix/bin/tavctl" check | grep '/etc/tav3/config.xml'
TAV3_CONFIG_DIR='' "$prefix/bin/tavctl" check | grep '/etc/tav3/config.xml'
for option in -h --help; do "$prefix/bin/tavctl" $option | grep '^usage: tavctl VERB'; done
TAV3_CONFIG_DIR=$prefix "$prefix/bin/qorm-login" # nothing is configured, so it lets in
