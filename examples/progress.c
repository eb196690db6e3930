#define _POSIX_C_SOURCE 200809L
#include "progress.h"

#include <stdio.h>
#include <time.h>
#include <unistd.h>

double now(void) {
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return (double)time.tv_sec + 1e-9 * (double)time.tv_nsec;
}

Progress startProgress(double total, const volatile sig_atomic_t *interrupted) {
    return (Progress){.interrupted = interrupted, .total = total, .started = now()};
}

static void draw(double part) {
    static const char full[] = "##################################################";
    const int width = sizeof full - 1, filled = (int)(part * width);
    fprintf(stderr, "\r[%.*s%*s] %3.0f %%", filled, full, width - filled, "", 100 * part);
    fflush(stderr);
}

bool advance(Progress *progress, double amount) {
    const double patience = 0.5, interval = 0.1, time = now();
    progress->done += amount;
    if (time - progress->started >= patience && time - progress->drawn >= interval &&
        isatty(STDERR_FILENO)) {
        const double part = progress->done / progress->total;
        draw(part < 1 ? part : 1);
        progress->drawn = time;
    }
    return !*progress->interrupted;
}

void finish(Progress *progress) {
    if (progress->drawn > 0) fputs("\r\033[K", stderr);
    progress->drawn = 0;
}
