// The peers of the arithmetic and conversion families. Plain loops: what a compiler makes of them;
// like ours they may be called in place, so nothing promises the compiler separate arrays.
// Intrinsics loops: what an author of production code writes down for 128-bit integers, unrolled by
// four vectors.
#pragma once

#include "keps_types.h"

namespace peer {

void convert(const Kep16s *src, float *dst, int n);
void convert(const float *src, Kep16s *dst, int n, float scale);

// Float operations, for float, double and the complex types of both.
template <class T>
void add(const T *src1, const T *src2, T *dst, int n);
template <class T>
void mul(const T *src1, const T *src2, T *dst, int n);
template <class T>
void addC(const T *src, T val, T *dst, int n);
template <class T>
void mulC(const T *src, T val, T *dst, int n);
template <class T>
void addProduct(const T *src1, const T *src2, T *srcDst, int n);
void mulPerm(const float *src1, const float *src2, float *dst, int n);

// Integer operations with a scale factor, for 8u, 16s, 16u, 32s, 16sc and 32sc.
enum class Op { add, sub, mul };
template <Op op, class T>
void scaled(const T *src1, const T *src2, T *dst, int n, int scaleFactor);
template <Op op, class T>
void scaledC(const T *src, T val, T *dst, int n, int scaleFactor);

// The same by intrinsics, for 8u, 16s, 16u and 16sc.
template <Op op, class T>
void byIntrinsics(const T *src1, const T *src2, T *dst, int n, int scaleFactor);

} // namespace peer
