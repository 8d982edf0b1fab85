/* SPDX-FileCopyrightText: 2026 The qorm-login authors */
/* SPDX-License-Identifier: MIT */
/*
 * watchstart COMMAND [ARGUMENT]...
 *
 * Starts a program and prints one line of JSON: its process id and, in ms from just before the fork, when its first
 * window was mapped, when the first frame was painted (two colours, most of the background covered) and the last change
 * of pixels before QUIET_MS without one. Then obeys lines of standard input:
 *   key                     presses a key and prints the ms to changed pixels (0: none)
 *   login USER PASSWORD     types both, and prints when Return was pressed and when the program ended (monotonic ms),
 *                           and its exit status
 *   refusal USER PASSWORD   the same until the program maps another window; the status is 0 when it did
 * At the end of the input it ends the program.
 */
#define _GNU_SOURCE
#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xdamage.h>
#include <X11/keysym.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#define ROOT_COLOUR 0xff00ffUL /* a colour that no dialog uses */
#define QUIET_MS 300           /* a caret blinks more slowly */
#define START_LIMIT_MS 60000
#define KEY_LIMIT_MS 1000
#define LOGIN_LIMIT_S 60
#define TYPING_PAUSE_US 20000

static Display* dpy;
static int damage_notify;
static Window window; /* the program's first one of a visible size */
static double mapped;
static uint64_t last_hash;

static double now_ms(void)
{
    struct timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

/* A window can be gone by the time it is asked about. */
static int ignore_error(Display* d, XErrorEvent* e)
{
    (void)d;
    (void)e;
    return 0;
}

static void open_display(void)
{
    int error_base;
    dpy = XOpenDisplay(NULL);
    if (!dpy || !XDamageQueryExtension(dpy, &damage_notify, &error_base))
        exit(2);
    damage_notify += XDamageNotify;
    XSetErrorHandler(ignore_error);
    Window root = DefaultRootWindow(dpy);
    XSetWindowBackground(dpy, root, ROOT_COLOUR);
    XClearWindow(dpy, root);
    XSelectInput(dpy, root, SubstructureNotifyMask);
    XDamageCreate(dpy, root, XDamageReportRawRectangles);
    XSync(dpy, True);
}

/* Helper windows (1x1, owners of the clipboard) do not count. */
static int is_visible_size(Window candidate)
{
    XWindowAttributes a;
    return XGetWindowAttributes(dpy, candidate, &a) && a.width >= 50 && a.height >= 20;
}

/* Waits for events, at most so long, and takes all there are; when the last change of pixels was reported, or 0. */
static double next_damage(int wait_ms)
{
    struct pollfd ready = {ConnectionNumber(dpy), POLLIN, 0};
    double at = 0;
    if (!XPending(dpy))
        poll(&ready, 1, wait_ms);
    while (XPending(dpy)) {
        XEvent e;
        XNextEvent(dpy, &e);
        if (e.type == MapNotify && !window && is_visible_size(e.xmap.window)) {
            mapped = now_ms();
            window = e.xmap.window;
            XSetInputFocus(dpy, window, RevertToPointerRoot, CurrentTime); /* as a window manager would */
        }
        if (e.type == damage_notify || e.type == MapNotify)
            at = now_ms();
    }
    return at;
}

/* Whether the window's pixels differ from the last look; *painted when they show a frame. */
static int look(int* painted)
{
    XWindowAttributes a;
    if (!window || !XGetWindowAttributes(dpy, window, &a))
        return 0;
    XImage* image = XGetImage(dpy, window, 0, 0, a.width, a.height, AllPlanes, ZPixmap);
    if (!image)
        return 0;
    const uint32_t* pixels = (const uint32_t*)image->data; /* depth 24 */
    uint64_t hash = 14695981039346656037ULL;               /* FNV-1a */
    long bare = 0, count = (long)a.width * a.height;
    int colours = 1;
    for (long i = 0; i < count; i++) {
        uint32_t colour = pixels[i] & 0xffffff;
        hash = (hash ^ colour) * 1099511628211ULL;
        bare += colour == ROOT_COLOUR;
        colours |= (colour != (pixels[0] & 0xffffff)) << 1;
    }
    *painted = colours > 1 && bare * 2 < count;
    XDestroyImage(image);
    int changed = hash != last_hash;
    last_hash = hash;
    return changed;
}

static pid_t start(char** command)
{
    pid_t child = fork();
    if (child)
        return child;
    int null = open("/dev/null", O_RDWR);
    dup2(null, 0);
    dup2(null, 1);
    dup2(null, 2);
    close(ConnectionNumber(dpy));
    execvp(command[0], command);
    _exit(127);
}

/* False when the program has ended, or has shown nothing for too long. */
static int watch(pid_t child, double from)
{
    double painted = 0, changed = 0;
    while (now_ms() - from < START_LIMIT_MS && waitpid(child, NULL, WNOHANG) == 0) {
        int is_frame;
        double at = next_damage(painted ? 5 : 50);
        if (at && look(&is_frame)) {
            changed = at;
            if (is_frame && !painted)
                painted = at;
        }
        if (painted && now_ms() - changed >= QUIET_MS) {
            printf("{\"pid\": %d, \"map\": %.2f, \"paint\": %.2f, \"settle\": %.2f}\n", child, mapped - from,
                   painted - from, changed - from);
            return 1;
        }
    }
    return 0;
}

static void press(KeySym key)
{
    KeyCode code = XKeysymToKeycode(dpy, key), shift = XKeysymToKeycode(dpy, XK_Shift_L);
    int is_shifted = XkbKeycodeToKeysym(dpy, code, 0, 0) != key;
    if (is_shifted)
        XTestFakeKeyEvent(dpy, shift, True, 0);
    XTestFakeKeyEvent(dpy, code, True, 0);
    XTestFakeKeyEvent(dpy, code, False, 0);
    if (is_shifted)
        XTestFakeKeyEvent(dpy, shift, False, 0);
    XFlush(dpy);
}

static void type(const char* text)
{
    for (; *text; text++) {
        press((KeySym)(unsigned char)*text);
        usleep(TYPING_PAUSE_US);
    }
}

static double key_echo(void)
{
    int is_frame;
    double from = now_ms();
    press(XK_a);
    while (now_ms() - from < KEY_LIMIT_MS) {
        double at = next_damage(20);
        if (at && look(&is_frame))
            return at - from;
    }
    return 0;
}

/* Types both and presses Return; when that was. */
static double sign_in(const char* user, const char* password)
{
    type(user);
    press(XK_Tab);
    usleep(TYPING_PAUSE_US);
    type(password);
    usleep(QUIET_MS * 1000);
    double from = now_ms();
    press(XK_Return);
    return from;
}

static void print_outcome(double from, double to, int status)
{
    printf("{\"from\": %.3f, \"to\": %.3f, \"status\": %d}\n", from, to, status);
}

static void watch_login(pid_t child, const char* user, const char* password)
{
    int status;
    double from = sign_in(user, password);
    alarm(LOGIN_LIMIT_S); /* or it would wait for ever for the end of a program that shows a refusal */
    waitpid(child, &status, 0);
    print_outcome(from, now_ms(), WIFEXITED(status) ? WEXITSTATUS(status) : -1);
}

static void watch_refusal(const char* user, const char* password)
{
    window = None;
    double from = sign_in(user, password);
    while (!window && now_ms() - from < START_LIMIT_MS)
        next_damage(50);
    print_outcome(from, mapped, !window);
}

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    setvbuf(stdout, NULL, _IOLBF, 0);
    open_display();
    double from = now_ms();
    pid_t child = start(argv + 1);
    int alive = watch(child, from);
    char line[256], user[64], password[64];
    while (alive && fgets(line, sizeof line, stdin)) {
        if (sscanf(line, "login %63s %63s", user, password) == 2) {
            watch_login(child, user, password);
            return 0;
        }
        if (sscanf(line, "refusal %63s %63s", user, password) == 2) {
            watch_refusal(user, password);
        } else {
            next_damage(0);
            printf("%.2f\n", key_echo());
        }
    }
    kill(child, SIGKILL);
    waitpid(child, NULL, 0);
    return !alive;
}
