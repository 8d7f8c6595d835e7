// CVrxHDR: loading files, good and bad, as hosts see it.

#include <gtest/gtest.h>

#include "failure.h"
#include "hdr_host.h"

using host::append;
using host::Failure;
using host::failureOf;
using host::FileBytes;
using host::headerFile;
using host::RgbePicture;
using host::Text;
using host::typedReference;

namespace {

const Failure kWrongType{1, L"CVrxHDR::Import", L"File Type Wrong!"};

class HdrLoad : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    host::Hdr hdr_;
    const RgbePicture picture_{5, 3};
    const std::wstring good_ = folder_.write(L"good.hdr", picture_.file());

    /// The same failure however the file is loaded, nothing loading afterwards, and a second try works.
    void expectFailure(const std::wstring& path, const Failure& failure) const {
        const Text name(path.c_str());
        EXPECT_EQ(failureOf(host::call(hdr_.late(), L"Load_HDR", {name})), failure);
        EXPECT_EQ(failureOf(host::call(hdr_.late(), L"Get_Preview", {name})), failure);
        EXPECT_EQ(failureOf(hdr_.load(path)), failure);
        EXPECT_FALSE(hdr_.loading());
        EXPECT_EQ(failureOf(hdr_.preview(path)), failure);
        EXPECT_FALSE(hdr_.loading());
        EXPECT_EQ(hdr_.load(good_), S_OK);
        EXPECT_EQ(hdr_.store(), picture_.store());
    }
    void expectWrongType(const FileBytes& bytes) const {
        expectFailure(folder_.write(L"bad.hdr", bytes), kWrongType);
    }
    void expectSize(const std::string& resolution, long dimX, long dimY) const {
        // Rows of zeros: a repeat run covers up to 127 columns.
        FileBytes file = headerFile(resolution);
        for (long y = 0; y < dimY; ++y) {
            append(file, {2, 2, 0, 0});
            for (long run = 0; run < 4 * ((dimX + 126) / 127); ++run) append(file, {255, 0});
        }
        EXPECT_EQ(hdr_.load(folder_.write(L"sized.hdr", file)), S_OK) << resolution;
        EXPECT_EQ(hdr_.dimX(), dimX) << resolution;
        EXPECT_EQ(hdr_.dimY(), dimY) << resolution;
    }
};

TEST_F(HdrLoad, FillsTheStoreRowByRow) {
    EXPECT_EQ(hdr_.load(good_), S_OK);
    EXPECT_EQ(hdr_.dimX(), 5);
    EXPECT_EQ(hdr_.dimY(), 3);
    EXPECT_EQ(hdr_.store(), picture_.store());
    EXPECT_FALSE(hdr_.loading());
}

TEST_F(HdrLoad, WithBInvertTrueLeavesRow0AllZerosAndPutsTheLastScanlineInRow1) {
    EXPECT_EQ(hdr_.load(good_, true), S_OK);
    EXPECT_EQ(hdr_.store(), picture_.store(true));
    EXPECT_EQ(hdr_.compo(0, 0, 0), 0.5F * 0x1p-136F);
    EXPECT_EQ(hdr_.compo(2, 1, 3), host::linearOf(picture_.at(2, 2).e, picture_.at(2, 2).e));
}

TEST_F(HdrLoad, TakesBInvertInEveryFormAndInvertsWhenItIsLeftOut) {
    const Text name(good_.c_str());
    VARIANT_BOOL typed = VARIANT_FALSE;
    VARIANT variable = host::integer(0);
    const VARIANT straight[] = {host::truth(false), typedReference(VT_BOOL, &typed),
                                host::reference(variable)};
    for (const VARIANT& form : straight) {
        EXPECT_EQ(host::call(hdr_.late(), L"Load_HDR", {name, form}).code, S_OK);
        EXPECT_EQ(hdr_.store(), picture_.store(false));
    }
    EXPECT_EQ(typed, VARIANT_FALSE);
    typed = VARIANT_TRUE;
    for (const VARIANT& form : {host::truth(true), typedReference(VT_BOOL, &typed), host::omitted()}) {
        hdr_->Cls();
        EXPECT_EQ(host::call(hdr_.late(), L"Load_HDR", {name, form}).code, S_OK);
        EXPECT_EQ(hdr_.store(), picture_.store(true));
    }
    hdr_->Cls();
    EXPECT_EQ(host::call(hdr_.late(), L"Load_HDR", {name}).code, S_OK);
    EXPECT_EQ(hdr_.store(), picture_.store(true));
}

TEST_F(HdrLoad, OfAPreviewNeverInverts) {
    EXPECT_EQ(hdr_.load(good_, true), S_OK);
    EXPECT_EQ(hdr_.preview(good_), S_OK);
    EXPECT_EQ(hdr_.store(), picture_.store(false));
}

TEST_F(HdrLoad, OfPlusX640MinusY480GivesTheSameSizesAsMinusY480PlusX640) {
    expectSize("+X 640 -Y 480", 640, 480);
    expectSize("-Y 480 +X 640", 640, 480);
}

TEST_F(HdrLoad, OfMinusY480MinusY640IsAcceptedAsDimY480AndDimX640) { expectSize("-Y 480 -Y 640", 640, 480); }

TEST_F(HdrLoad, TakesEmptyPictures) {
    expectSize("-Y 0 +X 7", 7, 0);
    expectSize("-Y 4 +X 0", 0, 4);
}

TEST_F(HdrLoad, CopiesALiteralRunOnlyUpToTheRowsEndButSkipsAllItsBytes) {
    FileBytes file = headerFile(3, 1);
    append(file, {2, 2, 0, 3, 5, 11, 12, 13, 99, 98, 131, 21, 131, 31, 131, 136});
    EXPECT_EQ(hdr_.load(folder_.write(L"long_run.hdr", file)), S_OK);
    EXPECT_EQ(hdr_.store(), FileBytes({11, 12, 13, 0, 0, 0, 0, 0, 21,  21,  21,  0, 0, 0, 0, 0,
                                       31, 31, 31, 0, 0, 0, 0, 0, 136, 136, 136, 0, 0, 0, 0, 0}));
}

TEST_F(HdrLoad, OfAnEmptyFileFails) { expectWrongType({}); }

TEST_F(HdrLoad, OfAHeaderWithNoResolutionLineWithinTheFirst10000BytesFails) {
    FileBytes file;
    while (file.size() < 10001) append(file, {'#', ' ', 'c', 'o', 'm', 'm', 'e', 'n', 't', '\n'});
    const FileBytes picture = picture_.file();
    file.insert(file.end(), picture.begin(), picture.end());
    expectWrongType(file);
}

TEST_F(HdrLoad, OfAHeaderLineOf1000CharactersFails) {
    FileBytes file(1001, 'x');
    append(file, {'\n', '-', 'Y', ' ', '0', ' ', '+', 'X', ' ', '0', '\n'});
    expectWrongType(file);
}

TEST_F(HdrLoad, OfSizesThatAreNoNumbersFails) {
    for (const char* resolution : {"-Y 3", "-Y x +X 5", "-Y 3 +X", "-Y -3 +X 5", "-Y 3 +X 99999999999"}) {
        expectWrongType(headerFile(resolution));
    }
}

TEST_F(HdrLoad, OfSizesThatNoMemoryHoldsFails) {
    expectFailure(folder_.write(L"huge.hdr", headerFile(60000, 60000)), {7, L"CVrxHDR", L"Out of memory"});
    expectFailure(folder_.write(L"huge.hdr", headerFile(2147483647, 2147483647)),
                  {7, L"CVrxHDR", L"Out of memory"});
}

TEST_F(HdrLoad, OfATruncatedFileFailsAndKeepsTheRowsDecoded) {
    FileBytes file = picture_.file();
    file.resize(file.size() - 30);
    EXPECT_EQ(failureOf(hdr_.load(folder_.write(L"cut.hdr", file))), kWrongType);
    EXPECT_EQ(hdr_.dimX(), 5);
    EXPECT_EQ(hdr_.dimY(), 3);
    EXPECT_EQ(hdr_.compo(4, 0, 3), host::linearOf(picture_.at(4, 0).e, picture_.at(4, 0).e));
}

TEST_F(HdrLoad, OfScanlinesStoredFlatFailsAfterOnHeaderLoadedHasBeenRaised) {
    FileBytes flat = headerFile(5, 3);
    append(flat, std::vector<int>(60, 100));
    host::Listener listener(hdr_);
    EXPECT_EQ(failureOf(hdr_.load(folder_.write(L"flat.hdr", flat))), kWrongType);
    EXPECT_EQ(listener.log, "header(5,3) ");
    EXPECT_EQ(failureOf(hdr_.preview(folder_ / L"flat.hdr")), kWrongType);
    EXPECT_EQ(listener.log, "header(5,3) header(5,3) ");
    listener.disconnect();
    expectWrongType(flat);
}

TEST_F(HdrLoad, OfTheNameErrorFails) {
    expectFailure(L"Error", kWrongType);
    expectFailure(L"error", {53, L"CVrxHDR", L"File not found"});
}

TEST_F(HdrLoad, OfAMissingFileFails) {
    expectFailure(folder_ / L"missing.hdr", {53, L"CVrxHDR", L"File not found"});
}

TEST_F(HdrLoad, OfAFileInAMissingFolderFails) {
    expectFailure(folder_ / L"missing\\good.hdr", {76, L"CVrxHDR", L"Path not found"});
}

TEST_F(HdrLoad, OfAFolderFails) {
    expectFailure(folder_.path(), {75, L"CVrxHDR", L"Path/File access error"});
}

TEST_F(HdrLoad, OfAFileThatIsLockedFails) {
    const std::wstring locked = folder_.write(L"locked.hdr", picture_.file());
    const auto lock =
        vrx::validHandle(CreateFileW(locked.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    expectFailure(locked, {70, L"CVrxHDR", L"Permission denied"});
}

TEST_F(HdrLoad, OfANameThatNoFileCanHaveFails) {
    expectFailure(folder_ / L"a?b.hdr", {52, L"CVrxHDR", L"Bad file name or number"});
}

TEST_F(HdrLoad, OfABlankNameDoesNothing) {
    hdr_.set(picture_);
    host::Listener listener(hdr_);
    for (const wchar_t* blank : {L"", L"   "}) {
        EXPECT_EQ(host::call(hdr_.late(), L"Load_HDR", {Text(blank)}).code, S_OK);
        EXPECT_EQ(host::call(hdr_.late(), L"Get_Preview", {Text(blank)}).code, S_OK);
    }
    EXPECT_EQ(hdr_->Get_Preview(nullptr), S_OK);
    EXPECT_EQ(listener.log, "");
    EXPECT_EQ(hdr_.store(), picture_.store());
}

TEST_F(HdrLoad, KeepsTheOldSizesUntilTheResolutionLineIsRead) {
    hdr_.set(picture_);
    EXPECT_NE(hdr_.load(folder_ / L"missing.hdr"), S_OK);
    EXPECT_NE(hdr_.load(folder_.write(L"bad.hdr", {'#', '\n'})), S_OK);
    EXPECT_EQ(hdr_.dimX(), 5);
    EXPECT_EQ(hdr_.dimY(), 3);
    EXPECT_EQ(hdr_.store(), picture_.store());
}

TEST_F(HdrLoad, TakesNamesInAnyScript) {
    const std::wstring name =
        folder_.write(L"\u5199\u771F \u0441\u043D\u0438\u043C\u043E\u043A \u00E9.hdr", picture_.file());
    EXPECT_EQ(hdr_.load(name), S_OK);
    EXPECT_EQ(hdr_.store(), picture_.store());
    hdr_->Cls();
    EXPECT_EQ(hdr_.preview(name), S_OK);
    EXPECT_EQ(hdr_.store(), picture_.store());
}

TEST_F(HdrLoad, TakesPathsLongerThan260Characters) {
    std::wstring path = L"\\\\?\\" + folder_.path();
    for (int i = 0; i < 3; ++i) {
        path += L"\\" + std::wstring(120, L'a');
        ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
    }
    path += L"\\long.hdr";
    host::writeBytes(path, picture_.file());
    EXPECT_EQ(hdr_.preview(path), S_OK);
    EXPECT_EQ(hdr_.store(), picture_.store());
    hdr_->Cls();
    EXPECT_EQ(hdr_.load(path), S_OK);
    EXPECT_EQ(hdr_.store(), picture_.store());
}

TEST_F(HdrLoad, LeavesTheFileClosed) {
    EXPECT_EQ(hdr_.load(good_), S_OK);
    const auto exclusive =
        vrx::validHandle(CreateFileW(good_.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(exclusive);
}

}  // namespace
