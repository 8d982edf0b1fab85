# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Completion of bash for tavctl.

_tavctl() {
    local word=${COMP_WORDS[COMP_CWORD]} choice=''
    COMPREPLY=()
    if [ "$COMP_CWORD" = 1 ]; then
        choice="hash obscure check probe login sso --help --version"
    elif [ "${COMP_WORDS[COMP_CWORD - 1]}" = --user ]; then
        mapfile -t COMPREPLY < <(compgen -u -- "$word")
        return
    else
        case ${COMP_WORDS[1]} in
            check) choice="--user --strict --json" ;;
            probe) choice="--user --strict --json $(compgen -A hostname -- "$word")" ;;
            login) choice="--user" ;;
            sso) [ "$COMP_CWORD" != 2 ] || choice="user password domain" ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$choice" -- "$word")
}
complete -F _tavctl tavctl
