/* SPDX-FileCopyrightText: 2026 The qorm-login authors */
/* SPDX-License-Identifier: MIT */
/*
 * spawnfloor HASHES PAUSE [COMMAND [ARGUMENT]...] [-- COMMAND [ARGUMENT]...]...
 *
 * The least that a sign-in costs: the calls of the directory client, one after the other, so many password hashes by
 * the system's preferred method, and so many ms in which a message is read. Prints the monotonic ms of start and end as
 * JSON.
 */
#define _GNU_SOURCE
#include <crypt.h>
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#define NS_PER_MS 1000000L

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

/* The commands stand between "--", of which each becomes the end of its command. */
static void run_all(char** words)
{
    while (*words) {
        char** command = words;
        while (*words && strcmp(*words, "--") != 0)
            words++;
        if (*words)
            *words++ = NULL;
        run(command);
    }
}

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    const struct timespec pause = {0, atol(argv[2]) * NS_PER_MS};
    double from = now_ms();
    run_all(argv + 3);
    for (int left = atoi(argv[1]); left > 0; left--)
        hash();
    nanosleep(&pause, NULL);
    printf("{\"from\": %.3f, \"to\": %.3f, \"status\": 0}\n", from, now_ms());
    return 0;
}
