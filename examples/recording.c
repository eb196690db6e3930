#define _POSIX_C_SOURCE 200809L
#include "recording.h"

#include <errno.h>
#include <math.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

void complain(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    /* On a terminal a progress bar may stand on the line. */
    fputs(isatty(STDERR_FILENO) ? "\r\033[Klowpass: " : "lowpass: ", stderr);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
}

/* A WAV keeps these sample types as they are; what a lossy or odd codec decodes to is kept best as
 * floats. */
int wavSampleType(int format) {
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

double roundingPower(int sampleType) {
    int bits = bitsOf(sampleType);
    if (sampleType == SF_FORMAT_ULAW || sampleType == SF_FORMAT_ALAW) bits = 8;
    if (bits == 0 || bits > 24) bits = 24; /* what the filter computes with */
    const double step = ldexp(1, 1 - bits);
    return step * step / 12;
}

SNDFILE *openInput(const char *path, SF_INFO *info) {
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

bool createFile(NewFile *file, const char *path) {
    static const char suffix[] = ".part-XXXXXX";
    struct stat is;
    if (stat(path, &is) == 0 && !S_ISREG(is.st_mode)) return FAILED("%s: not a regular file", path);
    const size_t size = strlen(path) + sizeof suffix;
    file->path = path;
    file->temporary = malloc(size);
    if (!file->temporary) return FAILED("not enough memory");
    snprintf(file->temporary, size, "%s%s", path, suffix);
    file->descriptor = mkstemp(file->temporary);
    if (file->descriptor < 0) {
        free(file->temporary);
        return FAILED("%s: %s", path, strerror(errno));
    }
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(file->descriptor, 0666 & ~mask);
    return true;
}

bool finishFile(NewFile *file, bool whole) {
    if (whole && rename(file->temporary, file->path) != 0)
        whole = FAILED("%s: %s", file->path, strerror(errno));
    if (!whole) unlink(file->temporary);
    free(file->temporary);
    return whole;
}

bool sameFile(const char *a, const char *b) {
    struct stat isA, isB;
    return stat(a, &isA) == 0 && stat(b, &isB) == 0 && isA.st_dev == isB.st_dev &&
           isA.st_ino == isB.st_ino;
}

SNDFILE *openOutput(const NewFile *file, const SF_INFO *like) {
    SF_INFO wav = {.samplerate = like->samplerate, .channels = like->channels};
    /* Past 4 GB a WAV cannot count its own bytes; RF64 is a WAV that can. */
    const bool isHuge = (double)like->frames * like->channels * 8 > 4e9;
    wav.format = (isHuge ? SF_FORMAT_RF64 : SF_FORMAT_WAV) | wavSampleType(like->format);
    SNDFILE *out = sf_open_fd(file->descriptor, SFM_WRITE, &wav, SF_FALSE);
    if (!out)
        complain("%s: %s", file->path, sf_strerror(NULL));
    else if (isHuge)
        sf_command(out, SFC_RF64_AUTO_DOWNGRADE, NULL, SF_TRUE);
    return out;
}

bool writeSamples(SNDFILE *out, int sampleType, const float *samples, int *rounded,
                  sf_count_t count, sf_count_t *clipped) {
    const int bits = bitsOf(sampleType);
    sf_count_t written;
    if (bits == 0)
        written = sf_write_float(out, samples, count);
    else {
        const double full = ldexp(1, bits - 1);
        for (sf_count_t i = 0; i < count; ++i) {
            const double sample = rint(samples[i] * full);
            const double held = fmax(-full, fmin(full - 1, sample));
            *clipped += sample != held;
            rounded[i] = (int)ldexp(held, 32 - bits); /* libsndfile takes the upper bits */
        }
        written = sf_write_int(out, rounded, count);
    }
    return written == count || FAILED("cannot write the output: %s", sf_strerror(out));
}
