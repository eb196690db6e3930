/* lowpass INPUT OUTPUT CUTOFF
 *
 * Filters a recording with a low-pass of 64 taps, block by block, measures what the filter did and
 * draws it. INPUT is any file that libsndfile reads; OUTPUT is a WAV of the same length, rate and
 * sample type; CUTOFF is in Hz. The picture lies beside OUTPUT. The filter delays by 31.5 samples.
 *
 * Exit status: 0 done; 1 refused or failed, with one line on stderr, and no file is left half
 * written; 2 written, but the measurement misses what such a filter reaches. */
#define _POSIX_C_SOURCE 200809L
#include <kepcore.h>
#include <keps.h>
#include <math.h>
#include <signal.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "picture.h"
#include "progress.h"
#include "recording.h"
#include "spectrum.h"

enum { TAPS = 64, HISTORY = TAPS - 1, BLOCK = 4096 };

static volatile sig_atomic_t interrupted;

static void onSignal(int number) {
    interrupted = number;
}

/* ---- The filter ---- */

/* A windowed sinc: the ideal low-pass, cut to 64 taps by a Hamming window, with a gain of 1 at
 * 0 Hz. taps[0] meets the newest sample, but the taps are symmetric. */
static void designLowPass(double cutoff, double rate, Kep32f taps[TAPS]) {
    const double pi = 3.14159265358979323846;
    double ideal[TAPS], sum = 0;
    for (int i = 0; i < TAPS; ++i) {
        const double t = i - HISTORY / 2.0; /* never 0: the middle lies between two taps */
        const double window = 0.54 - 0.46 * cos(2 * pi * i / HISTORY);
        ideal[i] = window * sin(2 * pi * cutoff / rate * t) / (pi * t);
        sum += ideal[i];
    }
    for (int i = 0; i < TAPS; ++i) taps[i] = (Kep32f)(ideal[i] / sum);
}

/* What one channel needs of its own: a block in and out, and the two delay vectors, the last 63
 * samples before the block and, after it, the last 63 up to its end. */
typedef struct {
    Kep32f in[BLOCK], out[BLOCK];
    Kep32f delay[2][HISTORY];
} Channel;

/* The taps, prepared, are shared by all channels; so is the work buffer, since the channels run one
 * after the other. */
typedef struct {
    Kep8u *spec, *work;
    Channel *channel;
    Kep32f *frames; /* a block as it stands in a file, channels interleaved */
    int *rounded;   /* the same as integers */
    int channels;
} Filter;

static void freeFilter(Filter *filter) {
    kepsFree(filter->rounded);
    kepsFree(filter->frames);
    kepsFree(filter->channel);
    kepsFree(filter->work);
    kepsFree(filter->spec);
}

static bool makeFilter(Filter *filter, double cutoff, const SF_INFO *info) {
    Kep32f taps[TAPS];
    designLowPass(cutoff, info->samplerate, taps);
    *filter = (Filter){.channels = info->channels};

    int specSize, workSize;
    KepStatus status = kepsFIRSRGetSize(TAPS, kepType32f, &specSize, &workSize);
    if (status != kepStatusOk) return FAILED("%s", kepGetStatusString(status));
    filter->spec = kepsMalloc_8u(specSize);
    filter->work = kepsMalloc_8u(workSize);
    filter->frames = kepsMalloc_32f_L((int64_t)info->channels * BLOCK);
    filter->rounded = kepsMalloc_32s_L((int64_t)info->channels * BLOCK);
    filter->channel = kepMalloc_L(info->channels * (int64_t)sizeof(Channel));
    if (!filter->spec || !filter->work || !filter->frames || !filter->rounded || !filter->channel) {
        freeFilter(filter);
        return FAILED("not enough memory");
    }
    /* Before the recording begins there was silence. */
    for (int c = 0; c < filter->channels; ++c) kepsZero_32f(filter->channel[c].delay[0], HISTORY);
    status = kepsFIRSRInit_32f(taps, TAPS, kepAlgorithmAuto, filter->spec);
    if (status != kepStatusOk) {
        freeFilter(filter);
        return FAILED("%s", kepGetStatusString(status));
    }
    return true;
}

/* What running the filter brought to light. */
typedef struct {
    sf_count_t frames;
    double seconds;     /* inside the library */
    sf_count_t clipped; /* samples beyond what the sample type holds */
} Run;

static bool runFilter(Filter *filter, SNDFILE *in, SNDFILE *out, int sampleType, Run *run,
                      Progress *progress) {
    int old = 0; /* which of the two delay vectors holds the past */
    const int channels = filter->channels;
    sf_count_t got;
    while ((got = sf_readf_float(in, filter->frames, BLOCK)) > 0) {
        const int length = (int)got;
        for (int c = 0; c < channels; ++c) {
            Channel *channel = &filter->channel[c];
            for (int i = 0; i < length; ++i) channel->in[i] = filter->frames[i * channels + c];

            const double start = now();
            const KepStatus status =
                kepsFIRSR_32f(channel->in, channel->out, length, filter->spec, channel->delay[old],
                              channel->delay[1 - old], filter->work);
            run->seconds += now() - start;
            if (status != kepStatusOk) return FAILED("%s", kepGetStatusString(status));

            for (int i = 0; i < length; ++i) filter->frames[i * channels + c] = channel->out[i];
        }
        old = 1 - old;
        if (!writeSamples(out, sampleType, filter->frames, filter->rounded, got * channels,
                          &run->clipped))
            return false;
        run->frames += got;
        if (!advance(progress, (double)got)) return FAILED("interrupted");
    }
    return sf_error(in) == SF_ERR_NO_ERROR || FAILED("cannot read on: %s", sf_strerror(in));
}

static bool writeFiltered(SNDFILE *in, const SF_INFO *info, const char *path, double cutoff,
                          Run *run, Progress *progress) {
    Filter filter;
    NewFile file;
    if (!makeFilter(&filter, cutoff, info)) return false;
    bool fine = createFile(&file, path);
    if (fine) {
        SNDFILE *out = openOutput(&file, info);
        fine = out && runFilter(&filter, in, out, wavSampleType(info->format), run, progress);
        if (fine && run->frames != info->frames)
            fine = FAILED("the recording breaks off after %lld of %lld samples",
                          (long long)run->frames, (long long)info->frames);
        if (out && sf_close(out) != 0 && fine) fine = FAILED("%s: cannot be completed", path);
        if (close(file.descriptor) != 0 && fine) fine = FAILED("%s: cannot be completed", path);
        fine = finishFile(&file, fine);
    }
    freeFilter(&filter);
    return fine;
}

/* ---- The measurement ---- */

/* The bands that a 64-tap Hamming design settles: its transition is 3.3 / 64 of the rate wide. */
static Bands bandsOf(double cutoff, double rate) {
    const double transition = 3.5 * rate / TAPS;
    return (Bands){cutoff - transition, cutoff + transition};
}

/* Prints what the filter did; true when it is what a filter of this kind reaches. */
static bool report(const Spectrum *before, const Spectrum *after, const Bands *bands,
                   double rounding) {
    const double wantedDown = 40, allowedOff = 0.5;
    const double nyquist = before->rate / 2, margin = 3;
    bool fine = true;
    if (bands->stop >= nyquist)
        printf("stop band   none: the cut-off is too close to half the rate\n");
    else {
        const double input = powerBetween(before, bands->stop, nyquist);
        const double noise = rounding * (1 - bands->stop / nyquist);
        const double down = decibels(input) - decibels(powerBetween(after, bands->stop, nyquist));
        printf("stop band   %.0f to %.0f Hz: ", bands->stop, nyquist);
        if (decibels(input) - decibels(noise) < wantedDown + margin)
            printf("the input has too little there to measure by\n");
        else {
            printf("%.1f dB below the input (at least %.0f wanted)\n", down, wantedDown);
            fine = down >= wantedDown;
        }
    }
    if (bands->pass <= 0)
        printf("pass band   none: the cut-off is too close to 0 Hz\n");
    else {
        const double off = worstDeviation(before, after, bands->pass, rounding);
        printf("pass band   0 to %.0f Hz: within %.3f dB (at most %.1f allowed)\n", bands->pass,
               off, allowedOff);
        fine = fine && off <= allowedOff;
    }
    return fine;
}

/* The picture's name is the output's, with .png in the place of .wav. */
static char *picturePath(const char *output) {
    const size_t length = strlen(output), size = length + sizeof ".png";
    const bool isWav = length > 4 && strcmp(output + length - 4, ".wav") == 0;
    char *path = malloc(size);
    if (path) snprintf(path, size, "%.*s.png", (int)(isWav ? length - 4 : length), output);
    return path;
}

/* Without gnuplot there is no picture; the rest stands. */
static bool draw(const Spectrum *before, const Spectrum *after, double cutoff, const char *output,
                 const char *input) {
    char *path = picturePath(output);
    NewFile file;
    bool fine = path != NULL;
    if (fine && sameFile(path, input)) fine = FAILED("%s: the picture is the input", path);
    if (fine) fine = createFile(&file, path);
    if (fine) {
        fine = drawPicture(file.descriptor, before, after, cutoff);
        close(file.descriptor);
        if (!fine) complain("no picture: gnuplot is missing or failed");
        fine = finishFile(&file, fine);
    }
    if (fine) printf("picture     %s\n", path);
    free(path);
    return fine;
}

/* Measures both files as they lie on the disk, so the rounding to the sample type is in it. */
static int measure(const char *input, const char *output, double cutoff, const SF_INFO *info,
                   Progress *progress) {
    /* The filter's delay is skipped, so that both are measured over the same sound. */
    const int delay = TAPS / 2;
    if (info->frames < FFT_SIZE + delay) {
        printf("too short to measure: that takes %d samples\n", FFT_SIZE + delay);
        return 0;
    }
    int result = 1;
    Spectrum *before = newSpectrum(info->samplerate, info->frames - delay);
    Spectrum *after = newSpectrum(info->samplerate, info->frames - delay);
    const bool measured = before && after && measureSpectrum(before, input, 0, progress) &&
                          measureSpectrum(after, output, delay, progress);
    finish(progress);
    if (measured) {
        const Bands bands = bandsOf(cutoff, info->samplerate);
        result = report(before, after, &bands, roundingPower(wavSampleType(info->format))) ? 0 : 2;
        if (!draw(before, after, cutoff, output, input)) result = 1;
    } else
        complain(interrupted ? "interrupted" : "the output is written, but cannot be measured");
    freeSpectrum(before);
    freeSpectrum(after);
    return result;
}

/* ---- The program ---- */

static bool parseCutoff(const char *text, double rate, double *cutoff) {
    char *end;
    *cutoff = strtod(text, &end);
    if (end == text || *end != 0) return FAILED("the cut-off \"%s\" is not a number", text);
    if (!(*cutoff > 0 && *cutoff < rate / 2))
        return FAILED("the cut-off %s Hz is not between 0 and %g Hz, half the rate", text,
                      rate / 2);
    return true;
}

static int run(const char *input, const char *output, const char *cutoffText) {
    SF_INFO info;
    SNDFILE *in = openInput(input, &info);
    if (!in) return 1;
    double cutoff;
    bool fine = parseCutoff(cutoffText, info.samplerate, &cutoff);
    if (fine && sameFile(input, output)) fine = FAILED("%s: the output is the input", output);

    Run run = {0};
    /* The recording is gone through three times: filtered, and both files measured. */
    Progress progress = startProgress(3.0 * (double)info.frames, &interrupted);
    if (fine) fine = writeFiltered(in, &info, output, cutoff, &run, &progress);
    sf_close(in);
    finish(&progress);
    if (!fine) return 1;

    const double samples = (double)run.frames * info.channels;
    const double length = (double)run.frames / info.samplerate;
    printf("recording   %s\n", input);
    printf("            %.2f s, %d Hz, %d channel%s\n", length, info.samplerate, info.channels,
           info.channels == 1 ? "" : "s");
    printf("low-pass    %d taps, cut-off %g Hz\n", TAPS, cutoff);
    printf("filtering   %.2f ns per sample, %.0f times real time\n", 1e9 * run.seconds / samples,
           length / run.seconds);
    if (run.clipped > 0) printf("clipped     %lld samples\n", (long long)run.clipped);
    printf("output      %s\n", output);
    fflush(stdout);
    return measure(input, output, cutoff, &info, &progress);
}

int main(int argc, char **argv) {
    if (argc != 4) {
        fputs("usage: lowpass INPUT OUTPUT CUTOFF_IN_HZ\n", stderr);
        return 1;
    }
    if (!__builtin_cpu_supports("avx")) {
        complain("this processor has no AVX, which the library needs");
        return 1;
    }
    /* Interrupted, the program removes what it has begun; writing to a gnuplot that has gone is an
     * error like any other. */
    const struct sigaction stop = {.sa_handler = onSignal, .sa_flags = SA_RESTART},
                           ignore = {.sa_handler = SIG_IGN};
    sigaction(SIGINT, &stop, NULL);
    sigaction(SIGTERM, &stop, NULL);
    sigaction(SIGHUP, &stop, NULL);
    sigaction(SIGPIPE, &ignore, NULL);
    return run(argv[1], argv[2], argv[3]);
}
