#define _POSIX_C_SOURCE 200809L
#include "picture.h"

#include <fcntl.h>
#include <math.h>
#include <spawn.h>
#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

/* The scale of the colours: from the loudest spot down over this many dB. */
static const double imageDepth = 90;

static double secondsOf(const Spectrum *spectrum) {
    return (double)spectrum->frames * FFT_HOP / spectrum->rate;
}

static void sendSpectrum(FILE *to, const char *name, const Spectrum *spectrum) {
    fprintf(to, "$%s << END\n", name);
    for (int k = 0; k < FFT_BINS; ++k)
        fprintf(to, "%g %.2f\n", k * spectrum->rate / FFT_SIZE / 1000,
                decibels(spectrum->power[k]));
    fputs("END\n", to);
}

/* Binary floats follow the plot command that reads them. */
static void sendImage(FILE *to, const Spectrum *spectrum) {
    const double perColumn = secondsOf(spectrum) / spectrum->columns;
    const double perRow = spectrum->rate / 2000 / IMAGE_ROWS;
    fprintf(to,
            "plot '-' binary array=(%d,%d) format='%%float' dx=%g dy=%g origin=(%g,%g) "
            "with image notitle\n",
            spectrum->columns, IMAGE_ROWS, perColumn, perRow, perColumn / 2, perRow / 2);
    for (int i = 0; i < IMAGE_ROWS * spectrum->columns; ++i) {
        const float level = (float)decibels(spectrum->image[i]);
        fwrite(&level, sizeof level, 1, to);
    }
}

static double loudestSpot(const Spectrum *spectrum) {
    float most = 0;
    for (int i = 0; i < IMAGE_ROWS * spectrum->columns; ++i) most = fmaxf(most, spectrum->image[i]);
    return decibels(most);
}

static void sendScript(FILE *to, const Spectrum *before, const Spectrum *after, double cutoff) {
    const double top = 10 * ceil(loudestSpot(before) / 10);
    const double nyquist = before->rate / 2000;
    sendSpectrum(to, "before", before);
    sendSpectrum(to, "after", after);
    fprintf(to,
            "set terminal pngcairo size 1400,1000 font 'sans,11' background 'white'\n"
            "set multiplot\n"
            "set tics out nomirror\n"
            "set lmargin at screen 0.07\n"
            "set rmargin at screen 0.93\n"
            "set tmargin at screen 0.95\n"
            "set bmargin at screen 0.58\n"
            "set title 'Mean spectrum'\n"
            "set xlabel 'frequency, kHz'\n"
            "set ylabel 'power per bin, dB of full scale'\n"
            "set xrange [0:%g]\n"
            "set yrange [%g:%g]\n"
            "set grid\n"
            "set arrow 1 from first %g, graph 0 to first %g, graph 1 nohead dashtype 2\n"
            "set label 1 ' cut-off' at first %g, graph 0.95\n"
            "plot $before with lines linewidth 1.5 linecolor rgb '#4477aa' title 'before', "
            "$after with lines linewidth 1.5 linecolor rgb '#cc3311' title 'after'\n"
            "unset arrow 1\n"
            "unset label 1\n"
            "unset grid\n",
            nyquist, top - 130, top, cutoff / 1000, cutoff / 1000, cutoff / 1000);
    fprintf(to,
            "set tmargin at screen 0.46\n"
            "set bmargin at screen 0.08\n"
            "set xlabel 'time, s'\n"
            "set xrange [0:%g]\n"
            "set yrange [0:%g]\n"
            "set cbrange [%g:%g]\n"
            "set palette defined (0 '#000004', 1 '#420a68', 2 '#932667', 3 '#dd513a', "
            "4 '#fca50a', 5 '#fcffa4')\n",
            secondsOf(before), nyquist, top - imageDepth, top);
    fputs("set title 'Before'\n"
          "set ylabel 'frequency, kHz'\n"
          "set rmargin at screen 0.47\n"
          "unset colorbox\n",
          to);
    sendImage(to, before);
    fputs("set title 'After'\n"
          "unset ylabel\n"
          "set lmargin at screen 0.52\n"
          "set rmargin at screen 0.92\n"
          "set colorbox\n"
          "set cblabel 'power per bin, dB of full scale'\n",
          to);
    sendImage(to, after);
    fputs("unset multiplot\n", to);
}

bool drawPicture(int descriptor, const Spectrum *before, const Spectrum *after, double cutoff) {
    int script[2];
    if (pipe(script) != 0) return false;
    /* gnuplot reads the script from its standard input and writes the PNG to its standard output,
     * so no file name has to be quoted. */
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, script[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, descriptor, STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, script[1]);
    char *const arguments[] = {"gnuplot", NULL};
    pid_t gnuplot;
    const bool started = posix_spawnp(&gnuplot, "gnuplot", &actions, NULL, arguments, environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(script[0]);
    FILE *to = started ? fdopen(script[1], "w") : NULL;
    if (to) {
        sendScript(to, before, after, cutoff);
        fclose(to);
    } else
        close(script[1]);
    int status;
    return started && waitpid(gnuplot, &status, 0) == gnuplot && status == 0;
}
