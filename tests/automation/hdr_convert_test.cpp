// CVrxHDR: Convert_HDR_to_BMP, the file and the rules of its arguments.

#include <gtest/gtest.h>

#include <algorithm>

#include "failure.h"
#include "hdr_host.h"
#include "picture_pixels.h"

using host::Failure;
using host::failureOf;
using host::FileBytes;
using host::Hdr;
using host::RgbePicture;
using host::Text;

namespace {

class HdrConvert : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const RgbePicture picture_{7, 5};
    const Hdr hdr_;
    const std::wstring file_ = folder_ / L"out.bmp";

    void SetUp() override {
        ASSERT_EQ(hdr_.set(picture_), S_OK);
        hdr_.view(1, 2);
    }
    void expectProperties() const {
        float exposure = -1;
        float gamma = -1;
        hdr_->get_Exposure(&exposure);
        hdr_->get_Gamma(&gamma);
        EXPECT_EQ(exposure, 1);
        EXPECT_EQ(gamma, 2);
    }
    /// What the file holds behind its headers.
    [[nodiscard]] FileBytes written() const {
        const FileBytes bytes = host::readBytes(file_);
        return bytes.size() < 54 ? FileBytes{} : FileBytes(bytes.begin() + 54, bytes.end());
    }
    void expectWritten(const FileBytes& bitmap) const {
        EXPECT_EQ(written(), bitmap);
        expectProperties();
        DeleteFileW(file_.c_str());
    }
};

std::uint32_t number(const FileBytes& bytes, std::size_t offset, int size) {
    std::uint32_t value = 0;
    for (int i = 0; i < size; ++i)
        value |= static_cast<std::uint32_t>(bytes[offset + static_cast<std::size_t>(i)]) << (8 * i);
    return value;
}

TEST_F(HdrConvert, WritesA24BitBmpFileWithItsPixelsAt54) {
    EXPECT_EQ(hdr_.convert(file_), S_OK);
    const FileBytes bytes = host::readBytes(file_);
    ASSERT_EQ(bytes.size(), 54u + 24u * 5u);
    EXPECT_EQ(bytes[0], 'B');
    EXPECT_EQ(bytes[1], 'M');
    EXPECT_EQ(number(bytes, 2, 4), bytes.size());
    EXPECT_EQ(number(bytes, 6, 4), 0u);
    EXPECT_EQ(number(bytes, 10, 4), 54u);
    EXPECT_EQ(number(bytes, 14, 4), 40u);
    EXPECT_EQ(number(bytes, 18, 4), 7u);
    EXPECT_EQ(number(bytes, 22, 4), 5u) << "positive for rows from the bottom up";
    EXPECT_EQ(number(bytes, 26, 2), 1u);
    EXPECT_EQ(number(bytes, 28, 2), 24u);
    EXPECT_EQ(number(bytes, 30, 4), 0u);
    expectWritten(picture_.bitmap(1, 2));
}

TEST_F(HdrConvert, WithMinus1And2Point2KeepsTheExposureAndUsesTheGammaWithoutChangingTheProperty) {
    EXPECT_EQ(hdr_.convert(file_, -1, 2.2F), S_OK);
    expectWritten(picture_.bitmap(1, 2.2F));
}

TEST_F(HdrConvert, WithOneHalfAndOneHalfUsesTheInverseGamma2) {
    EXPECT_EQ(hdr_.convert(file_, 0.5F, 0.5F), S_OK);
    expectWritten(picture_.bitmap(0.5F, 0.5F));
}

TEST_F(HdrConvert, WithMinus1OrLessLeavesTheCurrentValuesInForce) {
    EXPECT_EQ(hdr_.convert(file_, -1, -1), S_OK);
    expectWritten(picture_.bitmap(1, 2));
    EXPECT_EQ(hdr_.convert(file_, -7.5F, -3), S_OK);
    expectWritten(picture_.bitmap(1, 2));
    EXPECT_EQ(hdr_.convert(file_, -0.5F, -1), S_OK);
    expectWritten(picture_.bitmap(-0.5F, 2));
}

TEST_F(HdrConvert, TakesANegativeGammaAboveMinus1) {
    EXPECT_EQ(hdr_.convert(file_, 0, -0.5F), S_OK);
    expectWritten(picture_.bitmap(0, -0.5F));
}

TEST_F(HdrConvert, FailsWhereThePowerOverflows) {
    // The largest component and the inverse gamma 200: (255.5 * 2^119)^200.
    EXPECT_EQ(failureOf(hdr_.convert(file_, 0, 0.005F)), (Failure{6, L"CVrxHDR", L"Overflow"}));
    EXPECT_FALSE(host::exists(file_));
    EXPECT_EQ(hdr_.convert(file_, 1, 2), S_OK);
    expectWritten(picture_.bitmap(1, 2));
}

TEST_F(HdrConvert, TakesLateBoundArgumentsAndDefaults) {
    const Text name(file_.c_str());
    EXPECT_EQ(host::call(hdr_.late(), L"Convert_HDR_to_BMP", {name}).code, S_OK);
    expectWritten(picture_.bitmap(1, 2));
    EXPECT_EQ(host::call(hdr_.late(), L"Convert_HDR_to_BMP", {name, host::omitted(), host::number(3)}).code,
              S_OK);
    expectWritten(picture_.bitmap(1, 3));
    hdr_->put_Gamma(2);
    EXPECT_EQ(host::call(hdr_.late(), L"Convert_HDR_to_BMP", {name, host::integer(4)}).code, S_OK);
    expectWritten(picture_.bitmap(4, 2));
}

TEST_F(HdrConvert, LeavesItsValuesToTheNextPreviewButNotToGetBmp) {
    const std::wstring file = folder_.write(L"picture.hdr", picture_.file());
    host::Listener listener(hdr_);
    host::Pixels seen;
    listener.onRefresh = [&](IDispatch& picture) { seen = host::pixelsOf(picture); };
    EXPECT_EQ(hdr_.convert(file_, 3, 0.5F), S_OK);
    EXPECT_EQ(hdr_.preview(file), S_OK);
    EXPECT_EQ(seen, host::pixels24(7, 5, picture_.bitmap(3, 0.5F)));
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(seen, host::pixels24(7, 5, picture_.bitmap(1, 2)));
    EXPECT_EQ(hdr_.convert(file_), S_OK);
    expectWritten(picture_.bitmap(1, 2));
}

TEST_F(HdrConvert, WithAutomaticExpositionFollowsTheFormulaOfItsType) {
    hdr_->put_AutoExposition(VARIANT_TRUE);
    EXPECT_EQ(hdr_.convert(file_), S_OK);
    expectWritten(picture_.bitmap(1, 2, host::Exposition::Max));
    hdr_->put_AutoExpositionType(HDRAETMinMax);
    EXPECT_EQ(hdr_.convert(file_, 2, 1.5F), S_OK);
    expectWritten(picture_.bitmap(2, 1.5F, host::Exposition::MinMax));
}

TEST_F(HdrConvert, WithAGammaOf0DividesByZero) {
    const Failure divided{11, L"CVrxHDR", L"Division by zero"};
    EXPECT_EQ(failureOf(hdr_.convert(file_, 1, 0)), divided);
    EXPECT_EQ(failureOf(host::call(hdr_.late(), L"Convert_HDR_to_BMP",
                                   {Text(file_.c_str()), host::omitted(), host::integer(0)})),
              divided);
    EXPECT_FALSE(host::exists(file_));
    expectProperties();
}

TEST_F(HdrConvert, DoesNotTouchThePreviewBitmapAndRaisesNoEvent) {
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    const host::Listener listener(hdr_);
    EXPECT_EQ(hdr_.convert(file_, 5, 1), S_OK);
    EXPECT_EQ(listener.log, "");
    vrx::ComPtr<IPictureDisp> picture;
    ASSERT_EQ(hdr_->Get_Picture(0, 0, 7, 5, 0, 0, 7, 5, picture.put()), S_OK);
    EXPECT_EQ(host::pixelsOf(*picture), host::pixels24(7, 5, picture_.bitmap(1, 2)));
}

TEST_F(HdrConvert, NestedFailureReachesTheHostWithTheInnerCallsNumberAndDescription) {
    const std::wstring nowhere = folder_ / L"missing\\out.bmp";
    const Failure inner{76, L"CVrxImage", L"Path not found"};
    EXPECT_EQ(failureOf(hdr_.convert(nowhere)), inner);
    EXPECT_EQ(failureOf(host::call(hdr_.late(), L"Convert_HDR_to_BMP", {Text(nowhere.c_str())})), inner);
    EXPECT_EQ(failureOf(hdr_.convert(folder_.path())),
              (Failure{75, L"CVrxImage", L"Path/File access error"}));
}

TEST_F(HdrConvert, LeavesTheOldFileWhenItFails) {
    const std::wstring locked = folder_.write(L"locked.bmp", {1, 2, 3});
    {
        const auto lock = vrx::validHandle(
            CreateFileW(locked.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        const Failure failure = failureOf(hdr_.convert(locked));
        EXPECT_NE(failure.number, 0);
        EXPECT_EQ(failure.source, L"CVrxImage");
    }
    EXPECT_EQ(host::readBytes(locked), FileBytes({1, 2, 3}));
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>({L"locked.bmp"}));
}

TEST_F(HdrConvert, ReplacesAnExistingFileCompletely) {
    folder_.write(L"out.bmp", FileBytes(5000, 1));
    EXPECT_EQ(hdr_.convert(file_), S_OK);
    EXPECT_EQ(host::readBytes(file_).size(), 54u + 24u * 5u);
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>({L"out.bmp"}));
}

TEST_F(HdrConvert, OfAnEmptyObjectWritesOneBlackPixel) {
    const Hdr empty;
    EXPECT_EQ(empty.convert(file_), S_OK);
    const FileBytes file = host::readBytes(file_);
    ASSERT_EQ(file.size(), 54u + 4u);
    EXPECT_EQ(FileBytes(file.end() - 4, file.end()), FileBytes(4, 0));
}

/// A file of runs: every row has the components 10, 20, 30 and 136 + y mod 2.
FileBytes largeFile(int size) {
    FileBytes file = host::headerFile(size, size);
    for (int y = 0; y < size; ++y) {
        host::append(file, {2, 2, size >> 8, size & 255});
        for (const int value : {10, 20, 30, 136 + y % 2}) {
            for (int left = size; left > 0; left -= 127)
                host::append(file, {128 + std::min(left, 127), value});
        }
    }
    return file;
}

TEST_F(HdrConvert, Of10000By10000PixelsWorksAfterGetBmpToo) {
    constexpr int kSize = 10000;
    constexpr LONGLONG kStride = 3 * kSize;
    ASSERT_EQ(hdr_.load(folder_.write(L"large.hdr", largeFile(kSize))), S_OK);
    hdr_.view(0, 1);
    ASSERT_EQ(hdr_->Get_BMP(), S_OK);
    ASSERT_EQ(failureOf(hdr_.convert(file_)), host::kNone);
    const auto file =
        vrx::validHandle(CreateFileW(file_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size{};
    ASSERT_TRUE(GetFileSizeEx(file.get(), &size));
    EXPECT_EQ(size.QuadPart, 54 + kStride * kSize);
    // (M + 0.5) * 2^(E - 136), half to even; the file begins with the last row, of exponent 137.
    for (const auto& [row, expected] : {std::pair{0LL, FileBytes{61, 41, 21}}, {9999LL, {30, 20, 10}}}) {
        for (const LONGLONG column : {0LL, 9999LL}) {
            LARGE_INTEGER place{};
            place.QuadPart = 54 + row * kStride + 3 * column;
            FileBytes pixel(3);
            DWORD read = 0;
            ASSERT_TRUE(SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN));
            ASSERT_TRUE(ReadFile(file.get(), pixel.data(), 3, &read, nullptr));
            EXPECT_EQ(pixel, expected) << row << ' ' << column;
        }
    }
}

}  // namespace
