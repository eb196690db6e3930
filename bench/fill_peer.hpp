// The plain loop of a fill.
#pragma once

namespace peer {

void set(float val, float *dst, int len);
void set(double val, double *dst, int len);

} // namespace peer
