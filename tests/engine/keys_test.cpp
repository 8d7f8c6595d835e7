// Picking one part of a key string.
#include "ground/keys.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "failure.h"

namespace vrx::test {
namespace {

constexpr std::int16_t kLastPosition = std::numeric_limits<std::int16_t>::max();

TEST(XPathStep, IsThePartAtThePositionFromZero) {
    EXPECT_EQ(getXPathStep(u"a/b/c", 0), u"a");
    EXPECT_EQ(getXPathStep(u"a/b/c", 1), u"b");
    EXPECT_EQ(getXPathStep(u"a/b/c", 2), u"c");
}

TEST(XPathStep, IsEmptyBeyondTheLastPart) {
    EXPECT_EQ(getXPathStep(u"a/b/c", 3), u"");
    EXPECT_EQ(getXPathStep(u"a/b/c", kLastPosition), u"");
}

TEST(XPathStep, OnAnEmptyKeyReturnsTheEmptyStringForPosition0AndTwoSeparatorsInARowGiveAnEmptyStep) {
    EXPECT_EQ(getXPathStep(u"", 0), u"");
    EXPECT_EQ(getXPathStep(u"", 1), u"");
    EXPECT_EQ(getXPathStep(u"a//b", 1), u"");
    EXPECT_EQ(getXPathStep(u"a//b", 2), u"b");
}

TEST(XPathStep, IsEmptyBeforeALeadingAndBehindATrailingSeparator) {
    EXPECT_EQ(getXPathStep(u"/a/", 0), u"");
    EXPECT_EQ(getXPathStep(u"/a/", 1), u"a");
    EXPECT_EQ(getXPathStep(u"/a/", 2), u"");
}

TEST(XPathStep, IsSeparatedByNothingElse) {
    EXPECT_EQ(getXPathStep(u"a\\b-c", 0), u"a\\b-c");
    EXPECT_EQ(getXPathStep(u"a\\b-c", 1), u"");
}

TEST(XPathStep, AtANegativePositionIsASubscriptOutOfRange) {
    const Error expected{9, u"", u"Subscript out of range"};
    EXPECT_EQ(failureOf([] { (void)getXPathStep(u"a/b/c", -1); }), expected);
    EXPECT_EQ(failureOf([] { (void)getXPathStep(u"", -1); }), expected);
    EXPECT_EQ(failureOf([] { (void)getXPathStep(u"a", std::numeric_limits<std::int16_t>::min()); }),
              expected);
}

TEST(XPathStep, KeepsEveryCharacterOfAPart) {
    EXPECT_EQ(getXPathStep(u"\u00E9\u4E2D/ \U0001F600 /", 0), u"\u00E9\u4E2D");
    EXPECT_EQ(getXPathStep(u"\u00E9\u4E2D/ \U0001F600 /", 1), u" \U0001F600 ");
}

TEST(XPathStep, IsFoundInAKeyOfMorePartsThanAPositionCanName) {
    std::u16string key(40000, u'/');
    key += u"end";
    EXPECT_EQ(getXPathStep(key, kLastPosition), u"");
}

TEST(Key, IsThePartAtThePositionFromZero) {
    EXPECT_EQ(getKey(u"12-7-3", 0), u"12");
    EXPECT_EQ(getKey(u"12-7-3", 1), u"7");
    EXPECT_EQ(getKey(u"12-7-3", 2), u"3");
    EXPECT_EQ(getKey(u"12-7-3", 3), u"");
}

TEST(Key, TakesAMinusSignForASeparator) {
    EXPECT_EQ(getKey(u"-5", 0), u"");
    EXPECT_EQ(getKey(u"-5", 1), u"5");
}

TEST(Key, AtANegativePositionIsASubscriptOutOfRange) {
    EXPECT_EQ(errorNumberOf([] { (void)getKey(u"12-7-3", -1); }), 9);
}

}  // namespace
}  // namespace vrx::test
