/** @file
 * Fourier transforms.
 */
#ifndef KEPS_TRANSFORMS_H
#define KEPS_TRANSFORMS_H

#include "keps_status.h"
#include "keps_types.h"

#endif
