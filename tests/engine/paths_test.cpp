// Absolute and relative paths, the form for display, and splitting a path into folder and name.
#include "ground/paths.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "failure.h"

namespace vrx::test {
namespace {

const Error kPathNotFound{79, u"CVrxFun", u"Path not found!"};

/// A name and what is left of the path that it was taken from.
using Split = std::pair<std::u16string, std::u16string>;

Split appName(std::u16string path, bool withExtension) {
    std::u16string name = getAppName(path, withExtension);
    return {name, path};
}

Split fileName(std::u16string path) {
    std::u16string name = splitFileName(path);
    return {name, path};
}

TEST(NetworkPath, BeginsWithTwoEqualSeparators) {
    EXPECT_TRUE(isNetworkPath(u"\\\\srv\\share"));
    EXPECT_TRUE(isNetworkPath(u"//srv/share"));
    EXPECT_TRUE(isNetworkPath(u"\\\\"));
    EXPECT_FALSE(isNetworkPath(u"\\/srv"));
    EXPECT_FALSE(isNetworkPath(u"/\\srv"));
    EXPECT_FALSE(isNetworkPath(u"\\srv"));
    EXPECT_FALSE(isNetworkPath(u"\\"));
    EXPECT_FALSE(isNetworkPath(u"C:\\\\x"));
    EXPECT_FALSE(isNetworkPath(u""));
}

TEST(AbsolutePath, ClimbsOneFolderForEachTwoDotsAndTheRootIsKept) {
    EXPECT_EQ(getAbsolutePath(u"..\\..\\x.hdr", u"C:\\A\\B\\C"), u"C:\\A\\x.hdr");
    EXPECT_EQ(getAbsolutePath(u"..\\..\\..\\..\\x.hdr", u"C:\\A"), u"C:\\x.hdr");
}

TEST(AbsolutePath,
     WithFolderCColonAloneFailsWith79PathNotFoundWithFolderCColonBackslashGivesItFollowedByTheRelativePath) {
    EXPECT_EQ(failureOf([] { (void)getAbsolutePath(u"x.hdr", u"C:"); }), kPathNotFound);
    EXPECT_EQ(getAbsolutePath(u"a\\x.hdr", u"C:\\"), u"C:\\a\\x.hdr");
    EXPECT_EQ(getAbsolutePath(u"x.hdr", u"C:\\"), u"C:\\x.hdr");
}

TEST(AbsolutePath, FailsForEveryFolderWithoutASeparator) {
    for (const char16_t* folder : {u"", u"Work", u"\\\\", u"\\\\srv", u"//srv"}) {
        EXPECT_EQ(failureOf([&] { (void)getAbsolutePath(u"x.hdr", folder); }), kPathNotFound);
    }
}

TEST(AbsolutePath, WithARelativePathThatIsAlreadyAbsoluteReturnsItUnchanged) {
    EXPECT_EQ(getAbsolutePath(u"D:\\x", u"C:\\A"), u"D:\\x");
    EXPECT_EQ(getAbsolutePath(u"\\\\srv\\x", u"C:\\A"), u"\\\\srv\\x");
    EXPECT_EQ(getAbsolutePath(u"//srv/x", u"C:\\A"), u"//srv/x");
    EXPECT_EQ(getAbsolutePath(u"D:x", u"no folder"), u"D:x");
}

TEST(AbsolutePath, WithAFolderOnAServerAndAFileGivesTheFileInThatFolderOnTheServer) {
    EXPECT_EQ(getAbsolutePath(u"a.hdr", u"\\\\srv\\share\\dir"), u"\\\\srv\\share\\dir\\a.hdr");
}

TEST(AbsolutePath, BelowANetworkFolderWithSlashesIsWrittenWithBackslashes) {
    EXPECT_EQ(getAbsolutePath(u"../a.hdr", u"//srv/share/dir/"), u"\\\\srv\\share\\a.hdr");
}

TEST(AbsolutePath, NeverClimbsAboveTheServer) {
    EXPECT_EQ(getAbsolutePath(u"..\\..\\..\\a.hdr", u"\\\\srv\\share"), u"\\\\srv\\a.hdr");
}

TEST(AbsolutePath, OfAnEmptyFileIsEmptyWhateverTheFolder) {
    EXPECT_EQ(getAbsolutePath(u"", u"C:\\A"), u"");
    EXPECT_EQ(getAbsolutePath(u"", u"C:"), u"");
}

TEST(AbsolutePath, IsTheSameForAFolderThatEndsInASeparator) {
    EXPECT_EQ(getAbsolutePath(u"x.hdr", u"C:\\A\\"), u"C:\\A\\x.hdr");
    EXPECT_EQ(getAbsolutePath(u"x.hdr", u"C:\\A"), u"C:\\A\\x.hdr");
}

TEST(AbsolutePath, TakesSlashesOfBothTextsForSeparators) {
    EXPECT_EQ(getAbsolutePath(u"../b/x.hdr", u"C:/A"), u"C:\\b\\x.hdr");
}

TEST(AbsolutePath, TakesSlashesForLettersInATextThatHoldsABackslash) {
    EXPECT_EQ(getAbsolutePath(u"b/c\\x.hdr", u"C:\\A"), u"C:\\A\\b/c\\x.hdr");
    EXPECT_EQ(getAbsolutePath(u"x.hdr", u"C:\\A/B"), u"C:\\A/B\\x.hdr");
}

TEST(AbsolutePath, KeepsASingleDotAsAFolderName) {
    EXPECT_EQ(getAbsolutePath(u".\\x.hdr", u"C:\\A"), u"C:\\A\\.\\x.hdr");
}

TEST(AbsolutePath, DoesNotClimbForTwoDotsBehindAName) {
    EXPECT_EQ(getAbsolutePath(u"a\\..\\x.hdr", u"C:\\A"), u"C:\\A\\a\\..\\x.hdr");
}

TEST(AbsolutePath, ClimbsAndStillKeepsAPathOfNothingButTwoDots) {
    EXPECT_EQ(getAbsolutePath(u"..", u"C:\\A\\B"), u"C:\\A\\..");
    EXPECT_EQ(getAbsolutePath(u"..\\..", u"C:\\A\\B"), u"C:\\..\\..");
}

TEST(AbsolutePath, LeavesEmptyPartsOutExceptTheLast) {
    EXPECT_EQ(getAbsolutePath(u"a\\\\b\\", u"C:\\\\A"), u"C:\\A\\a\\b\\");
    EXPECT_EQ(getAbsolutePath(u"..\\", u"C:\\A\\B"), u"C:\\A\\");
    EXPECT_EQ(getAbsolutePath(u"\\a", u"C:\\A"), u"C:\\A\\a");
}

TEST(AbsolutePath, BelowALoneSeparatorIsTheRelativePath) {
    EXPECT_EQ(getAbsolutePath(u"a.hdr", u"\\"), u"a.hdr");
}

TEST(AbsolutePath, OfOneCharacterIsNotTakenForADrive) {
    EXPECT_EQ(getAbsolutePath(u":", u"C:\\A"), u"C:\\A\\:");
}

TEST(RelativePath, ClimbsToTheCommonFolderAndDescends) {
    EXPECT_EQ(getRelativePath(u"C:\\Work\\Img\\a.hdr", u"c:\\work\\Pat"), u"../Img/a.hdr");
}

TEST(RelativePath, OnAnotherDriveIsTheWholePathWithSlashes) {
    EXPECT_EQ(getRelativePath(u"D:\\x.hdr", u"C:\\Work"), u"D:/x.hdr");
}

TEST(RelativePath,
     WithTheFileInsideTheFolderGivesJustTheNameWithTheFolderDeeperGivesOneTwoDotsSlashPerExtraLevel) {
    EXPECT_EQ(getRelativePath(u"C:\\Work\\a.hdr", u"C:\\Work"), u"a.hdr");
    EXPECT_EQ(getRelativePath(u"C:\\Work\\a.hdr", u"C:\\Work\\"), u"a.hdr");
    EXPECT_EQ(getRelativePath(u"C:\\Work\\a.hdr", u"C:\\Work\\B"), u"../a.hdr");
    EXPECT_EQ(getRelativePath(u"C:\\Work\\a.hdr", u"C:\\Work\\B\\C"), u"../../a.hdr");
}

TEST(RelativePath, OfAnEmptyFileIsEmpty) { EXPECT_EQ(getRelativePath(u"", u"C:\\Work"), u""); }

TEST(RelativePath, OfTheFolderItselfStillEndsInItsName) {
    EXPECT_EQ(getRelativePath(u"C:\\A", u"C:\\A"), u"A");
    EXPECT_EQ(getRelativePath(u"C:\\A\\", u"C:\\A"), u"A");
    EXPECT_EQ(getRelativePath(u"C:\\A", u"C:\\A\\B\\C"), u"../../A");
}

TEST(RelativePath, ComparesWithoutRegardToCaseAndKeepsTheFilesOwnSpelling) {
    EXPECT_EQ(getRelativePath(u"c:\\STRASSE\\\u00C9t\u00E9\\x.hdr", u"C:\\strasse\\\u00E9T\u00C9"), u"x.hdr");
    EXPECT_EQ(getRelativePath(u"C:\\Work\\IMG\\a.hdr", u"C:\\WORK\\Pat"), u"../IMG/a.hdr");
}

TEST(RelativePath, ComparesOneCharacterWithOne) {
    EXPECT_EQ(getRelativePath(u"C:\\Stra\u00DFe\\x.hdr", u"C:\\STRASSE"), u"../Stra\u00DFe/x.hdr");
}

TEST(RelativePath, ComparesGreekAndCyrillicLettersToo) {
    EXPECT_EQ(getRelativePath(u"C:\\\u03B1\u03C9\\\u0436\u044F\\x", u"C:\\\u0391\u03A9\\\u0416\u042F"), u"x");
}

TEST(RelativePath, BetweenTwoNetworkFoldersIsRelative) {
    EXPECT_EQ(getRelativePath(u"\\\\srv\\share\\a.hdr", u"\\\\SRV\\share\\pat"), u"../a.hdr");
    EXPECT_EQ(getRelativePath(u"//srv/share/a.hdr", u"\\\\srv\\share\\pat"), u"../a.hdr");
}

TEST(RelativePath, ToAnotherServerIsTheWholePathWithSlashes) {
    EXPECT_EQ(getRelativePath(u"\\\\one\\share\\a.hdr", u"\\\\two\\share"), u"\\\\one/share/a.hdr");
}

TEST(RelativePath, TakesALocalFolderForANetworkFolderWhereTheFileIsANetworkPath) {
    EXPECT_EQ(getRelativePath(u"\\\\srv\\share\\a.hdr", u"srv\\share"), u"a.hdr");
}

TEST(RelativePath, DoesNotTakeALocalFileForANetworkFileWhereTheFolderIsANetworkPath) {
    EXPECT_EQ(getRelativePath(u"srv\\share\\a.hdr", u"\\\\srv\\share"), u"srv/share/a.hdr");
}

TEST(RelativePath, OfANetworkPrefixAloneIsASubscriptOutOfRange) {
    EXPECT_EQ(errorNumberOf([] { (void)getRelativePath(u"\\\\", u"C:\\A"); }), 9);
    EXPECT_EQ(errorNumberOf([] { (void)getRelativePath(u"//", u"C:\\A"); }), 9);
    EXPECT_EQ(errorNumberOf([] { (void)getRelativePath(u"C:\\a", u"\\\\"); }), 9);
    EXPECT_EQ(errorNumberOf([] { (void)getRelativePath(u"\\\\srv\\a", u""); }), 9);
}

TEST(RelativePath, ToAnEmptyFolderIsTheWholePathWithSlashes) {
    EXPECT_EQ(getRelativePath(u"C:\\A\\x.hdr", u""), u"C:/A/x.hdr");
}

TEST(RelativePath, KeepsEmptyPartsOfTheFile) {
    EXPECT_EQ(getRelativePath(u"C:\\A\\\\x.hdr", u"C:\\A"), u"/x.hdr");
    EXPECT_EQ(getRelativePath(u"D:\\\\x.hdr", u"C:\\A"), u"D://x.hdr");
}

TEST(RelativePath, StopsAtTheFirstDifference) {
    EXPECT_EQ(getRelativePath(u"C:\\A\\B\\x.hdr", u"C:\\Z\\B"), u"../../A/B/x.hdr");
}

TEST(RelativePath, TakesSlashesForLettersInATextThatHoldsABackslash) {
    EXPECT_EQ(getRelativePath(u"C:\\A/B\\x.hdr", u"C:\\A\\B"), u"../../A/B/x.hdr");
}

TEST(RelativePath, OfAFileWithSlashesIsRelativeToAFolderWithBackslashes) {
    EXPECT_EQ(getRelativePath(u"C:/A/B/x.hdr", u"C:\\A"), u"B/x.hdr");
}

TEST(PathShortFormat, KeepsTheFirstTwoLevelsAndTheName) {
    EXPECT_EQ(getPathShortFormat(u"C:\\Programs\\Sub\\Dir\\file.txt"), u"C:\\Programs\\...\\file.txt");
}

TEST(PathShortFormat, LeavesPathsOfOneOrTwoLevelsAsTheyAre) {
    EXPECT_EQ(getPathShortFormat(u"C:\\Programs\\file.txt"), u"C:\\Programs\\file.txt");
    EXPECT_EQ(getPathShortFormat(u"C:\\file.txt"), u"C:\\file.txt");
}

TEST(PathShortFormat, OfABareNameRepeatsItsFirstThreeCharacters) {
    EXPECT_EQ(getPathShortFormat(u"file.txt"), u"filfile.txt");
    EXPECT_EQ(getPathShortFormat(u"ab"), u"abab");
    EXPECT_EQ(getPathShortFormat(u""), u"");
}

TEST(PathShortFormat, ShortensAnyPathOfThreeLevelsHoweverShort) {
    EXPECT_EQ(getPathShortFormat(u"a\\b\\c\\d"), u"a\\b\\...\\d");
    EXPECT_EQ(getPathShortFormat(u"\\\\\\"), u"\\\\...\\");
}

TEST(PathShortFormat, KeepsTwoBackslashesOfANetworkPathAsItsTwoLevels) {
    EXPECT_EQ(getPathShortFormat(u"\\\\srv\\share\\x.hdr"), u"\\\\...\\x.hdr");
}

TEST(PathShortFormat, TakesThreeCharactersInFrontOfASingleBackslash) {
    EXPECT_EQ(getPathShortFormat(u"abcd\\e"), u"abce");
    EXPECT_EQ(getPathShortFormat(u"\\x"), u"\\xx");
}

TEST(PathShortFormat, DoesNotSplitAtSlashes) {
    EXPECT_EQ(getPathShortFormat(u"C:/a/b/c/d"), u"C:/C:/a/b/c/d");
}

TEST(AppName, IsTheNameWithoutExtensionAndCutsThePathToTheFolder) {
    EXPECT_EQ(appName(u"C:\\Pat\\blue.VGR", false), Split(u"blue", u"C:\\Pat\\"));
}

TEST(AppName, WithTheExtensionIsTheWholeName) {
    EXPECT_EQ(appName(u"C:\\Pat\\blue.VGR", true), Split(u"blue.VGR", u"C:\\Pat\\"));
}

TEST(AppName, WithAFolderNameHoldingADotAndAFileWithoutExtensionCutsAtTheFoldersDot) {
    EXPECT_EQ(appName(u"C:\\Pat.d\\blue", false), Split(u"Pat", u"C:\\"));
    EXPECT_EQ(appName(u"C:\\Pat.d\\blue", true), Split(u"blue", u"C:\\Pat.d\\"));
}

TEST(AppName, OfABareNameLeavesThePathAsTheName) {
    EXPECT_EQ(appName(u"blue.VGR", false), Split(u"blue", u"blue"));
    EXPECT_EQ(appName(u"blue.VGR", true), Split(u"blue.VGR", u"blue.VGR"));
    EXPECT_EQ(appName(u"", false), Split(u"", u""));
}

TEST(AppName, LosesOnlyTheLastOfSeveralExtensions) {
    EXPECT_EQ(appName(u"C:\\a.b.c", false), Split(u"a.b", u"C:\\"));
    EXPECT_EQ(appName(u"C:\\.hdr", false), Split(u"", u"C:\\"));
}

TEST(AppName, OfAFolderIsEmpty) { EXPECT_EQ(appName(u"C:\\Pat\\", true), Split(u"", u"C:\\Pat\\")); }

TEST(AppName, DoesNotSplitAtSlashes) {
    EXPECT_EQ(appName(u"C:/Pat/blue.VGR", false), Split(u"C:/Pat/blue", u"C:/Pat/blue"));
}

TEST(Path, OfASlashBSlashCTxtGivesABackslashBBackslash) {
    EXPECT_EQ(getPath(u"a/b/c.txt"), u"a\\b\\");
    EXPECT_EQ(getPath(u"C:\\Pat\\blue.VGR"), u"C:\\Pat\\");
}

TEST(Path, OfABareNameIsEmpty) {
    EXPECT_EQ(getPath(u"c.txt"), u"");
    EXPECT_EQ(getPath(u""), u"");
}

TEST(Path, KeepsEmptyParts) {
    EXPECT_EQ(getPath(u"\\\\srv\\share\\x"), u"\\\\srv\\share\\");
    EXPECT_EQ(getPath(u"a//b"), u"a\\\\");
    EXPECT_EQ(getPath(u"C:\\Pat\\"), u"C:\\Pat\\");
}

TEST(Path, TakesSlashesForLettersInATextThatHoldsABackslash) { EXPECT_EQ(getPath(u"a/b\\c"), u"a/b\\"); }

TEST(NameBeforeDot, EndsAtTheFirstDot) {
    EXPECT_EQ(getNameBeforeDot(u"blue.VGR"), u"blue");
    EXPECT_EQ(getNameBeforeDot(u"a.b.c"), u"a");
}

TEST(NameBeforeDot, IsEmptyWithoutADotAndForALeadingDot) {
    EXPECT_EQ(getNameBeforeDot(u"blue"), u"");
    EXPECT_EQ(getNameBeforeDot(u".hdr"), u"");
    EXPECT_EQ(getNameBeforeDot(u""), u"");
}

TEST(SplitFileName, LosesFourCharactersAndCutsThePathToTheFolder) {
    EXPECT_EQ(fileName(u"C:\\Pics\\sky.hdr"), Split(u"sky", u"C:\\Pics\\"));
}

TEST(SplitFileName, LosesFourCharactersWhateverTheyAre) {
    EXPECT_EQ(fileName(u"C:\\Pics\\sky.jpeg"), Split(u"sky.", u"C:\\Pics\\"));
    EXPECT_EQ(fileName(u"C:\\Pics"), Split(u"", u"C:\\"));
    EXPECT_EQ(fileName(u"C:\\Pics\\"), Split(u"P", u"C:\\"));
}

TEST(SplitFileName, OfABareNameLeavesTheNameInThePath) {
    EXPECT_EQ(fileName(u"sky.hdr"), Split(u"sky", u"sky"));
}

TEST(SplitFileName, OfFourCharactersOrFewerIsEmpty) {
    EXPECT_EQ(fileName(u""), Split(u"", u""));
    EXPECT_EQ(fileName(u"x.h"), Split(u"", u""));
    EXPECT_EQ(fileName(u".hdr"), Split(u"", u""));
}

}  // namespace
}  // namespace vrx::test
