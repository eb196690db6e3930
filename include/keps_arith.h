/** @file
 * Element-wise arithmetic and conversion.
 */
#ifndef KEPS_ARITH_H
#define KEPS_ARITH_H

#include "keps_status.h"
#include "keps_types.h"

#endif
