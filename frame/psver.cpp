// The version record.
#include "frame/worker.h"

namespace {

#define TEXT_OF(x) #x
#define TEXT(x) TEXT_OF(x)
#define REVISION 54644

constexpr KepsLibVersion s_libVer = {
    KEPS_VERSION_MAJOR,
    KEPS_VERSION_MINOR,
    KEPS_VERSION_UPDATE,
    REVISION,
    {'e', '9', 0, 0},
    "kepSP AVX (e9 threaded)",
    TEXT(KEPS_VERSION_MAJOR) "." TEXT(KEPS_VERSION_MINOR) "." TEXT(KEPS_VERSION_UPDATE) " (r" TEXT(
        REVISION) ")",
    "Jan 31 2017",
};

} // namespace

const KepsLibVersion *kepsGetLibVersion(void) {
    return &s_libVer;
}
