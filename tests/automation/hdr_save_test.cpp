// CVrxHDR: Save_HDR, the bytes of its files and its failures.

#include <gtest/gtest.h>

#include "failure.h"
#include "hdr_host.h"
#include "message_box_watcher.h"

using host::append;
using host::Failure;
using host::failureOf;
using host::FileBytes;
using host::Hdr;
using host::RgbePicture;
using host::Text;

namespace {

const Failure kFailed{1, L"CVrxHDR::Export", L"File Error!"};

/// The header that every file begins with.
FileBytes header(int width, int height) {
    const std::string text =
        "#?RADIANCE\nSOFTWARE=QUILB\nFORMAT=32-bit_rle_rgbe\nEXPOSURE=1.0000000000000\n\n-Y " +
        std::to_string(height) + " +X " + std::to_string(width) + "\n";
    return {text.begin(), text.end()};
}

class HdrSave : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const Hdr hdr_;
    const std::wstring file_ = folder_ / L"out.hdr";

    /// The file of a picture of one row whose red plane has these bytes and whose other planes are 0.
    FileBytes savedRow(const std::vector<int>& red) {
        RgbePicture picture(static_cast<int>(red.size()), 1);
        picture.fill({0, 0, 0, 0});
        for (std::size_t x = 0; x < red.size(); ++x) {
            picture.at(static_cast<int>(x), 0).r = static_cast<std::uint8_t>(red[x]);
        }
        EXPECT_EQ(hdr_.set(picture), S_OK);
        EXPECT_EQ(hdr_.save(file_), S_OK);
        return host::readBytes(file_);
    }
    /// The file whose red plane is encoded by these bytes, the other planes by these.
    static FileBytes row(int width, const std::vector<int>& red, const std::vector<int>& zeros) {
        FileBytes file = header(width, 1);
        append(file, {2, 2, width >> 8, width & 255});
        append(file, red);
        for (int plane = 0; plane < 3; ++plane) append(file, zeros);
        return file;
    }
    /// Fails in the same way early and late-bound, each time with one message box; nothing in the folder
    /// changes.
    void expectFailure(const std::wstring& path) const {
        const std::vector<std::wstring> before = folder_.names();
        host::MessageBoxWatcher watcher;
        std::wstring written = L"old";
        EXPECT_EQ(failureOf(hdr_.save(path, &written)), kFailed);
        EXPECT_EQ(written, L"");
        EXPECT_EQ(failureOf(host::call(hdr_.late(), L"Save_HDR", {Text(path.c_str())})), kFailed);
        const std::vector<host::MessageBox> boxes = watcher.boxes();
        ASSERT_EQ(boxes.size(), 2u);
        for (const host::MessageBox& box : boxes) {
            const std::wstring beginning = L"Cannot write " + path + L": ";
            EXPECT_EQ(box.text.substr(0, beginning.size()), beginning);
            EXPECT_GT(box.text.size(), beginning.size()) << "the reason";
            EXPECT_TRUE(box.exclamation);
            EXPECT_TRUE(box.onlyOk);
        }
        EXPECT_EQ(folder_.names(), before);
    }
};

TEST_F(HdrSave, OfA640By480ImageBeginsWithItsHeaderAndWithTheWidthInEveryScanline) {
    EXPECT_EQ(hdr_.set(RgbePicture(640, 480).fill({1, 2, 3, 4})), S_OK);
    EXPECT_EQ(hdr_.save(file_), S_OK);
    FileBytes expected = header(640, 480);
    for (int y = 0; y < 480; ++y) {
        append(expected, {2, 2, 2, 128});
        for (int c = 1; c <= 4; ++c) append(expected, {255, c, 255, c, 255, c, 255, c, 255, c, 133, c});
    }
    EXPECT_EQ(host::readBytes(file_), expected);
}

TEST_F(HdrSave, OfAPlaneOf200EqualBytesIsARunOf127AndARunOf73) {
    EXPECT_EQ(savedRow(std::vector<int>(200, 9)), row(200, {255, 9, 201, 9}, {255, 0, 201, 0}));
}

TEST_F(HdrSave, OfAPlane117777IsAShortRunAndARun) {
    EXPECT_EQ(savedRow({1, 1, 7, 7, 7, 7}), row(6, {130, 1, 132, 7}, {134, 0}));
}

TEST_F(HdrSave, OfAPlane11567777IsALiteralChunkAndARun) {
    EXPECT_EQ(savedRow({1, 1, 5, 6, 7, 7, 7, 7}), row(8, {4, 1, 1, 5, 6, 132, 7}, {136, 0}));
}

TEST_F(HdrSave, OfAPlaneOf300DistinctBytesIsLiteralChunksOf128And128And44) {
    std::vector<int> plane;
    for (int x = 0; x < 300; ++x) plane.push_back(x * 7 & 255);
    std::vector<int> encoded;
    for (const auto& [first, count] : {std::pair{0, 128}, {128, 128}, {256, 44}}) {
        encoded.push_back(count);
        encoded.insert(encoded.end(), plane.begin() + first, plane.begin() + first + count);
    }
    EXPECT_EQ(savedRow(plane), row(300, encoded, {255, 0, 255, 0, 174, 0}));
}

TEST_F(HdrSave, ReturnsThePathAsItWasGiven) {
    hdr_.set(RgbePicture(2, 2));
    const std::wstring unicode = folder_ / L"\u5199\u771F \u00E9.hdr";
    for (const std::wstring& path : {file_, unicode, L"\\\\?\\" + folder_.path() + L"\\long form.hdr"}) {
        std::wstring written;
        EXPECT_EQ(hdr_.save(path, &written), S_OK);
        EXPECT_EQ(written, path);
        EXPECT_EQ(host::readBytes(path).size(), header(2, 2).size() + 2 * (4 + 4 * 3));
    }
    const host::Outcome outcome = host::call(hdr_.late(), L"Save_HDR", {Text(file_.c_str())});
    ASSERT_EQ(V_VT(&outcome.result.get()), VT_BSTR);
    EXPECT_EQ(V_BSTR(&outcome.result.get()), file_);
}

TEST_F(HdrSave, OntoAnExistingFileReplacesItCompletely) {
    folder_.write(L"out.hdr", FileBytes(100000, 5));
    EXPECT_EQ(savedRow({1, 1, 7, 7, 7, 7}), row(6, {130, 1, 132, 7}, {134, 0}));
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>({L"out.hdr"}));
}

TEST_F(HdrSave, ToABlankNameDoesNothing) {
    hdr_.set(RgbePicture(2, 2));
    host::MessageBoxWatcher watcher;
    for (const wchar_t* blank : {L"", L"  "}) {
        std::wstring written = L"old";
        EXPECT_EQ(hdr_.save(blank, &written), S_OK);
        EXPECT_EQ(written, L"");
    }
    EXPECT_TRUE(watcher.boxes().empty());
}

TEST_F(HdrSave, OfAnEmptyObjectIsAHeaderOfNoPixels) {
    EXPECT_EQ(hdr_.save(file_), S_OK);
    EXPECT_EQ(host::readBytes(file_), header(0, 0));
}

TEST_F(HdrSave, LeavesOutTheColumnAndRowBehindThePicture) {
    vrx::Variant pixels = vrx::makeArray(host::byteArray({{0, 4}, {0, 1}, {0, 3}}, FileBytes(40, 77)));
    ASSERT_EQ(hdr_->Set_HDR(&pixels.get()), S_OK);
    EXPECT_EQ(hdr_.save(file_), S_OK);
    EXPECT_EQ(host::readBytes(file_), row(4, {132, 77}, {132, 77}));
}

TEST_F(HdrSave, DoesNotDependOnTheViewingParameters) {
    hdr_.view(5, 3);
    hdr_->put_AutoExposition(VARIANT_TRUE);
    EXPECT_EQ(savedRow({4, 4, 4, 4}), row(4, {132, 4}, {132, 0}));
}

TEST_F(HdrSave, FollowedByALoadGivesTheSameStore) {
    for (const int width : {1, 3, 4, 127, 128, 129, 300}) {
        const RgbePicture picture(width, 9);
        EXPECT_EQ(hdr_.set(picture), S_OK);
        EXPECT_EQ(hdr_.save(file_), S_OK);
        const Hdr other;
        EXPECT_EQ(other.load(file_), S_OK);
        EXPECT_EQ(other.store(), picture.store()) << width;
    }
}

TEST_F(HdrSave, WritesTheRowsInTheOrderOfTheStore) {
    const RgbePicture picture(3, 4);
    const std::wstring original = folder_.write(L"original.hdr", picture.file());
    EXPECT_EQ(hdr_.load(original, true), S_OK);
    EXPECT_EQ(hdr_.save(file_), S_OK);
    const Hdr other;
    EXPECT_EQ(other.load(file_), S_OK);
    // Row 0 of the inverted store is black, the first scanline is in its extra row and is not written.
    EXPECT_EQ(other.compo(0, 0, 3), 0.5F * 0x1p-136F);
    for (int y = 1; y < 4; ++y) EXPECT_EQ(other.compo(2, y, 0), hdr_.compo(2, y, 0));
    EXPECT_EQ(other.compo(1, 3, 3), host::linearOf(picture.at(1, 1).e, picture.at(1, 1).e));
}

TEST_F(HdrSave, OfAWidthOf65536FailsAndLeavesTheOldFile) {
    vrx::Variant wide = vrx::makeArray(host::byteArray({{0, 65536}, {0, 1}, {0, 3}}));
    ASSERT_EQ(hdr_->Set_HDR(&wide.get()), S_OK);
    folder_.write(L"out.hdr", {1, 2, 3});
    expectFailure(file_);
    EXPECT_EQ(host::readBytes(file_), FileBytes({1, 2, 3}));
}

TEST_F(HdrSave, OfAWidthOf65535Succeeds) {
    vrx::Variant wide = vrx::makeArray(host::byteArray({{0, 65535}, {0, 1}, {0, 3}}));
    ASSERT_EQ(hdr_->Set_HDR(&wide.get()), S_OK);
    EXPECT_EQ(hdr_.save(file_), S_OK);
    const FileBytes bytes = host::readBytes(file_);
    const std::size_t scanline = header(65535, 1).size();
    ASSERT_GT(bytes.size(), scanline + 4);
    EXPECT_EQ(FileBytes(bytes.begin() + static_cast<std::ptrdiff_t>(scanline),
                        bytes.begin() + static_cast<std::ptrdiff_t>(scanline) + 4),
              FileBytes({2, 2, 255, 255}));
}

TEST_F(HdrSave, ToAMissingFolderFails) {
    hdr_.set(RgbePicture(2, 2));
    expectFailure(folder_ / L"missing\\out.hdr");
}

TEST_F(HdrSave, ToAFolderFails) {
    hdr_.set(RgbePicture(2, 2));
    expectFailure(folder_.path());
}

TEST_F(HdrSave, OntoAReadOnlyFileFailsAndLeavesIt) {
    hdr_.set(RgbePicture(2, 2));
    folder_.write(L"out.hdr", {1, 2, 3});
    SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY);
    expectFailure(file_);
    EXPECT_EQ(host::readBytes(file_), FileBytes({1, 2, 3}));
}

TEST_F(HdrSave, OntoALockedFileFailsAndLeavesIt) {
    hdr_.set(RgbePicture(2, 2));
    folder_.write(L"out.hdr", {1, 2, 3});
    {
        const auto lock =
            vrx::validHandle(CreateFileW(file_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(lock);
        expectFailure(file_);
    }
    EXPECT_EQ(host::readBytes(file_), FileBytes({1, 2, 3}));
}

TEST_F(HdrSave, WorksAgainAfterAFailure) {
    hdr_.set(RgbePicture(2, 2));
    expectFailure(folder_ / L"missing\\out.hdr");
    EXPECT_EQ(hdr_.save(file_), S_OK);
    EXPECT_TRUE(host::exists(file_));
}

}  // namespace
