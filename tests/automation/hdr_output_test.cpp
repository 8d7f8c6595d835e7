// CVrxHDR: tone-mapped bitmaps, pictures of rectangles, and BMP files.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "failure.h"
#include "hdr_host.h"
#include "picture_pixels.h"

using host::Exposition;
using host::Failure;
using host::failureOf;
using host::FileBytes;
using host::Hdr;
using host::Listener;
using host::Pixels;
using host::pixels24;
using host::pixelsOf;
using host::Rgbe;
using host::RgbePicture;
using host::strideOf;

namespace {

class HdrOutput : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const RgbePicture picture_{7, 5};
    const Hdr hdr_;
    Listener listener_{hdr_};
    Pixels painted_;

    void SetUp() override {
        ASSERT_EQ(hdr_.set(picture_), S_OK);
        listener_.onRefresh = [this](IDispatch& picture) { painted_ = pixelsOf(picture); };
    }
    /// One pixel as Get_BMP shows it: red, green, blue.
    FileBytes painted(Rgbe pixel) {
        EXPECT_EQ(hdr_.set(RgbePicture(1, 1).fill(pixel)), S_OK);
        EXPECT_EQ(hdr_->Get_BMP(), S_OK);
        const FileBytes& bytes = painted_.bytes;
        if (painted_.width != 1) return {};
        return {bytes[2], bytes[1], bytes[0]};
    }
    void expectPainted(const FileBytes& bitmap) {
        EXPECT_EQ(hdr_->Get_BMP(), S_OK);
        EXPECT_EQ(painted_, pixels24(7, 5, bitmap));
    }
};

TEST_F(HdrOutput, OfAllPixelsFollowsTheFormula) {
    const std::pair<float, float> cases[] = {{0, 1}, {1.5F, 2.2F}, {-3, 6}, {16, 1}, {-20, 1}};
    for (const auto& [exposure, gamma] : cases) {
        hdr_.view(exposure, gamma);
        expectPainted(picture_.bitmap(exposure, gamma));
    }
}

TEST_F(HdrOutput, RoundsHalvesToEvenAndHoldsTo255) {
    hdr_.view(0, 1);
    EXPECT_EQ(painted({128, 129, 130, 136}), FileBytes({128, 130, 130}));
    EXPECT_EQ(painted({200, 127, 126, 137}), FileBytes({255, 255, 253}));
    EXPECT_EQ(painted({0, 0, 0, 0}), FileBytes({0, 0, 0}));
}

TEST_F(HdrOutput, OfANewObjectPaintedAfterGammaButBeforeExposureIsAssignedIsBlack) {
    hdr_->put_Gamma(2);
    expectPainted(FileBytes(24 * 5));
}

TEST_F(HdrOutput, OfANewObjectPaintedBeforeGammaAndExposureAreAssignedIsOneEverywhere) {
    EXPECT_EQ(painted({128, 0, 255, 200}), FileBytes({1, 1, 1}));
    hdr_->put_Exposure(5);
    EXPECT_EQ(painted({128, 0, 255, 200}), FileBytes({1, 1, 1}));
}

TEST_F(HdrOutput, OfAnEmptyObjectIsARefreshWithAPicture) {
    const Hdr empty;
    Listener listener(empty);
    int pictures = 0;
    listener.onRefresh = [&](IDispatch& picture) { pictures += pixelsOf(picture).width > 0; };
    EXPECT_EQ(empty->Get_BMP(), S_OK);
    EXPECT_EQ(listener.log, "refresh ");
    EXPECT_EQ(pictures, 1);
}

TEST_F(HdrOutput, OfAnObjectWithoutPixelsIsABlackSurfaceOfOnePixel) {
    const Pixels black = pixels24(1, 1, FileBytes(4));
    hdr_.view(0, 1);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_NE(painted_, black);
    EXPECT_EQ(hdr_->Cls(), S_OK);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(painted_, black) << "not the erased picture";
    EXPECT_EQ(listener_.log, "refresh refresh ");
    EXPECT_EQ(hdr_.set(picture_), S_OK);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(hdr_.set(RgbePicture(0, 0)), S_OK);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(painted_, black);
    const std::wstring rowless = folder_.write(L"rowless.hdr", host::headerFile(7, 0));
    EXPECT_EQ(hdr_.set(picture_), S_OK);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(hdr_.preview(rowless), S_OK);
    EXPECT_EQ(painted_, black);
}

TEST_F(HdrOutput, OfAPictureAllButBlackWithAutomaticExpositionIsWhite) {
    hdr_->put_AutoExposition(VARIANT_TRUE);
    for (const float exposure : {-63.0F, -64.0F, -70.0F, -100.0F, -149.0F}) {
        hdr_.view(exposure, 1);
        EXPECT_EQ(painted({128, 128, 128, 136}), FileBytes({255, 255, 255})) << exposure;
    }
}

TEST_F(HdrOutput, WithAutomaticExpositionFollowsTheFormulaOfItsType) {
    hdr_->put_AutoExposition(VARIANT_TRUE);
    const std::pair<long, Exposition> types[] = {
        {0, Exposition::Max}, {1, Exposition::MinMax}, {2, Exposition::Unknown}, {-1, Exposition::Unknown}};
    for (const auto& [value, exposition] : types) {
        EXPECT_EQ(host::put(hdr_.late(), L"AutoExpositionType", host::integer(value)).code, S_OK);
        for (const auto& [exposure, gamma] : {std::pair{0.0F, 1.0F}, {2.0F, 2.2F}, {9.5F, 1.5F}}) {
            hdr_.view(exposure, gamma);
            expectPainted(picture_.bitmap(exposure, gamma, exposition));
        }
    }
}

TEST_F(HdrOutput, HasNoPartOfTheColumnAndRowBehindThePicture) {
    FileBytes store = picture_.store();
    for (std::size_t i = 0; i < store.size(); ++i) {
        const bool behind = i % 8 == 7 || i / 8 % 6 == 5;
        if (behind) store[i] = 150;
    }
    vrx::Variant pixels = vrx::makeArray(host::byteArray({{0, 7}, {0, 5}, {0, 3}}, store));
    ASSERT_EQ(hdr_->Set_HDR(&pixels.get()), S_OK);
    hdr_.view(0, 1);
    expectPainted(picture_.bitmap(0, 1));
    hdr_->put_AutoExposition(VARIANT_TRUE);
    expectPainted(picture_.bitmap(0, 1, Exposition::Max));
}

TEST_F(HdrOutput, WithAutomaticExpositionByMinimumAndMaximumDividesByZeroWhenAllLuminancesAreTheSame) {
    const Failure divided{11, L"CVrxHDR", L"Division by zero"};
    hdr_.view(0, 1);
    hdr_->put_AutoExposition(VARIANT_TRUE);
    hdr_->put_AutoExpositionType(HDRAETMinMax);
    hdr_.set(RgbePicture(3, 3).fill({90, 90, 90, 136}));
    EXPECT_EQ(failureOf(hdr_->Get_BMP()), divided);
    EXPECT_EQ(failureOf(hdr_.convert(folder_ / L"out.bmp")), divided);
    EXPECT_EQ(listener_.log, "");
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(HdrOutput, GetPictureWithAllArgumentsOmittedHasTheSizeOfTheStore) {
    hdr_.view(0, 1);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    hdr_.view(9, 1);
    const host::Outcome outcome = host::call(hdr_.late(), L"Get_Picture");
    ASSERT_EQ(V_VT(&outcome.result.get()), VT_DISPATCH);
    EXPECT_TRUE(vrx::ComPtr<IDispatch>(V_DISPATCH(&outcome.result.get())).as<IPictureDisp>());
    // One column more on the right, one row more at the bottom; the last filled bitmap, not converted anew.
    FileBytes expected(24 * 6);
    const FileBytes bitmap = picture_.bitmap(0, 1);
    for (std::size_t row = 0; row < 5; ++row) std::memcpy(&expected[24 * (row + 1)], &bitmap[24 * row], 21);
    EXPECT_EQ(pixelsOf(*V_DISPATCH(&outcome.result.get())), pixels24(8, 6, expected));
    const host::Outcome marked =
        host::call(hdr_.late(), L"Get_Picture", {host::omitted(), host::integer(3), host::omitted()});
    ASSERT_EQ(V_VT(&marked.result.get()), VT_DISPATCH);
    EXPECT_EQ(pixelsOf(*V_DISPATCH(&marked.result.get())), pixels24(8, 6, expected));
}

TEST_F(HdrOutput, GetPictureOfAStoreOfAnotherSizeHasWhatFitsOfTheLastPaintedBitmapAndBlack) {
    hdr_.view(0, 1);
    ASSERT_EQ(hdr_->Get_BMP(), S_OK);
    const FileBytes bitmap = picture_.bitmap(0, 1);
    const auto expected = [&](int width, int height) {
        FileBytes bytes(strideOf(width) * static_cast<std::size_t>(height));
        for (int y = 0; y < std::min(height, 5); ++y) {
            const auto row = bitmap.begin() + static_cast<std::ptrdiff_t>(strideOf(7)) * (4 - y);
            std::copy_n(row, 3 * std::min(width, 7),
                        bytes.begin() + static_cast<std::ptrdiff_t>(strideOf(width)) * (height - 1 - y));
        }
        return pixels24(width, height, bytes);
    };
    for (const auto& [width, height] :
         {std::pair(2, 3), std::pair(11, 4), std::pair(5, 9), std::pair(10, 8)}) {
        ASSERT_EQ(hdr_.set(RgbePicture(width, height)), S_OK);
        for (int i = 0; i < 2; ++i) {
            vrx::ComPtr<IPictureDisp> picture;
            ASSERT_EQ(hdr_->Get_Picture(-1, 0, 0, 0, 0, 0, 0, 0, picture.put()), S_OK);
            EXPECT_EQ(pixelsOf(*picture), expected(width + 1, height + 1));
        }
    }
}

TEST_F(HdrOutput, GetPictureBeforeAnythingIsPaintedIsAPicture) {
    const Hdr empty;
    vrx::ComPtr<IPictureDisp> picture;
    EXPECT_EQ(empty->Get_Picture(-1, 0, 0, 0, 0, 0, 0, 0, picture.put()), S_OK);
    ASSERT_TRUE(picture);
    EXPECT_EQ(pixelsOf(*picture).width, 1);
    EXPECT_EQ(empty->Get_Picture(0, 0, 2, 2, 0, 0, 4, 3, picture.put()), S_OK);
    EXPECT_EQ(pixelsOf(*picture), pixels24(4, 3, FileBytes(12 * 3)));
    const host::Outcome outcome = host::call(hdr_.late(), L"Get_Picture", {host::number(0)});
    EXPECT_EQ(V_VT(&outcome.result.get()), VT_DISPATCH);
}

/// The rectangle as Get_Picture takes it: source, then destination.
using Rectangles = std::array<float, 8>;

class HdrRectangle : public HdrOutput {
  protected:
    void SetUp() override {
        HdrOutput::SetUp();
        hdr_.view(0, 1);
        EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    }
    [[nodiscard]] Pixels picture(const Rectangles& r) const {
        vrx::ComPtr<IPictureDisp> picture;
        EXPECT_EQ(hdr_->Get_Picture(r[0], static_cast<long>(r[1]), r[2], static_cast<long>(r[3]), r[4],
                                    static_cast<long>(r[5]), r[6], static_cast<long>(r[7]), picture.put()),
                  S_OK);
        return picture ? pixelsOf(*picture) : Pixels{};
    }
    /// Part of the painted bitmap from this column and this row from the top, moved down and to the right.
    [[nodiscard]] Pixels part(int left, int top, int width, int height, int dx = 0, int dy = 0) const {
        const FileBytes bitmap = picture_.bitmap(0, 1);
        const std::size_t stride = host::strideOf(width);
        FileBytes bytes(stride * static_cast<std::size_t>(height));
        for (int y = dy; y < height; ++y) {
            for (int x = dx; x < width; ++x) {
                const std::size_t from =
                    static_cast<std::size_t>((4 - (top + y - dy)) * 24 + 3 * (left + x - dx));
                std::memcpy(&bytes[static_cast<std::size_t>(height - 1 - y) * stride +
                                   static_cast<std::size_t>(3 * x)],
                            &bitmap[from], 3);
            }
        }
        return pixels24(width, height, bytes);
    }
};

TEST_F(HdrRectangle, OfTheWholeIsTheWhole) { EXPECT_EQ(picture({0, 0, 7, 5, 0, 0, 7, 5}), part(0, 0, 7, 5)); }

TEST_F(HdrRectangle, CountsSourceRowsFromTheBottomAsTheBlitDoes) {
    EXPECT_EQ(picture({2, 1, 3, 2, 0, 0, 3, 2}), part(2, 2, 3, 2));
    EXPECT_EQ(picture({0, 0, 7, 1, 0, 0, 7, 1}), part(0, 4, 7, 1));
    EXPECT_EQ(picture({6, 4, 1, 1, 0, 0, 1, 1}), part(6, 0, 1, 1));
}

TEST_F(HdrRectangle, LeavesBlackWhereTheDestinationIsMoved) {
    EXPECT_EQ(picture({1, 0, 4, 3, 2, 1, 4, 3}), part(1, 2, 4, 3, 2, 1));
}

TEST_F(HdrRectangle, RoundsHalvesOfSinglesToEven) {
    EXPECT_EQ(picture({0.5F, 0, 2.5F, 5, 0.5F, 0, 1.5F, 5}), part(0, 0, 2, 5));
    EXPECT_EQ(picture({1.5F, 0, 3.5F, 5, -0.5F, 0, 4.4F, 5}), part(2, 0, 4, 5));
}

TEST_F(HdrRectangle, OfTwiceAndOfHalfTheSizeKeepsColours) {
    RgbePicture blocks(8, 6);
    RgbePicture half(4, 3);
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 8; ++x) blocks.at(x, y) = half.at(x / 2, y / 2);
    }
    hdr_.set(blocks);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(picture({0, 0, 8, 6, 0, 0, 4, 3}), pixels24(4, 3, half.bitmap(0, 1)));
    hdr_.set(half);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(picture({0, 0, 4, 3, 0, 0, 8, 6}), pixels24(8, 6, blocks.bitmap(0, 1)));
}

TEST_F(HdrRectangle, RefusesSizesThatNoPictureHas) {
    vrx::ComPtr<IPictureDisp> none;
    for (const auto& [width, height] : {std::pair{-5.0F, 5L}, {5.0F, -5L}, {2e9F, LONG_MAX}, {1e30F, 5L}}) {
        EXPECT_NE(failureOf(hdr_->Get_Picture(0, 0, 7, 5, 0, 0, width, height, none.put())).number, 0);
        EXPECT_FALSE(none);
    }
    EXPECT_EQ(picture({0, 0, 7, 5, 0, 0, 7, 5}), part(0, 0, 7, 5));
}

TEST_F(HdrRectangle, PictureStaysAsItWasWhenTheNextOneIsMade) {
    vrx::ComPtr<IPictureDisp> kept;
    ASSERT_EQ(hdr_->Get_Picture(0, 0, 7, 5, 0, 0, 7, 5, kept.put()), S_OK);
    (void)picture({0, 0, 1, 1, 0, 0, 7, 5});
    hdr_.view(3, 1);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(pixelsOf(*kept), part(0, 0, 7, 5));
}

}  // namespace
