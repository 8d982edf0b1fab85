#!/bin/bash
# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
#
# ./check.sh [format | lint | test | sanitize | memory | fuzz | mutate | sessions | pictures | translations |
#   bench] [ARGUMENT]...
#   What the contributors use; without an argument: lint, test, sanitize. CONTRIBUTING.md says what each does. A step
#   installs what it needs.
set -euo pipefail
cd "$(dirname "$0")"

sources() { git ls-files '*.cpp' '*.h'; }

scripts() { git ls-files | while IFS= read -r file; do
    if [ -f "$file" ] && head -c 32 "$file" | grep -qE '^#!/bin/(ba)?sh'; then printf '%s\n' "$file"; fi
done; }

format() {
    lab/install clang-format git
    sources | xargs clang-format -i
}

# The product only: the tests' sources are checked by the compiler's warnings.
tidy() {
    cmake -S . -B build-lint -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DBUILD_TESTING=OFF > /dev/null
    # What moc, uic and rcc generate must be there for clang-tidy to read the sources.
    cmake --build build-lint --parallel 2 --target gate_setpassword_autogen gate_screens_autogen gate_ldap_autogen \
        gate_app_autogen gate_desktop_autogen > /dev/null
    git ls-files 'app/*.cpp' 'base/*.cpp' 'config/*.cpp' 'desktop/*.cpp' 'ldap/*.cpp' 'tav3/*.cpp' 'tavctl/*.cpp' 'ui/*.cpp' |
        xargs -P "$(nproc)" -n 4 clang-tidy -p build-lint --quiet --extra-arg=-std=c++17 2>&1 |
        sed '/^[0-9]* warnings\? generated\.$/d' # in the headers of others, and not shown
}

lint() {
    lab/install
    lab/install clang-format clang-tidy cppcheck git shellcheck
    sources | xargs clang-format --dry-run -Werror
    scripts | xargs shellcheck
    cppcheck --enable=warning,performance,portability --error-exitcode=1 --quiet --inline-suppr --library=qt \
        --suppress=unknownMacro -j 2 app base config desktop ldap tav3 tavctl ui
    tidy
    echo clean
}

# The preset leaves the signals of a crash to the program, whose contract they are. What the sanitizers say goes to files,
# as many a situation is meant to fail.
sanitize() {
    local jobs
    lab/install
    jobs=$(nproc)
    lab/sandbox --check || jobs=1
    cmake --preset asan
    cmake --build --preset asan --parallel "$(nproc)"
    rm -f build-asan/sanitizer.*
    ctest --preset asan --parallel "$jobs" "$@"
    ! cat build-asan/sanitizer.* 2> /dev/null
}

# Every screen under valgrind, the remote dialog's by random sessions; what it says is in build/valgrind-*.log.
memory() {
    lab/install valgrind
    lab/prepare e2e_situations e2e_sessions
    rm -f build/valgrind-*.log
    export VALGRIND_OPTS="-q --leak-check=full --errors-for-leak-kinds=definite --show-leak-kinds=definite \
        --error-exitcode=99 --child-silent-after-fork=yes --suppressions=$PWD/tests/valgrind.supp \
        --log-file=$PWD/build/valgrind-%p.log"
    export LC_ALL=C.UTF-8 QTEST_FUNCTION_TIMEOUT=2000000000
    TABLE=memory SHARD=0/1 lab/sandbox build/tests/e2e_situations
    SESSIONS_UNDER=valgrind lab/sandbox build/tests/e2e_sessions
}

# Random sessions beside their model: sessions [--minutes N] [--seed N]
sessions() {
    local minutes=10 seed=1
    while [ $# -gt 1 ]; do
        case $1 in
            --minutes) minutes=$2 ;;
            --seed) seed=$2 ;;
        esac
        shift 2
    done
    lab/prepare e2e_sessions
    LC_ALL=C.UTF-8 QTEST_FUNCTION_TIMEOUT=2000000000 SESSIONS_MINUTES=$minutes SESSIONS_SEED=$seed \
        lab/sandbox build/tests/e2e_sessions
}

# Brings translations/*.ts up to date; fails while one has a sentence without a translation, or one that nobody shows.
# Translated() of the login chain is its tr().
translations() {
    lupdate -silent -I . app base config ldap ui translations -locations none -tr-function-alias tr+=Translated \
        -ts translations/*.ts
    ! grep -B 2 'translation type=' translations/*.ts
}

step=${1-}
[ $# -eq 0 ] || shift
case $step in
    format | lint | sanitize | memory | sessions | translations) "$step" "$@" ;;
    test) ./test.sh "$@" ;;
    mutate) lab/prepare && tools/mutate "$@" ;;
    fuzz) lab/install && lab/install clang libclang-rt-dev && tools/fuzz "$@" ;;
    pictures) lab/prepare && lab/install imagemagick optipng pngquant && tools/make-pictures "$@" ;;
    bench) ./bench.sh "$@" ;;
    '') lint; ./test.sh; sanitize "$@" ;;
    *) sed -n '5,8s/^# *//p' "$0" >&2; exit 2 ;;
esac
