/* SPDX-FileCopyrightText: 2026 The qorm-login authors */
/* SPDX-License-Identifier: MIT */
/*
 * Stands in for the directory client, so that no directory's speed is measured: the naming contexts for a search of
 * scope "base", one entry for every other search, with as many further lines as BENCH_LINES says. The password "wrong" is
 * refused. Adds the time of its start (monotonic ms) to the file BENCH_CALLS.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

/* File times count 100 ns from 1601. */
#define TICKS_PER_SECOND 10000000ULL
#define SECONDS_TO_1970 11644473600ULL
#define TICKS_PER_DAY (86400 * TICKS_PER_SECOND)

static void record_call(void)
{
    const char* path = getenv("BENCH_CALLS");
    FILE* file = path ? fopen(path, "a") : NULL;
    struct timespec t;
    if (!file)
        return;
    clock_gettime(CLOCK_MONOTONIC, &t);
    fprintf(file, "%.3f\n", t.tv_sec * 1e3 + t.tv_nsec / 1e6);
    fclose(file);
}

int main(int argc, char** argv)
{
    const char* lines = getenv("BENCH_LINES");
    record_call();
    for (int i = 1; i < argc; i++) {
        if (strcmp(argv[i], "base") == 0) {
            puts("dn:\nnamingContexts: DC=example,DC=org\nnamingContexts: CN=Configuration,DC=example,DC=org\n");
            return 0;
        }
        if (strcmp(argv[i], "wrong") == 0) {
            fputs("ldap_bind: Invalid credentials (49)\n\tadditional info: error, data 52e, v1\n", stderr);
            return 49;
        }
    }
    unsigned long long now = ((unsigned long long)time(NULL) + SECONDS_TO_1970) * TICKS_PER_SECOND;
    printf("dn: CN=user1,CN=Users,DC=example,DC=org\npwdLastSet: %llu\nmsDS-UserPasswordExpiryTimeComputed: %llu\n",
           now - 10 * TICKS_PER_DAY, now + 80 * TICKS_PER_DAY);
    for (long left = lines ? atol(lines) - 3 : 0; left > 0; left--)
        puts("description: a line of a user's entry");
    return 0;
}
