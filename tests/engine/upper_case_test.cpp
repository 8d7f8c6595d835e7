// Capital letters one character to one.
#include "ground/upper_case.h"

#include <gtest/gtest.h>

namespace vrx::test {
namespace {

TEST(UpperCase, ChangesTheLettersOfAsciiOnly) {
    for (char16_t code = 0; code < 0x80; ++code) {
        const bool small = code >= u'a' && code <= u'z';
        EXPECT_EQ(upperCase(code), small ? code - 32 : code) << static_cast<int>(code);
    }
}

TEST(UpperCase, ChangesLatinLettersWithMarks) {
    EXPECT_EQ(upperCase(u'\u00E0'), u'\u00C0');
    EXPECT_EQ(upperCase(u'\u00F6'), u'\u00D6');
    EXPECT_EQ(upperCase(u'\u00FE'), u'\u00DE');
    EXPECT_EQ(upperCase(u'\u00FF'), u'\u0178');
    EXPECT_EQ(upperCase(u'\u0101'), u'\u0100');
    EXPECT_EQ(upperCase(u'\u0119'), u'\u0118');
    EXPECT_EQ(upperCase(u'\u017E'), u'\u017D');
    EXPECT_EQ(upperCase(u'\u1EF9'), u'\u1EF8');
}

TEST(UpperCase, ChangesOtherAlphabets) {
    EXPECT_EQ(upperCase(u'\u03B1'), u'\u0391');
    EXPECT_EQ(upperCase(u'\u03AC'), u'\u0386');
    EXPECT_EQ(upperCase(u'\u03C2'), u'\u03A3');
    EXPECT_EQ(upperCase(u'\u0436'), u'\u0416');
    EXPECT_EQ(upperCase(u'\u0451'), u'\u0401');
    EXPECT_EQ(upperCase(u'\u0561'), u'\u0531');
    EXPECT_EQ(upperCase(u'\u24D0'), u'\u24B6');
    EXPECT_EQ(upperCase(u'\uFF41'), u'\uFF21');
}

TEST(UpperCase, LeavesLettersAloneWhoseCapitalIsSeveralCharacters) {
    EXPECT_EQ(upperCase(u'\u00DF'), u'\u00DF');
    EXPECT_EQ(upperCase(u'\u0149'), u'\u0149');
    EXPECT_EQ(upperCase(u'\uFB01'), u'\uFB01');
}

TEST(UpperCase, LeavesCapitalsSignsAndOtherScriptsAlone) {
    for (const char16_t code :
         {u'\u00C0', u'\u0100', u'\u0391', u'\u0416', u'\u00D7', u'\u00F7', u'\u0130', u'\u05D0', u'\u4E2D',
          u'\uAC00', u'\uFFFF', char16_t{0xD83D}, char16_t{0xDE00}}) {
        EXPECT_EQ(upperCase(code), code) << static_cast<int>(code);
    }
}

TEST(UpperCase, OfACapitalIsThatCapital) {
    for (int code = 0; code <= 0xFFFF; ++code) {
        const char16_t capital = upperCase(static_cast<char16_t>(code));
        EXPECT_EQ(upperCase(capital), capital) << code;
    }
}

TEST(EqualInUpperCase, HoldsForTextsThatDifferInCaseOnly) {
    EXPECT_TRUE(equalInUpperCase(u"Stra\u00DFe 1", u"sTRA\u00DFE 1"));
    EXPECT_TRUE(equalInUpperCase(u"\u00C9T\u00C9", u"\u00E9t\u00E9"));
    EXPECT_TRUE(equalInUpperCase(u"", u""));
    EXPECT_FALSE(equalInUpperCase(u"a", u"b"));
    EXPECT_FALSE(equalInUpperCase(u"a", u"ab"));
    EXPECT_FALSE(equalInUpperCase(u"e", u"\u00E9"));
}

}  // namespace
}  // namespace vrx::test
