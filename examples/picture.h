/* Draws two spectra and their spectrograms by gnuplot. */
#ifndef PICTURE_H
#define PICTURE_H

#include "spectrum.h"

/* Writes a PNG to the open file; false when gnuplot is missing or fails. */
bool drawPicture(int descriptor, const Spectrum *before, const Spectrum *after, double cutoff);

#endif
