// Blanks around texts.
#include "ground/blanks.h"

#include <gtest/gtest.h>

namespace vrx::test {
namespace {

TEST(NameOfBlanks, HoldsNothingElse) {
    EXPECT_TRUE(isBlank(u""));
    EXPECT_TRUE(isBlank(u"   "));
    EXPECT_FALSE(isBlank(u" a "));
}

}  // namespace
}  // namespace vrx::test
