/** @file
 * Filters.
 */
#ifndef KEPS_FILTERS_H
#define KEPS_FILTERS_H

#include "keps_status.h"
#include "keps_types.h"

#endif
