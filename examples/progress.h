/* A progress bar on a terminal, for work that lasts and may be interrupted. */
#ifndef PROGRESS_H
#define PROGRESS_H

#include <signal.h>
#include <stdbool.h>

typedef struct {
    const volatile sig_atomic_t *interrupted;
    double total, done;
    double started, drawn; /* times in seconds; drawn is 0 while no bar stands */
} Progress;

/* A steady clock, in seconds. */
double now(void);

Progress startProgress(double total, const volatile sig_atomic_t *interrupted);
/* False when the work was interrupted. */
bool advance(Progress *progress, double amount);
/* Takes the bar away. */
void finish(Progress *progress);

#endif
