// Which names of files fit the patterns of a file type.

#include "dialogs/engine/file_patterns.h"

#include <gtest/gtest.h>

#include <string>

namespace vrx {
namespace {

TEST(FilePatterns, MatchTheWholeExtensionWhateverItsCase) {
    EXPECT_TRUE(matchesPatterns(u"a.hdr", u"*.HDR"));
    EXPECT_TRUE(matchesPatterns(u"A.B.HdR", u"*.hdr"));
    EXPECT_TRUE(matchesPatterns(u".hdr", u"*.HDR"));
    EXPECT_FALSE(matchesPatterns(u"a.hdrx", u"*.HDR"));
    EXPECT_FALSE(matchesPatterns(u"a.hdr.bak", u"*.HDR"));
    EXPECT_FALSE(matchesPatterns(u"hdr", u"*.HDR"));
}

TEST(FilePatterns, MatchEveryNameWithTwoStars) {
    EXPECT_TRUE(matchesPatterns(u"a.hdr", u"*.*"));
    EXPECT_TRUE(matchesPatterns(u"plain", u"*.*"));
    EXPECT_TRUE(matchesPatterns(u"plain", u"*"));
}

TEST(FilePatterns, MatchAnyOfSeveral) {
    EXPECT_TRUE(matchesPatterns(u"a.jpg", u"*.JPG;*.JPEG"));
    EXPECT_TRUE(matchesPatterns(u"a.jpeg", u"*.JPG;*.JPEG"));
    EXPECT_TRUE(matchesPatterns(u"a.jpeg", u"*.JPG; *.JPEG ;"));
    EXPECT_FALSE(matchesPatterns(u"a.jpe", u"*.JPG;*.JPEG"));
}

TEST(FilePatterns, MatchOneCharacterWithAQuestionMark) {
    EXPECT_TRUE(matchesPatterns(u"a1.hdr", u"a?.hdr"));
    EXPECT_FALSE(matchesPatterns(u"a.hdr", u"a?.hdr"));
    EXPECT_FALSE(matchesPatterns(u"a12.hdr", u"a?.hdr"));
}

TEST(FilePatterns, MatchSeveralStarsInOneName) {
    EXPECT_TRUE(matchesPatterns(u"abcabc.hdr", u"a*bc.*"));
    EXPECT_TRUE(matchesPatterns(u"xaxbx", u"*a*b*"));
    EXPECT_TRUE(matchesPatterns(u"ab", u"*a*b*"));
    EXPECT_FALSE(matchesPatterns(u"ba", u"*a*b*"));
    EXPECT_FALSE(matchesPatterns(u"abcab", u"a*bc"));
}

TEST(FilePatterns, MatchCapitalLettersOfOtherLanguages) {
    EXPECT_TRUE(matchesPatterns(u"\u03b1\u00e9.HDR", u"\u0391\u00c9.hdr"));
    EXPECT_FALSE(matchesPatterns(u"e.hdr", u"\u00e9.hdr"));
}

TEST(FilePatterns, MatchNothingWhenThereAreNone) {
    EXPECT_FALSE(matchesPatterns(u"a.hdr", u""));
    EXPECT_FALSE(matchesPatterns(u"a.hdr", u" ; "));
}

TEST(FilePatterns, OfManyStarsAreMatchedAtOnce) {
    std::u16string pattern;
    for (int i = 0; i < 50; ++i) pattern += u"*a";
    EXPECT_FALSE(matchesPatterns(std::u16string(255, u'a') + u"b", pattern));
    EXPECT_TRUE(matchesPatterns(std::u16string(255, u'a'), pattern));
}

}  // namespace
}  // namespace vrx
