#include "spectrum.h"

#include <kepcore.h>
#include <keps.h>
#include <math.h>
#include <stdlib.h>
#include <string.h>

/* A plan, its work buffer and the arrays of one transform. */
typedef struct {
    KepsFftPlan *plan;
    Kep8u *planMemory, *work;
    Kep32f *window, *windowed, *bins;
} Transform;

static void freeTransform(Transform *transform) {
    kepsFree(transform->planMemory);
    kepsFree(transform->work);
    kepsFree(transform->window);
    kepsFree(transform->windowed);
    kepsFree(transform->bins);
}

static bool makeTransform(Transform *transform) {
    *transform = (Transform){0};
    int planSize, initSize, workSize;
    if (kepsFFTGetSize_R_32f(FFT_ORDER, kepFftScaleNone, 0, &planSize, &initSize, &workSize) !=
        kepStatusOk)
        return false;
    transform->planMemory = kepsMalloc_8u(planSize);
    transform->work = kepsMalloc_8u(workSize > 0 ? workSize : 1);
    transform->window = kepsMalloc_32f(FFT_SIZE);
    transform->windowed = kepsMalloc_32f(FFT_SIZE);
    transform->bins = kepsMalloc_32f(FFT_SIZE + 2);
    Kep8u *initMemory = kepsMalloc_8u(initSize > 0 ? initSize : 1); /* for the Init call alone */
    const bool fine = transform->planMemory && transform->work && transform->window &&
                      transform->windowed && transform->bins && initMemory &&
                      kepsFFTInit_R_32f(&transform->plan, FFT_ORDER, kepFftScaleNone, 0,
                                        transform->planMemory, initMemory) == kepStatusOk;
    kepsFree(initMemory);
    if (!fine) {
        freeTransform(transform);
        return false;
    }
    /* A Hann window, scaled so that the powers of all bins add up to the mean square. */
    const double step = 2 * 3.14159265358979323846 / FFT_SIZE;
    const double scale = sqrt(2 / 0.375) / FFT_SIZE;
    for (int i = 0; i < FFT_SIZE; ++i)
        transform->window[i] = (Kep32f)(scale * (0.5 - 0.5 * cos(step * i)));
    return true;
}

/* Adds the powers of one frame's bins. CCS lays them out as real, imaginary, real and so on. */
static bool addFrame(Transform *transform, const Kep32f *samples, double power[FFT_BINS]) {
    for (int i = 0; i < FFT_SIZE; ++i) transform->windowed[i] = samples[i] * transform->window[i];
    if (kepsFFTFwd_RToCCS_32f(transform->windowed, transform->bins, transform->plan,
                              transform->work) != kepStatusOk)
        return false;
    for (int k = 0; k < FFT_BINS; ++k) {
        const double re = transform->bins[2 * k], im = transform->bins[2 * k + 1];
        /* 0 Hz and half the rate have no mirror image to share their power with. */
        const double share = k == 0 || k == FFT_BINS - 1 ? 0.5 : 1;
        power[k] += share * (re * re + im * im);
    }
    return true;
}

Spectrum *newSpectrum(double rate, sf_count_t samples) {
    Spectrum *spectrum = calloc(1, sizeof *spectrum);
    if (!spectrum) return NULL;
    spectrum->rate = rate;
    /* Whole frames alone: a frame that the end cuts would smear over all bins. */
    spectrum->frames = 1 + (samples - FFT_SIZE) / FFT_HOP;
    spectrum->columns =
        (int)(spectrum->frames < IMAGE_MOST_COLUMNS ? spectrum->frames : IMAGE_MOST_COLUMNS);
    spectrum->image = calloc((size_t)spectrum->columns * IMAGE_ROWS, sizeof *spectrum->image);
    if (!spectrum->image) {
        free(spectrum);
        return NULL;
    }
    return spectrum;
}

void freeSpectrum(Spectrum *spectrum) {
    if (spectrum) free(spectrum->image);
    free(spectrum);
}

/* Frames overlap by half. Where there are more of them than columns, a column is the mean of
 * those that fall into it. */
static bool measureFrames(Spectrum *spectrum, SNDFILE *file, const SF_INFO *info,
                          Transform *transform, Kep32f *read, Kep32f *channels,
                          Progress *progress) {
    const sf_count_t frames = spectrum->frames;
    int inColumn = 0, wanted = FFT_SIZE;
    double column[FFT_BINS] = {0};
    for (sf_count_t frame = 0; frame < frames; ++frame) {
        if (sf_readf_float(file, read, wanted) != wanted) return false;
        for (int c = 0; c < info->channels; ++c) {
            Kep32f *samples = channels + (size_t)c * FFT_SIZE;
            memmove(samples, samples + wanted, (size_t)(FFT_SIZE - wanted) * sizeof *samples);
            for (int i = 0; i < wanted; ++i)
                samples[FFT_SIZE - wanted + i] = read[i * info->channels + c];
            if (!addFrame(transform, samples, column)) return false;
        }
        ++inColumn;
        if (!advance(progress, wanted)) return false;
        wanted = FFT_HOP;

        const sf_count_t at = frame * spectrum->columns / frames;
        if (frame + 1 < frames && (frame + 1) * spectrum->columns / frames == at) continue;
        for (int row = 0; row < IMAGE_ROWS; ++row) {
            enum { STEP = (FFT_BINS - 1) / IMAGE_ROWS };
            double sum = 0;
            for (int k = 0; k < STEP; ++k) sum += column[row * STEP + k];
            spectrum->image[row * spectrum->columns + at] =
                (float)(sum / (STEP * inColumn * info->channels));
        }
        for (int k = 0; k < FFT_BINS; ++k)
            spectrum->power[k] += column[k] / ((double)frames * info->channels);
        memset(column, 0, sizeof column);
        inColumn = 0;
    }
    return true;
}

bool measureSpectrum(Spectrum *spectrum, const char *path, int skip, Progress *progress) {
    SF_INFO info = {0};
    SNDFILE *file = sf_open(path, SFM_READ, &info);
    if (!file) return false;
    Kep32f *read = kepsMalloc_32f_L((int64_t)info.channels * FFT_SIZE);
    Kep32f *channels = kepsMalloc_32f_L((int64_t)info.channels * FFT_SIZE);
    Transform transform;
    bool fine = false;
    if (read && channels && makeTransform(&transform)) {
        fine = sf_seek(file, skip, SEEK_SET) == skip &&
               measureFrames(spectrum, file, &info, &transform, read, channels, progress);
        freeTransform(&transform);
    }
    kepsFree(read);
    kepsFree(channels);
    sf_close(file);
    return fine;
}

double decibels(double power) {
    return 10 * log10(power + 1e-30);
}

double powerBetween(const Spectrum *spectrum, double from, double to) {
    const double binWidth = spectrum->rate / FFT_SIZE;
    double sum = 0;
    for (int k = (int)ceil(from / binWidth); k < FFT_BINS && k * binWidth <= to; ++k)
        sum += spectrum->power[k];
    return sum;
}

double worstDeviation(const Spectrum *before, const Spectrum *after, double to, double noise) {
    /* By bands: 64 taps cannot change their gain within a quarter of rate / 64, and the weak bins
     * beside a strong tone hold little but what leaks out of it. */
    enum { BAND = FFT_SIZE / (4 * 64) };
    const double clear = 1e3 * noise * BAND / FFT_BINS, binWidth = before->rate / FFT_SIZE;
    double worst = 0;
    for (int k = 0; (k + BAND - 1) * binWidth <= to; k += BAND) {
        double was = 0, is = 0;
        for (int i = k; i < k + BAND; ++i) {
            was += before->power[i];
            is += after->power[i];
        }
        if (was <= clear) continue;
        const double off = fabs(decibels(is) - decibels(was));
        if (off > worst) worst = off;
    }
    return worst;
}
