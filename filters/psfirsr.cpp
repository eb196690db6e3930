// Single-rate FIR. A constant spec block holds the taps as a table for the direct kernels and,
// unless only those are wanted, their spectrum and an FFT plan; the stream's past goes in and out
// of each call through two delay vectors of tapsLen - 1 samples, oldest first. The path is chosen
// per call by fixed thresholds, which are part of the contract.
#include "filters/fir/horizontal.hpp"
#include "filters/fir/kernels.hpp"
#include "filters/fir/planar.hpp"
#include "filters/fir/spec.hpp"
#include "frame/entry.hpp"

using namespace keps;
using namespace keps::fir;

void ownFIRSR_32f_vrt_cn(const Kep32f *table, const Kep32f *x, Kep32f *y, size count,
                         size tapsLen) {
    vertical<RealTap<f32x8>>(table, x, y, count, tapsLen);
}
void ownFIRSR_32f_hrz(const Kep32f *table, const Kep32f *x, Kep32f *y, size count, size tapsLen) {
    horizontal(table, x, y, count, tapsLen);
}
void ownFIRSR_64f(const Kep64f *table, const Kep64f *x, Kep64f *y, size count, size tapsLen) {
    vertical<RealTap<f64x4>>(table, x, y, count, tapsLen);
}
void ownFIRSR_64f_hrz(const Kep64f *table, const Kep64f *x, Kep64f *y, size count, size tapsLen) {
    horizontal(table, x, y, count, tapsLen);
}
void ownFIRSR_32fc(const Kep32f *table, const Kep32fc *x, Kep32fc *y, size count, size tapsLen) {
    complexVertical<ComplexTap32>(table, reinterpret_cast<const Kep32f *>(x),
                                  reinterpret_cast<Kep32f *>(y), count, tapsLen);
}
void ownFIRSR_64fc(const Kep64f *table, const Kep64fc *x, Kep64fc *y, size count, size tapsLen) {
    complexVertical<ComplexTap64>(table, reinterpret_cast<const Kep64f *>(x),
                                  reinterpret_cast<Kep64f *>(y), count, tapsLen);
}

namespace {

void direct(const KepFIRSRSpec &spec, const Kep32f *x, Kep32f *y, size count) {
    const auto *table = static_cast<const Kep32f *>(spec.taps);
    spec.hrz ? ownFIRSR_32f_hrz(table, x, y, count, spec.tapsLen)
             : ownFIRSR_32f_vrt_cn(table, x, y, count, spec.tapsLen);
}
void direct(const KepFIRSRSpec &spec, const Kep64f *x, Kep64f *y, size count) {
    const auto *table = static_cast<const Kep64f *>(spec.taps);
    spec.hrz ? ownFIRSR_64f_hrz(table, x, y, count, spec.tapsLen)
             : ownFIRSR_64f(table, x, y, count, spec.tapsLen);
}
void direct(const KepFIRSRSpec &spec, const Kep32fc *x, Kep32fc *y, size count) {
    ownFIRSR_32fc(static_cast<const Kep32f *>(spec.taps), x, y, count, spec.tapsLen);
}
void direct(const KepFIRSRSpec &spec, const Kep64fc *x, Kep64fc *y, size count) {
    ownFIRSR_64fc(static_cast<const Kep64f *>(spec.taps), x, y, count, spec.tapsLen);
}

template <class T>
void copy(const T *from, T *to, size count) {
    ownsCopy_8u(from, to, count * size{sizeof(T)});
}
template <class T>
void zero(T *to, size count) {
    ownsZero_8u(to, count * size{sizeof(T)});
}
// count samples of the past, which is silence where there is none.
template <class T>
void copyPast(const T *past, T *to, size count) {
    past ? copy(past, to, count) : zero(to, count);
}

// The delay after len samples of src: the newest past samples of what went before, then src's.
template <class T>
void writeDelay(const T *src, size len, const T *dlySrc, T *dlyDst, size past) {
    const size keep = past > len ? past - len : 0;
    copyPast(dlySrc ? dlySrc + (past - keep) : nullptr, dlyDst, keep);
    copy(src + (len - (past - keep)), dlyDst + keep, past - keep);
}

// Direct sums. Only the outputs that reach back behind src are made from a copy of the samples.
template <class T>
void directFlow(const KepFIRSRSpec &spec, const T *src, T *dst, size len, const T *dlySrc,
                T *dlyDst, T *assembly) {
    const size past = spec.tapsLen - 1, m = past < len ? past : len;
    if (dlyDst) writeDelay(src, len, dlySrc, dlyDst, past);
    if (m > 0) {
        copyPast(dlySrc, assembly, past);
        copy(src, assembly + past, m);
        direct(spec, assembly, dst, m);
    }
    if (len > m) direct(spec, src, dst + m, len - m);
}

// Overlap-save: each transform of fftLen samples, tapsLen - 1 of them shared with the one before,
// gives fftLen - tapsLen + 1 outputs. scratch holds a transform, then its work area.
template <class T>
KepStatus overlapSave(const KepFIRSRSpec &spec, const T *src, const T *dlySrc, T *dlyDst, T *dst,
                      size len, T *scratch) {
    const size past = spec.tapsLen - 1, fftLen = spec.fftLen, blockLen = fftLen - past;
    auto *work = reinterpret_cast<Kep8u *>(scratch + fftLen);
    // Transforms samples, multiplies, transforms back; outputs go to dst.
    const auto block = [&](const T *samples, T *to, size outputs) {
        KepStatus status = Transform<T>::forward(samples, scratch, spec.fftSpec, work);
        if (status < 0) return status;
        Transform<T>::multiply(static_cast<const T *>(spec.tapSpectrum), scratch, spec.fftLen);
        status = Transform<T>::inverse(scratch, spec.fftSpec, work);
        if (status < 0) return status;
        copy(scratch + past, to, outputs);
        return status;
    };

    copyPast(dlySrc, scratch, past);
    if (dlyDst) writeDelay(src, len, dlySrc, dlyDst, past);
    size made = len < blockLen ? len : blockLen;
    copy(src, scratch + past, made);
    zero(scratch + past + made, blockLen - made);
    KepStatus status = block(scratch, dst, made);
    for (; status >= 0 && made < len; made += blockLen) {
        const T *from = src + (made - past);
        const size left = len - made, available = left + past;
        if (available < fftLen) {
            copy(from, scratch, available);
            zero(scratch + available, fftLen - available);
            from = scratch;
        }
        status = block(from, dst + made, left < blockLen ? left : blockLen);
    }
    return status;
}

template <class T>
void flow(const T *src, T *dst, size len, const KepFIRSRSpec &spec, const T *dlySrc, T *dlyDst,
          Kep8u *buf) {
    const size tapsLen = spec.tapsLen, past = tapsLen - 1;
    const Work<T> work(buf, tapsLen);
    const bool byFft = spec.algType == kepAlgorithmFft ||
                       (spec.algType == kepAlgorithmAuto && tapsLen >= Type<T>::leastTaps &&
                        len >= Type<T>::leastIters);
    // A transform that refuses leaves the outputs as they are; callers have no status for that.
    const auto run = [&](const T *from, T *to, size n, const T *dlyFrom, T *dlyTo) {
        byFft ? void(overlapSave(spec, from, dlyFrom, dlyTo, to, n, work.scratch))
              : directFlow(spec, from, to, n, dlyFrom, dlyTo, work.assembly);
    };

    if (dst != src && dst != dlySrc) {
        if (dlyDst && dlyDst == dlySrc) {
            copy(dlySrc, work.delay, past);
            dlySrc = work.delay;
        }
        return run(src, dst, len, dlySrc, dlyDst);
    }

    T *const current = work.delay, *const next = work.delay + past;
    constexpr size most = chunk / sizeof(T);
    copyPast(dlySrc, current, past);
    for (size n; len > 0; len -= n, src += n, dst += n) {
        n = len < most ? len : most;
        run(src, work.output, n, current, next);
        copy(next, current, past);
        copy(work.output, dst, n);
    }
    if (dlyDst) copy(next, dlyDst, past);
}

template <class T>
const KepFIRSRSpec &specIn(const T *memory) {
    return *reinterpret_cast<const KepFIRSRSpec *>(alignUp(memory, 64));
}

template <class T>
KepStatus filter(const T *src, T *dst, int32_t numIters, const Kep8u *spec, const T *dlySrc,
                 T *dlyDst, Kep8u *buf) {
    if (const KepStatus refused = refuse(numIters, spec, src, dst, buf)) return refused;
    flow(src, dst, numIters, specIn(spec), dlySrc, dlyDst, buf);
    return kepStatusOk;
}

// 16-bit forms: in floats, chunk by chunk, always direct, rounded once at the end.
void convert(const Kep16s *src, Kep32f *dst, size len) {
    kepsConvert_16s32f(src, dst, static_cast<int32_t>(len));
}
void convert(const Kep32f *src, Kep16s *dst, size len) {
    kepsConvert_32f16s_Sfs(src, dst, static_cast<int32_t>(len), kepRoundNearest, 0);
}
void convert(const Kep16sc *src, Kep32fc *dst, size len) {
    convert(reinterpret_cast<const Kep16s *>(src), reinterpret_cast<Kep32f *>(dst), 2 * len);
}
void convert(const Kep32fc *src, Kep16sc *dst, size len) {
    convert(reinterpret_cast<const Kep32f *>(src), reinterpret_cast<Kep16s *>(dst), 2 * len);
}

template <class Float, class Integer>
KepStatus filterIntegers(const Integer *src, Integer *dst, int32_t numIters,
                         const Kep8u *specMemory, const Integer *dlySrc, Integer *dlyDst,
                         Kep8u *buf) {
    if (const KepStatus refused = refuse(numIters, specMemory, src, dst, buf)) return refused;
    const KepFIRSRSpec &spec = specIn(specMemory);
    const size past = spec.tapsLen - 1;
    const Work<Float> work(buf, spec.tapsLen);
    constexpr size most = chunk / 2 / sizeof(Float);
    Float *const input = work.output, *const output = work.output + most;
    Float *current = work.delay, *next = work.delay + past;
    // A conversion of no samples is refused and writes nothing.
    if (dlySrc)
        convert(dlySrc, current, past);
    else
        zero(current, past);
    for (size left = numIters, n; left > 0; left -= n, src += n, dst += n) {
        n = left < most ? left : most;
        convert(src, input, n);
        directFlow(spec, input, output, n, static_cast<const Float *>(current), next,
                   work.assembly);
        convert(output, dst, n);
        std::swap(current, next);
    }
    if (dlyDst) convert(current, dlyDst, past);
    return kepStatusOk;
}

// The FFT refuses orders whose blocks are beyond 31 bits anyway; Init hands that on.
template <class T>
KepStatus sizes(int32_t tapsLen, int32_t *specSize, int32_t *bufSize) {
    FftSizes fft;
    const int order = fftOrder(tapsLen);
    Transform<T>::sizes(order, fft);
    const size fftLen = size{1} << order;
    const size spec = 63 + Block<T>(nullptr, tapsLen, fft, fftLen).bytes;
    const size buf = Work<T>(nullptr, tapsLen, fft, fftLen).bytes;
    *specSize = static_cast<int32_t>(spec);
    *bufSize = static_cast<int32_t>(buf);
    return kepStatusOk;
}

template <class T>
KepStatus init(const T *taps, int32_t tapsLen, uint32_t algType, Kep8u *memory) {
    if (tapsLen < 1) return kepStatusBadLength;
    if (anyNull(taps, memory)) return kepStatusNullPointer;
    if (algType > kepAlgorithmFft) return kepStatusBadAlgorithm;

    const int order = fftOrder(tapsLen);
    const size fftLen = size{1} << order;
    FftSizes fft;
    if (algType != kepAlgorithmDirect)
        if (const KepStatus status = Transform<T>::sizes(order, fft); status < 0) return status;
    const Block<T> block(alignUp(memory, 64), tapsLen, fft, fftLen);
    KepFIRSRSpec &spec = *block.head;
    spec.tapsLen = tapsLen;
    spec.taps = block.table;
    spec.hrz = Type<T>::isHorizontal(tapsLen);
    Type<T>::fill(taps, tapsLen, block.table);
    if (algType != kepAlgorithmDirect) {
        spec.fftSpecMem = block.planMemory;
        spec.fftWork = block.fftWork;
        spec.tapSpectrum = block.tapSpectrum;
        spec.fftLen = static_cast<int32_t>(fftLen);
        KepStatus status =
            Transform<T>::init(&spec.fftSpec, order, block.planMemory, block.fftWork);
        if (status < 0) return status;
        copy(taps, block.tapSpectrum, tapsLen);
        zero(block.tapSpectrum + tapsLen, fftLen - tapsLen);
        status = Transform<T>::forward(block.tapSpectrum, block.tapSpectrum, spec.fftSpec,
                                       block.fftWork);
        if (status < 0) return status;
    }
    spec.algType = algType;
    return kepStatusOk;
}

} // namespace

KepStatus kepsFIRSRGetSize(int32_t tapsLen, int32_t tapsType, int32_t *specSize, int32_t *bufSize) {
    if (tapsLen < 1) return kepStatusBadLength;
    if (tapsType != kepType32f && tapsType != kepType32fc && tapsType != kepType64f &&
        tapsType != kepType64fc)
        return kepStatusBadDataType;
    if (anyNull(specSize, bufSize)) return kepStatusNullPointer;
    switch (tapsType) {
    case kepType32f:
        return sizes<Kep32f>(tapsLen, specSize, bufSize);
    case kepType64f:
        return sizes<Kep64f>(tapsLen, specSize, bufSize);
    case kepType32fc:
        return sizes<Kep32fc>(tapsLen, specSize, bufSize);
    default:
        return sizes<Kep64fc>(tapsLen, specSize, bufSize);
    }
}

KepStatus kepsFIRSRInit_32f(const Kep32f *taps, int32_t tapsLen, uint32_t algType, Kep8u *spec) {
    return init(taps, tapsLen, algType, spec);
}
KepStatus kepsFIRSRInit_64f(const Kep64f *taps, int32_t tapsLen, uint32_t algType, Kep8u *spec) {
    return init(taps, tapsLen, algType, spec);
}
KepStatus kepsFIRSRInit_32fc(const Kep32fc *taps, int32_t tapsLen, uint32_t algType, Kep8u *spec) {
    return init(taps, tapsLen, algType, spec);
}
KepStatus kepsFIRSRInit_64fc(const Kep64fc *taps, int32_t tapsLen, uint32_t algType, Kep8u *spec) {
    return init(taps, tapsLen, algType, spec);
}

KepStatus kepsFIRSR_32f(const Kep32f *src, Kep32f *dst, int32_t numIters, const Kep8u *spec,
                        const Kep32f *dlySrc, Kep32f *dlyDst, Kep8u *buf) {
    return filter(src, dst, numIters, spec, dlySrc, dlyDst, buf);
}
KepStatus kepsFIRSR_64f(const Kep64f *src, Kep64f *dst, int32_t numIters, const Kep8u *spec,
                        const Kep64f *dlySrc, Kep64f *dlyDst, Kep8u *buf) {
    return filter(src, dst, numIters, spec, dlySrc, dlyDst, buf);
}
KepStatus kepsFIRSR_32fc(const Kep32fc *src, Kep32fc *dst, int32_t numIters, const Kep8u *spec,
                         const Kep32fc *dlySrc, Kep32fc *dlyDst, Kep8u *buf) {
    return filter(src, dst, numIters, spec, dlySrc, dlyDst, buf);
}
KepStatus kepsFIRSR_64fc(const Kep64fc *src, Kep64fc *dst, int32_t numIters, const Kep8u *spec,
                         const Kep64fc *dlySrc, Kep64fc *dlyDst, Kep8u *buf) {
    return filter(src, dst, numIters, spec, dlySrc, dlyDst, buf);
}
KepStatus kepsFIRSR_16s(const Kep16s *src, Kep16s *dst, int32_t numIters, const Kep8u *spec,
                        const Kep16s *dlySrc, Kep16s *dlyDst, Kep8u *buf) {
    return filterIntegers<Kep32f>(src, dst, numIters, spec, dlySrc, dlyDst, buf);
}
KepStatus kepsFIRSR_16sc(const Kep16sc *src, Kep16sc *dst, int32_t numIters, const Kep8u *spec,
                         const Kep16sc *dlySrc, Kep16sc *dlyDst, Kep8u *buf) {
    return filterIntegers<Kep32fc>(src, dst, numIters, spec, dlySrc, dlyDst, buf);
}
