/* wordlength INPUT
 *
 * Says what noise a recording gets when its samples are rounded to 8, 16 or 24 bits, with and
 * without dither: converts float samples to integers and back, and measures the difference.
 * Dither is the sum of two uniform random numbers of one step each; it frees the noise from the
 * signal for 4.8 dB more of it. INPUT is any file that libsndfile reads. */
#include <keps.h>
#include <sndfile.h>
#include <stdbool.h>
#include <stdio.h>

enum { BLOCK = 4096, LENGTHS = 3 };
static const int bitsOf[LENGTHS] = {8, 16, 24};

/* A stream of uniform random numbers in memory of its own. */
typedef struct {
    Kep8u *memory;
    KepRandUniformState *stream;
} Uniform;

static bool startUniform(Uniform *uniform, unsigned seed) {
    int size;
    *uniform = (Uniform){0};
    if (kepsRandUniformGetSize_32f(&size) != kepStatusOk) return false;
    uniform->memory = kepsMalloc_8u(size);
    uniform->stream = (KepRandUniformState *)uniform->memory;
    return uniform->memory &&
           kepsRandUniformInit_32f(uniform->stream, -0.5f, 0.5f, seed) == kepStatusOk;
}

/* Rounds samples between -1 and 1 to integers of so many bits, and makes them samples again.
 * A scale factor s divides an integer result by 2^s, so a negative one multiplies. */
static void roundTo(int bits, const Kep32f *samples, Kep32f *rounded, int count) {
    Kep8u integers[3 * BLOCK];
    const int scale = bits - 1;
    const Kep32f step = 1.0f / (Kep32f)(1 << scale);
    if (bits == 8) {
        kepsConvert_32f8s_Sfs(samples, (Kep8s *)integers, count, kepRoundNearest, -scale);
        kepsConvert_8s32f((Kep8s *)integers, rounded, count);
    } else if (bits == 16) {
        kepsConvert_32f16s_Sfs(samples, (Kep16s *)integers, count, kepRoundNearest, -scale);
        kepsConvert_16s32f((Kep16s *)integers, rounded, count);
    } else {
        kepsConvert_32f24s_Sfs(samples, integers, count, -scale);
        kepsConvert_24s32f(integers, rounded, count);
    }
    kepsMulC_32f_I(step, rounded, count);
}

/* The sum of squares of what rounding changed. */
static double errorOf(int bits, const Kep32f *samples, int count, Uniform dither[2]) {
    Kep32f rounded[BLOCK];
    if (dither) {
        const Kep32f step = 1.0f / (Kep32f)(1 << (bits - 1));
        Kep32f noise[BLOCK], more[BLOCK];
        kepsRandUniform_32f(noise, count, dither[0].stream);
        kepsRandUniform_32f(more, count, dither[1].stream);
        kepsAdd_32f_I(more, noise, count);
        kepsMulC_32f(samples, 1, rounded, count);
        kepsAddProductC_32f(noise, step, rounded, count);
        roundTo(bits, rounded, rounded, count);
    } else {
        roundTo(bits, samples, rounded, count);
    }
    kepsSub_32f_I(samples, rounded, count); /* rounded - samples */
    kepsSqr_32f_I(rounded, count);
    double sum = 0;
    for (int i = 0; i < count; ++i) sum += (double)rounded[i];
    return sum;
}

/* Turns powers into decibels. */
static void decibels(Kep32f *powers, int count) {
    kepsLn_32f_I(powers, count);
    kepsMulC_32f_I(4.34294482f, powers, count); /* 10 / ln 10 */
}

static void measure(SNDFILE *in, Uniform dither[2]) {
    double sums[2][LENGTHS] = {{0}};
    Kep32f samples[BLOCK];
    sf_count_t total = 0, count;
    while ((count = sf_read_float(in, samples, BLOCK)) > 0) {
        for (int k = 0; k < LENGTHS; ++k) {
            sums[0][k] += errorOf(bitsOf[k], samples, (int)count, NULL);
            sums[1][k] += errorOf(bitsOf[k], samples, (int)count, dither);
        }
        total += count;
    }
    /* What is exact already has no logarithm. */
    const double least = 1e-30;
    Kep32f powers[2 * LENGTHS];
    for (int k = 0; k < 2 * LENGTHS; ++k)
        powers[k] = (Kep32f)(sums[k / LENGTHS][k % LENGTHS] / (double)total + least);
    decibels(powers, 2 * LENGTHS);
    puts("bits   rounded   dithered   (noise, dB of full scale)");
    for (int k = 0; k < LENGTHS; ++k)
        printf("%4d %9.1f %10.1f\n", bitsOf[k], (double)powers[k], (double)powers[LENGTHS + k]);
}

int main(int argc, char **argv) {
    if (argc != 2) {
        fputs("usage: wordlength INPUT\n", stderr);
        return 1;
    }
    if (!__builtin_cpu_supports("avx")) {
        fputs("wordlength: this processor has no AVX, which the library needs\n", stderr);
        return 1;
    }
    SF_INFO info = {0};
    SNDFILE *in = sf_open(argv[1], SFM_READ, &info);
    if (!in || info.frames < 1) {
        fprintf(stderr, "wordlength: %s: %s\n", argv[1], in ? "is empty" : sf_strerror(NULL));
        if (in) sf_close(in);
        return 1;
    }
    Uniform dither[2];
    const bool started[2] = {startUniform(&dither[0], 1), startUniform(&dither[1], 2)};
    if (started[0] && started[1])
        measure(in, dither);
    else
        fputs("wordlength: not enough memory\n", stderr);
    kepsFree(dither[0].memory);
    kepsFree(dither[1].memory);
    sf_close(in);
    return started[0] && started[1] ? 0 : 1;
}
