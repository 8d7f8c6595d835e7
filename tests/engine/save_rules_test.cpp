// What the save dialogs do with a name, and what they tell the user.
#include "dialogs/engine/save_rules.h"

#include <gtest/gtest.h>

namespace vrx::test {
namespace {

TEST(SaveFormat, IsToldByTheRowOfTheListOfTypes) {
    EXPECT_EQ(saveFormatOf(u"*.HDR"), SaveFormat::Hdr);
    EXPECT_EQ(saveFormatOf(u"*.JPG"), SaveFormat::Jpeg);
    EXPECT_EQ(saveFormatOf(u"*.BMP"), SaveFormat::Bmp);
}

TEST(SaveFileName, HasTheExtensionOfTheFormatAppended) {
    EXPECT_EQ(saveFileName(u"C:\\Pics", u"pic", SaveFormat::Hdr), u"C:\\Pics\\pic.hdr");
    EXPECT_EQ(saveFileName(u"C:\\Pics", u"pic", SaveFormat::Jpeg), u"C:\\Pics\\pic.jpg");
    EXPECT_EQ(saveFileName(u"C:\\Pics", u"pic", SaveFormat::Bmp), u"C:\\Pics\\pic.bmp");
}

TEST(SaveFileName, HasItAppendedToANameThatEndsWithItAlready) {
    EXPECT_EQ(saveFileName(u"C:\\Pics", u"pic.hdr", SaveFormat::Hdr), u"C:\\Pics\\pic.hdr.hdr");
    EXPECT_EQ(saveFileName(u"C:\\Pics", u"a.jpg", SaveFormat::Jpeg), u"C:\\Pics\\a.jpg.jpg");
}

TEST(SaveFileName, HasOneBackslashInTheRootOfADrive) {
    EXPECT_EQ(saveFileName(u"C:\\", u"name", SaveFormat::Bmp), u"C:\\name.bmp");
}

TEST(SaveFileName, KeepsBlanks) {
    EXPECT_EQ(saveFileName(u"C:\\Pics", u"  ", SaveFormat::Jpeg), u"C:\\Pics\\  .jpg");
}

TEST(NameOfAFile, HasNoWildcardsAndNoColon) {
    for (const char16_t* name : {u"a*", u"?", u"a:b", u"a\"b", u"<", u">", u"a|b", u"a\tb"})
        EXPECT_FALSE(canNameFile(name));
    EXPECT_FALSE(canNameFile(std::u16string_view(u"a\0b", 3)));
    for (const char16_t* name : {u"pic", u"a b", u" ", u"a.b", u"sub\\pic", u"sub/pic", u"\u5929", u"it's"})
        EXPECT_TRUE(canNameFile(name));
}

TEST(SaveText, AsksWithCarriageReturnsAlone) {
    EXPECT_EQ(save_text::replaceQuestion(u"C:\\a.jpg"),
              u"C:\\a.jpg\rFile already exist.\r\r Replace the File?");
}

TEST(SaveText, TellsTheFileOrTheReason) {
    EXPECT_EQ(save_text::jpegFailure(u"C:\\a.jpg"), u"Failed to save the picture to the file: 'C:\\a.jpg'");
    EXPECT_EQ(save_text::aborted(u"Disk full"), u"Save aborted : Disk full");
}

}  // namespace
}  // namespace vrx::test
