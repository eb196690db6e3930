/* lowpass INPUT OUTPUT CUTOFF
 *
 * Filters a recording with a low-pass of 64 taps, block by block, measures what the filter did and
 * draws it. INPUT is any file that libsndfile reads; OUTPUT is a WAV of the same length, rate and
 * sample type; CUTOFF is in Hz. The picture lies beside OUTPUT. The filter delays by 31.5 samples.
 *
 * Exit status: 0 done; 1 refused or failed, with one line on stderr, and no file is left half
 * written; 2 written, but the measurement misses what such a filter reaches. */
#define _POSIX_C_SOURCE 200809L
#include <errno.h>
#include <fcntl.h>
#include <kepcore.h>
#include <keps.h>
#include <math.h>
#include <signal.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "picture.h"
#include "progress.h"
#include "spectrum.h"

enum { TAPS = 64, HISTORY = TAPS - 1, BLOCK = 4096 };

static volatile sig_atomic_t interrupted;

static void onSignal(int number) {
    interrupted = number;
}

/* One line on stderr; false, so that callers can return it. */
static bool complain(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    /* On a terminal a progress bar may stand on the line. */
    fputs(isatty(STDERR_FILENO) ? "\r\033[Klowpass: " : "lowpass: ", stderr);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
    return false;
}

/* ---- Sample types ---- */

/* A WAV keeps these sample types as they are; what a lossy or odd codec decodes to is kept best as
 * floats. */
static int wavSampleType(int format) {
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
        return SF_FORMAT_PCM_U8; /* the only 8-bit type in a WAV */
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_DOUBLE:
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
        return format & SF_FORMAT_SUBMASK;
    default:
        return SF_FORMAT_FLOAT;
    }
}

/* Bits of an integer sample, 0 for floats. The two companded types are coded from 16 bits. */
static int bitsOf(int sampleType) {
    switch (sampleType) {
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE:
        return 0;
    case SF_FORMAT_PCM_U8:
        return 8;
    case SF_FORMAT_PCM_24:
        return 24;
    case SF_FORMAT_PCM_32:
        return 32;
    default:
        return 16;
    }
}

/* The power of the error that rounding to a sample type makes. */
static double roundingPower(int sampleType) {
    int bits = bitsOf(sampleType);
    if (sampleType == SF_FORMAT_ULAW || sampleType == SF_FORMAT_ALAW) bits = 8;
    if (bits == 0 || bits > 24) bits = 24; /* what the filter computes with */
    const double step = ldexp(1, 1 - bits);
    return step * step / 12;
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
    if (status != kepStatusOk) return complain("%s", kepGetStatusString(status));
    filter->spec = kepsMalloc_8u(specSize);
    filter->work = kepsMalloc_8u(workSize);
    filter->frames = kepsMalloc_32f_L((int64_t)info->channels * BLOCK);
    filter->rounded = kepsMalloc_32s_L((int64_t)info->channels * BLOCK);
    filter->channel = kepMalloc_L(info->channels * (int64_t)sizeof(Channel));
    if (!filter->spec || !filter->work || !filter->frames || !filter->rounded || !filter->channel) {
        freeFilter(filter);
        return complain("not enough memory");
    }
    /* Before the recording begins there was silence. */
    for (int c = 0; c < filter->channels; ++c) kepsZero_32f(filter->channel[c].delay[0], HISTORY);
    status = kepsFIRSRInit_32f(taps, TAPS, kepAlgorithmAuto, filter->spec);
    if (status != kepStatusOk) {
        freeFilter(filter);
        return complain("%s", kepGetStatusString(status));
    }
    return true;
}

/* What running the filter brought to light. */
typedef struct {
    sf_count_t frames;
    double seconds;     /* inside the library */
    sf_count_t clipped; /* samples beyond what the sample type holds */
} Run;

/* Writes a block. Integers are rounded to nearest here, since libsndfile would cut them off; it
 * takes the upper bits of an int. */
static bool writeBlock(SNDFILE *out, Filter *filter, int length, int bits, Run *run) {
    if (bits == 0) return sf_writef_float(out, filter->frames, length) == length;
    const double full = ldexp(1, bits - 1);
    for (int i = 0; i < length * filter->channels; ++i) {
        const double sample = rint(filter->frames[i] * full);
        const double held = fmax(-full, fmin(full - 1, sample));
        run->clipped += sample != held;
        filter->rounded[i] = (int)ldexp(held, 32 - bits);
    }
    return sf_writef_int(out, filter->rounded, length) == length;
}

static bool runFilter(Filter *filter, SNDFILE *in, SNDFILE *out, int bits, Run *run,
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
            if (status != kepStatusOk) return complain("%s", kepGetStatusString(status));

            for (int i = 0; i < length; ++i) filter->frames[i * channels + c] = channel->out[i];
        }
        old = 1 - old;
        if (!writeBlock(out, filter, length, bits, run))
            return complain("cannot write the output: %s", sf_strerror(out));
        run->frames += got;
        if (!advance(progress, (double)got)) return complain("interrupted");
    }
    return sf_error(in) == SF_ERR_NO_ERROR || complain("cannot read on: %s", sf_strerror(in));
}

/* ---- Files ---- */

static SNDFILE *openInput(const char *path, SF_INFO *info) {
    struct stat is;
    SNDFILE *file = NULL;
    *info = (SF_INFO){0};
    if (stat(path, &is) != 0 || access(path, R_OK) != 0)
        complain("%s: %s", path, strerror(errno));
    else if (!S_ISREG(is.st_mode)) /* it is read twice */
        complain("%s: not a regular file", path);
    else if (!(file = sf_open(path, SFM_READ, info)))
        complain("%s: not a recording: %s", path, sf_strerror(NULL));
    else if (info->frames < 1) {
        complain("%s: the recording is empty", path);
        sf_close(file);
        file = NULL;
    }
    return file;
}

/* A file that gets its name only when it is whole. */
typedef struct {
    const char *path;
    char *temporary;
    int descriptor;
} NewFile;

static bool createFile(NewFile *file, const char *path) {
    static const char suffix[] = ".part-XXXXXX";
    struct stat is;
    if (stat(path, &is) == 0 && !S_ISREG(is.st_mode))
        return complain("%s: not a regular file", path);
    file->path = path;
    file->temporary = malloc(strlen(path) + sizeof suffix);
    if (!file->temporary) return complain("not enough memory");
    strcpy(file->temporary, path);
    strcat(file->temporary, suffix);
    file->descriptor = mkstemp(file->temporary);
    if (file->descriptor < 0) {
        free(file->temporary);
        return complain("%s: %s", path, strerror(errno));
    }
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(file->descriptor, 0666 & ~mask);
    return true;
}

/* Gives the file its name if it is whole, and removes it otherwise. */
static bool finishFile(NewFile *file, bool whole) {
    if (whole && rename(file->temporary, file->path) != 0)
        whole = complain("%s: %s", file->path, strerror(errno));
    if (!whole) unlink(file->temporary);
    free(file->temporary);
    return whole;
}

static bool sameFile(const char *a, const char *b) {
    struct stat isA, isB;
    return stat(a, &isA) == 0 && stat(b, &isB) == 0 && isA.st_dev == isB.st_dev &&
           isA.st_ino == isB.st_ino;
}

static bool writeFiltered(SNDFILE *in, const SF_INFO *info, const char *path, double cutoff,
                          Run *run, Progress *progress) {
    SF_INFO wav = {.samplerate = info->samplerate, .channels = info->channels};
    /* Past 4 GB a WAV cannot count its own bytes; RF64 is a WAV that can. */
    const bool isHuge = (double)info->frames * info->channels * 8 > 4e9;
    wav.format = (isHuge ? SF_FORMAT_RF64 : SF_FORMAT_WAV) | wavSampleType(info->format);

    Filter filter;
    NewFile file;
    if (!makeFilter(&filter, cutoff, info)) return false;
    bool fine = createFile(&file, path);
    if (fine) {
        SNDFILE *out = sf_open_fd(file.descriptor, SFM_WRITE, &wav, SF_FALSE);
        if (out) {
            if (isHuge) sf_command(out, SFC_RF64_AUTO_DOWNGRADE, NULL, SF_TRUE);
            fine =
                runFilter(&filter, in, out, bitsOf(wav.format & SF_FORMAT_SUBMASK), run, progress);
            if (fine && run->frames != info->frames)
                fine = complain("the recording breaks off after %lld of %lld samples",
                                (long long)run->frames, (long long)info->frames);
            if (sf_close(out) != 0 && fine) fine = complain("%s: cannot be completed", path);
        } else
            fine = complain("%s: %s", path, sf_strerror(NULL));
        if (close(file.descriptor) != 0 && fine) fine = complain("%s: %s", path, strerror(errno));
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
    const size_t length = strlen(output);
    char *path = malloc(length + sizeof ".png");
    if (!path) return NULL;
    strcpy(path, output);
    strcpy(length > 4 && strcmp(output + length - 4, ".wav") == 0 ? path + length - 4
                                                                  : path + length,
           ".png");
    return path;
}

/* Without gnuplot there is no picture; the rest stands. */
static bool draw(const Spectrum *before, const Spectrum *after, double cutoff, const char *output,
                 const char *input) {
    char *path = picturePath(output);
    NewFile file;
    bool fine = path != NULL;
    if (fine && sameFile(path, input)) fine = complain("%s: the picture is the input", path);
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
    if (end == text || *end != 0) return complain("the cut-off \"%s\" is not a number", text);
    if (!(*cutoff > 0 && *cutoff < rate / 2))
        return complain("the cut-off %s Hz is not between 0 and %g Hz, half the rate", text,
                        rate / 2);
    return true;
}

static int run(const char *input, const char *output, const char *cutoffText) {
    SF_INFO info;
    SNDFILE *in = openInput(input, &info);
    if (!in) return 1;
    double cutoff;
    bool fine = parseCutoff(cutoffText, info.samplerate, &cutoff);
    if (fine && sameFile(input, output)) fine = complain("%s: the output is the input", output);

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
