/* The mean spectrum of a recording and its course over time, by the library's real FFT. */
#ifndef SPECTRUM_H
#define SPECTRUM_H

#include <sndfile.h>
#include <stdbool.h>

#include "progress.h"

enum {
    FFT_ORDER = 11,
    FFT_SIZE = 1 << FFT_ORDER,
    FFT_HOP = FFT_SIZE / 2,
    FFT_BINS = FFT_SIZE / 2 + 1,
    IMAGE_ROWS = 256, /* each the mean of four bins */
    IMAGE_MOST_COLUMNS = 600
};

typedef struct {
    double rate;
    double power[FFT_BINS]; /* mean square per bin, over time and channels */
    float *image;           /* the spectrogram: IMAGE_ROWS rows of columns, mean squares per bin */
    int columns;
    sf_count_t frames;
} Spectrum;

/* Upper end of the pass band and lower end of the stop band in Hz. */
typedef struct {
    double pass, stop;
} Bands;

/* A spectrum for this many samples a channel, at least FFT_SIZE; or NULL. */
Spectrum *newSpectrum(double rate, sf_count_t samples);
void freeSpectrum(Spectrum *spectrum);
/* Measures the file at path from the sample skip on; false when it cannot or is interrupted. */
bool measureSpectrum(Spectrum *spectrum, const char *path, int skip, Progress *progress);

double decibels(double power);
/* The power between two frequencies in Hz. */
double powerBetween(const Spectrum *spectrum, double from, double to);
/* The largest deviation in dB from 0 Hz to an upper frequency, among the bands that stand well
 * clear of a noise of this power. */
double worstDeviation(const Spectrum *before, const Spectrum *after, double to, double noise);
#endif
