/* SPDX-FileCopyrightText: 2026 The qorm-login authors */
/* SPDX-License-Identifier: MIT */
/*
 * spawnfloor HASHES
 *
 * The least that a good login costs: two calls of the directory client, one after the other, so many password hashes
 * by the system's preferred method, and 50 ms in which the last message is read. Prints the monotonic ms of start and
 * end as JSON.
 */
#define _GNU_SOURCE
#include <crypt.h>
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#define PAUSE_NS 50000000L

static double now_ms(void)
{
    struct timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

/* Runs the command, and reads its output to the end. */
static void run(char* const command[])
{
    int out[2];
    char buffer[4096];
    pid_t pid;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (pipe2(out, O_CLOEXEC) || posix_spawn_file_actions_adddup2(&actions, out[1], 1)
        || posix_spawnp(&pid, command[0], &actions, NULL, command, environ))
        exit(2);
    close(out[1]);
    while (read(out[0], buffer, sizeof buffer) > 0)
        ;
    close(out[0]);
    waitpid(pid, NULL, 0);
    posix_spawn_file_actions_destroy(&actions);
}

static void hash(void)
{
    static struct crypt_data data; /* too large for the stack */
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    crypt_gensalt_rn(NULL, 0, NULL, 0, setting, sizeof setting);
    crypt_r("secret1", setting, &data);
}

int main(int argc, char** argv)
{
    char* context[] = {"ldapsearch", "-LLL", "-x", "-H", "ldap://127.0.0.1:389", "-s", "base", "namingContexts", NULL};
    char* bound[] = {"ldapsearch",
                     "-LLL",
                     "-x",
                     "-H",
                     "ldap://127.0.0.1:389",
                     "-D",
                     "user1@example.org",
                     "-w",
                     "secret1",
                     "-b",
                     "DC=example,DC=org",
                     "(sAMAccountName=user1)",
                     "dn",
                     "pwdLastSet",
                     NULL};
    const struct timespec pause = {0, PAUSE_NS};
    double from = now_ms();
    run(context);
    run(bound);
    for (int left = argc > 1 ? atoi(argv[1]) : 0; left > 0; left--)
        hash();
    nanosleep(&pause, NULL);
    printf("{\"from\": %.3f, \"to\": %.3f, \"status\": 0}\n", from, now_ms());
    return 0;
}
