/* Recordings in and out, by libsndfile: the checks before, sample types, and files that get their
 * name when they are whole. What fails says so in one line. */
#ifndef RECORDING_H
#define RECORDING_H

#include <sndfile.h>
#include <stdbool.h>

/* Prints one line on stderr. */
void complain(const char *format, ...);
/* The same as an expression, false. */
#define FAILED(...) (complain(__VA_ARGS__), false)

/* The recording at path, or NULL. */
SNDFILE *openInput(const char *path, SF_INFO *info);
bool sameFile(const char *a, const char *b);

typedef struct {
    const char *path;
    char *temporary;
    int descriptor;
} NewFile;

bool createFile(NewFile *file, const char *path);
/* Gives the file its name if it is whole, and removes it otherwise. */
bool finishFile(NewFile *file, bool whole);

/* libsndfile's subtype for the WAV of a recording in this format. */
int wavSampleType(int format);
/* The power of the error that rounding to a sample type makes. */
double roundingPower(int sampleType);

/* A WAV in the new file, of the sample type, rate and channels of another recording; or NULL. */
SNDFILE *openOutput(const NewFile *file, const SF_INFO *like);
/* Writes interleaved samples. Integers are rounded to nearest, in an array of as many that the
 * caller lends: libsndfile by itself would cut them off. Counts what goes beyond full scale. */
bool writeSamples(SNDFILE *out, int sampleType, const float *samples, int *rounded,
                  sf_count_t count, sf_count_t *clipped);

#endif
