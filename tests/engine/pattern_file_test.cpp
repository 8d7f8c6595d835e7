// The text of pattern files.
#include "pattern/engine/pattern_file.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace vrx::test {
namespace {

std::string encode(std::u16string_view pattern) {
    const auto file = encodePatternFile(pattern);
    return {file.begin(), file.end()};
}

std::u16string decode(std::string_view file) {
    return decodePatternFile({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()});
}

TEST(PatternFile, HoldsThePatternStringAsOneLine) {
    EXPECT_EQ(encode(u"0-255;1000-16711680;"), "0-255;1000-16711680;\r\n");
    EXPECT_EQ(encode(u""), "\r\n");
}

TEST(PatternFile, IsPlainAscii) { EXPECT_EQ(encode(u"\u00E9\u4E2D;"), "??;\r\n"); }

TEST(PatternFile, AnythingAfterTheFirstLineIsIgnored) {
    EXPECT_EQ(decode("0-255;\r\n1000-1;\r\n"), u"0-255;");
    EXPECT_EQ(decode("0-255;\n1000-1;"), u"0-255;");
    EXPECT_EQ(decode("0-255;\r1000-1;"), u"0-255;");
    EXPECT_EQ(decode("\r\n0-255;"), u"");
}

TEST(PatternFile, AMissingLineEndDoesNotMatter) { EXPECT_EQ(decode("0-255;1000-1;"), u"0-255;1000-1;"); }

TEST(PatternFile, AnEmptyFileIsTheEmptyString) { EXPECT_EQ(decode(""), u""); }

TEST(PatternFile, BlanksAndForeignBytesOfTheLineAreKept) {
    EXPECT_EQ(decode(std::string_view(" 0-1; \0\xFF\t\r\n", 11)),
              std::u16string_view(u" 0-1; \0\u00FF\t", 9));
}

TEST(PatternFile, ReadsWhatItWrote) { EXPECT_EQ(decode(encode(u"0-255;500--1;")), u"0-255;500--1;"); }

}  // namespace
}  // namespace vrx::test
