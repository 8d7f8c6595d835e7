// Names of files and folders as the file dialogs build and cut them.

#include "dialogs/engine/file_names.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

using Texts = std::vector<std::u16string>;

TEST(FileNames, HaveABackslashBetweenFolderAndNameUnlessTheFolderIsARoot) {
    EXPECT_EQ(fullFileName(u"C:\\AB", u"a.hdr"), u"C:\\AB\\a.hdr");
    EXPECT_EQ(fullFileName(u"C:\\", u"name.hdr"), u"C:\\name.hdr");
    EXPECT_EQ(fullFileName(u"C:\\AB", u""), u"C:\\AB\\");
}

TEST(FileNames, LeadToTheFolderAbove) {
    EXPECT_EQ(folderAbove(u"C:\\AB\\CD"), u"C:\\AB");
    EXPECT_EQ(folderAbove(u"C:\\A\\B"), u"C:\\A");
    EXPECT_EQ(folderAbove(u"C:\\AB"), u"C:\\");
}

TEST(FileNames, OfFewerThanFiveCharactersLeadNowhere) {
    EXPECT_EQ(folderAbove(u"C:\\A"), u"C:\\A");
    EXPECT_EQ(folderAbove(u"C:\\"), u"C:\\");
    EXPECT_EQ(folderAbove(u""), u"");
}

TEST(FileNames, WithoutABackslashLeadNowhere) { EXPECT_EQ(folderAbove(u"abcdef"), u"abcdef"); }

TEST(FileNames, ListEveryFolderFromTheRootOn) {
    EXPECT_EQ(foldersFromRoot(u"C:\\"), Texts{u"C:\\"});
    EXPECT_EQ(foldersFromRoot(u"C:\\AB"), (Texts{u"C:\\", u"C:\\AB"}));
    EXPECT_EQ(foldersFromRoot(u"C:\\A\\B C\\D"), (Texts{u"C:\\", u"C:\\A", u"C:\\A\\B C", u"C:\\A\\B C\\D"}));
}

TEST(FileNames, OfASuggestionAreCutToItsFolder) {
    EXPECT_EQ(folderOfSuggestion(u"C:\\AB\\a.hdr"), u"C:\\AB\\");
    EXPECT_EQ(folderOfSuggestion(u"C:\\a.hdr"), u"C:\\");
    EXPECT_EQ(folderOfSuggestion(u""), u"");
}

TEST(FileNames, OfASuggestionLoseFourCharactersBeforeTheyAreCut) {
    EXPECT_EQ(folderOfSuggestion(u"sky.hdr"), u"sky");
    // What goes is "\b.c", so that the last backslash is the one before "AB".
    EXPECT_EQ(folderOfSuggestion(u"C:\\AB\\b.c"), u"C:\\");
}

TEST(FileNames, OfTheTemporaryPictureHaveOneBackslash) {
    EXPECT_EQ(temporaryFileName(u"C:\\TEMP"), u"C:\\TEMP\\temp.BMP");
    EXPECT_EQ(temporaryFileName(u"C:\\TEMP\\"), u"C:\\TEMP\\temp.BMP");
    EXPECT_EQ(temporaryFileName(u"C:\\"), u"C:\\temp.BMP");
}

}  // namespace
}  // namespace vrx
