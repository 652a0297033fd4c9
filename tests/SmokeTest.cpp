#include <gtest/gtest.h>
#include "TestUtil.h"
TEST(Smoke, Links) { EXPECT_EQ(GetAsn1ListLength(nullptr), 0u); }
