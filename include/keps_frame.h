/** @file
 * The frame: version, memory, fill and move.
 */
#ifndef KEPS_FRAME_H
#define KEPS_FRAME_H

#include "keps_status.h"
#include "keps_types.h"

/** The library's version, handed out by kepsGetLibVersion(). All texts are constant. */
typedef struct {
    int32_t major;         /**< year of the release */
    int32_t minor;         /**< minor number */
    int32_t update;        /**< update number */
    int32_t revision;      /**< revision of the sources */
    char target[4];        /**< variant mark: the processors that the code is made for */
    const char *name;      /**< name of the library and its variant */
    const char *version;   /**< major, minor, update and revision as a text */
    const char *buildDate; /**< date of the build */
} KepsLibVersion;

/** The version record; it cannot fail. */
KEPS_FN(const KepsLibVersion *, kepsGetLibVersion, (void));

/** @name Memory
 * @{ */
/** Allocates @p len elements on a 64-byte boundary; kepsFree() frees them.
 * @return null when @p len is below 1, when the size exceeds 0x7FFFFFFF bytes (`_L` forms: 64
 * bits), or when there is no memory. */
KEPS_FN(Kep8u *, kepsMalloc_8u, (int32_t len));
KEPS_FN(Kep8s *, kepsMalloc_8s, (int32_t len));
KEPS_FN(Kep8sc *, kepsMalloc_8sc, (int32_t len));
KEPS_FN(Kep16u *, kepsMalloc_16u, (int32_t len));
KEPS_FN(Kep16s *, kepsMalloc_16s, (int32_t len));
KEPS_FN(Kep16sc *, kepsMalloc_16sc, (int32_t len));
KEPS_FN(Kep32u *, kepsMalloc_32u, (int32_t len));
KEPS_FN(Kep32s *, kepsMalloc_32s, (int32_t len));
KEPS_FN(Kep32sc *, kepsMalloc_32sc, (int32_t len));
KEPS_FN(Kep32f *, kepsMalloc_32f, (int32_t len));
KEPS_FN(Kep32fc *, kepsMalloc_32fc, (int32_t len));
KEPS_FN(Kep64s *, kepsMalloc_64s, (int32_t len));
KEPS_FN(Kep64sc *, kepsMalloc_64sc, (int32_t len));
KEPS_FN(Kep64f *, kepsMalloc_64f, (int32_t len));
KEPS_FN(Kep64fc *, kepsMalloc_64fc, (int32_t len));
KEPS_FN(Kep8u *, kepsMalloc_8u_L, (int64_t len));
KEPS_FN(Kep8s *, kepsMalloc_8s_L, (int64_t len));
KEPS_FN(Kep8sc *, kepsMalloc_8sc_L, (int64_t len));
KEPS_FN(Kep16u *, kepsMalloc_16u_L, (int64_t len));
KEPS_FN(Kep16s *, kepsMalloc_16s_L, (int64_t len));
KEPS_FN(Kep16sc *, kepsMalloc_16sc_L, (int64_t len));
KEPS_FN(Kep32u *, kepsMalloc_32u_L, (int64_t len));
KEPS_FN(Kep32s *, kepsMalloc_32s_L, (int64_t len));
KEPS_FN(Kep32sc *, kepsMalloc_32sc_L, (int64_t len));
KEPS_FN(Kep32f *, kepsMalloc_32f_L, (int64_t len));
KEPS_FN(Kep32fc *, kepsMalloc_32fc_L, (int64_t len));
KEPS_FN(Kep64s *, kepsMalloc_64s_L, (int64_t len));
KEPS_FN(Kep64sc *, kepsMalloc_64sc_L, (int64_t len));
KEPS_FN(Kep64f *, kepsMalloc_64f_L, (int64_t len));
KEPS_FN(Kep64fc *, kepsMalloc_64fc_L, (int64_t len));
/** @} */
/** Frees a block of any `kepsMalloc` form; null is lawful and does nothing. */
KEPS_FN(void, kepsFree, (void *block));

/** @name Zero
 * @{ */
/** Sets all bits of @p len elements to 0. The byte count must stay below 2^31.
 * @return #kepStatusOk, #kepStatusNullPointer, #kepStatusBadLength. */
KEPS_FN(KepStatus, kepsZero_8u, (Kep8u * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_16s, (Kep16s * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_16sc, (Kep16sc * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_32f, (Kep32f * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_32fc, (Kep32fc * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_32s, (Kep32s * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_32sc, (Kep32sc * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_64f, (Kep64f * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_64fc, (Kep64fc * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_64s, (Kep64s * dst, int32_t len));
KEPS_FN(KepStatus, kepsZero_64sc, (Kep64sc * dst, int32_t len));
/** @} */

/** @name Set
 * @{ */
/** Writes @p val to @p len elements, by streaming stores where the array outgrows every cache.
 * The byte count must stay below 2^31.
 * @return #kepStatusOk, #kepStatusNullPointer, #kepStatusBadLength. */
KEPS_FN(KepStatus, kepsSet_8u, (Kep8u val, Kep8u *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_16s, (Kep16s val, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_16sc, (Kep16sc val, Kep16sc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_32f, (Kep32f val, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_32fc, (Kep32fc val, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_32s, (Kep32s val, Kep32s *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_32sc, (Kep32sc val, Kep32sc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_64f, (Kep64f val, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_64fc, (Kep64fc val, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_64s, (Kep64s val, Kep64s *dst, int32_t len));
KEPS_FN(KepStatus, kepsSet_64sc, (Kep64sc val, Kep64sc *dst, int32_t len));
/** @} */

/** @name Copy
 * @{ */
/** Copies @p len elements; the arrays must not overlap (kepsMove does that). Any @p len is right.
 * @return #kepStatusOk, #kepStatusNullPointer, #kepStatusBadLength. */
KEPS_FN(KepStatus, kepsCopy_8u, (const Kep8u *src, Kep8u *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_16s, (const Kep16s *src, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_16sc, (const Kep16sc *src, Kep16sc *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_32fc, (const Kep32fc *src, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_32s, (const Kep32s *src, Kep32s *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_32sc, (const Kep32sc *src, Kep32sc *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_64f, (const Kep64f *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_64fc, (const Kep64fc *src, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_64s, (const Kep64s *src, Kep64s *dst, int32_t len));
KEPS_FN(KepStatus, kepsCopy_64sc, (const Kep64sc *src, Kep64sc *dst, int32_t len));
/** @} */

/** @name Move
 * @{ */
/** Copies @p len elements between arrays that may overlap in any way. The byte count must stay
 * below 2^31.
 * @return #kepStatusOk, #kepStatusNullPointer, #kepStatusBadLength. */
KEPS_FN(KepStatus, kepsMove_8u, (const Kep8u *src, Kep8u *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_16s, (const Kep16s *src, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_16sc, (const Kep16sc *src, Kep16sc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_32fc, (const Kep32fc *src, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_32s, (const Kep32s *src, Kep32s *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_32sc, (const Kep32sc *src, Kep32sc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_64f, (const Kep64f *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_64fc, (const Kep64fc *src, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_64s, (const Kep64s *src, Kep64s *dst, int32_t len));
KEPS_FN(KepStatus, kepsMove_64sc, (const Kep64sc *src, Kep64sc *dst, int32_t len));
/** @} */

#endif
