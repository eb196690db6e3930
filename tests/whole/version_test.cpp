// The version record.
#include <cstring>
#include <gtest/gtest.h>

#include "keps.h"

TEST(Version, record) {
    const KepsLibVersion *v = kepsGetLibVersion();
    EXPECT_EQ(2017, v->major);
    EXPECT_EQ(0, v->minor);
    EXPECT_EQ(2, v->update);
    EXPECT_EQ(54644, v->revision);
    EXPECT_EQ(0, std::memcmp(v->target, "e9\0\0", 4));
    EXPECT_STREQ("kepSP AVX (e9 threaded)", v->name);
    EXPECT_STREQ("2017.0.2 (r54644)", v->version);
    EXPECT_STREQ("Jan 31 2017", v->buildDate);
    EXPECT_EQ(48u, sizeof *v);
}
