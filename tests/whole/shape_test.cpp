#include <gtest/gtest.h>
TEST(Shape, placeholder) {}
