// ImageFX: sizes in pixels, and effects on a host's byte arrays.

#include <gtest/gtest.h>

#include "VrxCommon.h"
#include "failure.h"
#include "host.h"
#include "throwaway_folder.h"

using host::call;
using host::Failure;
using host::failureOf;
using host::FileBytes;
using host::integer;
using host::number;
using host::typedReference;
using vrx::Bounds;
using vrx::ByteArrayView;
using vrx::ComPtr;
using vrx::SafeArray;

namespace {

const Failure kOverflow{6, L"ImageFX", L"Overflow"};
const Failure kSubscript{9, L"ImageFX", L"Subscript out of range"};
const Failure kTypeMismatch{13, L"ImageFX", L"Type mismatch"};

/// 3 x 4 pixels: rows of 9 bytes and 3 of padding, from the bottom. Blue alone is not 0: 16 at x 1, y 1 from
/// the top, which the weights turn into 4.
constexpr std::size_t kCentre = 2 * 12 + 3;
const FileBytes kPicture = [] {
    FileBytes bytes(4 * 12);
    bytes[kCentre] = 16;
    return bytes;
}();
const FileBytes kBlurred = [] {
    FileBytes bytes(4 * 12);
    bytes[kCentre] = 4;
    return bytes;
}();

SafeArray arrayFrom(std::int32_t lower, const FileBytes& bytes) {
    const Bounds bounds{lower, lower + static_cast<std::int32_t>(bytes.size()) - 1};
    SafeArray array = vrx::makeByteArray(std::span(&bounds, 1));
    const ByteArrayView view(array.get());
    std::ranges::copy(bytes, view.bytes().begin());
    return array;
}

FileBytes bytesOf(SAFEARRAY* array) {
    const ByteArrayView view(array);
    return {view.bytes().begin(), view.bytes().end()};
}

VARIANT arrayVariant(SAFEARRAY* array) {
    VARIANT made{};
    V_VT(&made) = VT_ARRAY | VT_UI1;
    V_ARRAY(&made) = array;
    return made;
}

class ImageFx : public testing::Test {
  protected:
    const ComPtr<IDispatch> late_ = host::create(L"VrxCommon.ImageFX");
    const ComPtr<_ImageFX> early_ = late_.as<_ImageFX>();

    void SetUp() override { ASSERT_TRUE(early_); }

    Failure blurLate(VARIANT buffer, long dimX, long dimY) const {
        return failureOf(call(*late_, L"Blur_Buffer", {buffer, integer(dimX), integer(dimY)}));
    }
    Failure blurEarly(VARIANT buffer, long dimX, long dimY) const {
        return failureOf(early_->Blur_Buffer(&buffer, dimX, dimY));
    }
};

TEST_F(ImageFx, ScalesAnInchToTheResolutionOfTheScreen) {
    const HDC screen = GetDC(nullptr);
    const int across = GetDeviceCaps(screen, LOGPIXELSX);
    const int down = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    short value = 0;
    EXPECT_EQ(early_->ScaleX(2540.0F, &value), S_OK);
    EXPECT_EQ(value, across);
    EXPECT_EQ(early_->ScaleY(-2540.0F, &value), S_OK);
    EXPECT_EQ(value, -down);
}

TEST_F(ImageFx, ScalesToA16BitIntegerLateBound) {
    const host::Outcome outcome = call(*late_, L"ScaleX", {number(0.4)});
    EXPECT_EQ(failureOf(outcome), host::kNone);
    EXPECT_EQ(V_VT(&outcome.result.get()), VT_I2);
    EXPECT_EQ(V_I2(&outcome.result.get()), 0);
}

TEST_F(ImageFx, OverflowsBeyond16Bits) {
    short value = 5;
    EXPECT_EQ(failureOf(early_->ScaleX(1e9F, &value)), kOverflow);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(failureOf(call(*late_, L"ScaleY", {number(-1e9)})), kOverflow);
}

TEST_F(ImageFx, BlursTheHostsOwnArrayInEveryFormOfReference) {
    for (const int form : {0, 1, 2}) {
        const SafeArray array = arrayFrom(0, kPicture);
        SAFEARRAY* variable = array.get();
        VARIANT inner = arrayVariant(variable);
        VARIANT innerReference = typedReference(VT_ARRAY | VT_UI1, &variable);
        const VARIANT forms[] = {host::reference(inner), innerReference, host::reference(innerReference)};
        EXPECT_EQ(blurLate(forms[form], 3, 4), host::kNone) << form;
        EXPECT_EQ(bytesOf(array.get()), kBlurred) << form;
        EXPECT_EQ(variable, array.get()) << form;
        EXPECT_EQ(array.get()->cLocks, 0u) << form;
    }
}

TEST_F(ImageFx, BlursTheHostsOwnArrayEarlyBound) {
    const SafeArray array = arrayFrom(0, kPicture);
    SAFEARRAY* variable = array.get();
    EXPECT_EQ(blurEarly(typedReference(VT_ARRAY | VT_UI1, &variable), 3, 4), host::kNone);
    EXPECT_EQ(bytesOf(array.get()), kBlurred);
    const SafeArray held = arrayFrom(0, kPicture);
    EXPECT_EQ(blurEarly(arrayVariant(held.get()), 3, 4), host::kNone);
    EXPECT_EQ(bytesOf(held.get()), kBlurred);
    EXPECT_EQ(early_->Blur_Buffer(nullptr, 3, 4), E_POINTER);
    EXPECT_EQ(early_->MedianCut_Buffer(nullptr, 3, 4), E_POINTER);
}

TEST_F(ImageFx, TakesAnArrayByValue) {
    const SafeArray array = arrayFrom(0, kPicture);
    EXPECT_EQ(blurLate(arrayVariant(array.get()), 3, 4), host::kNone);
    EXPECT_EQ(blurLate(arrayVariant(array.get()), 3, 5), kSubscript);
}

TEST_F(ImageFx, CountsBytesFromTheFirstElementWhateverItsIndex) {
    for (const std::int32_t lower : {-7, 1, 1000}) {
        const SafeArray array = arrayFrom(lower, kPicture);
        EXPECT_EQ(blurEarly(arrayVariant(array.get()), 3, 4), host::kNone);
        EXPECT_EQ(bytesOf(array.get()), kBlurred) << lower;
    }
}

TEST_F(ImageFx, LeavesAUniformImageUnchanged) {
    const FileBytes picture(6 * 20, 77);
    const SafeArray array = arrayFrom(0, picture);
    VARIANT buffer = arrayVariant(array.get());
    for (const wchar_t* member : {L"Blur_Buffer", L"MedianCut_Buffer"}) {
        EXPECT_EQ(failureOf(call(*late_, member, {host::reference(buffer), integer(6), integer(6)})),
                  host::kNone);
        EXPECT_EQ(bytesOf(array.get()), picture);
    }
}

TEST_F(ImageFx, SmoothsGentleNoiseAndKeepsABrightPixel) {
    // Weights turn 100 with 101 in its middle into 100.25. 255 in the middle of 0 spreads far more than 85.
    FileBytes picture(4 * 12, 100);
    for (std::size_t i = 0; i < picture.size(); i += 3) picture[i + 1] = 0;
    picture[kCentre] = 101;
    picture[kCentre + 1] = 255;
    FileBytes expected = picture;
    expected[kCentre] = 100;
    const SafeArray array = arrayFrom(0, picture);
    VARIANT buffer = arrayVariant(array.get());
    EXPECT_EQ(failureOf(call(*late_, L"MedianCut_Buffer", {host::reference(buffer), integer(3), integer(4)})),
              host::kNone);
    EXPECT_EQ(bytesOf(array.get()), expected);
}

TEST_F(ImageFx, RefusesABufferShorterThanTheRowsAndLeavesIt) {
    const FileBytes picture(kPicture.begin(), kPicture.end() - 1);
    const SafeArray array = arrayFrom(0, picture);
    EXPECT_EQ(blurLate(arrayVariant(array.get()), 3, 4), kSubscript);
    EXPECT_EQ(blurEarly(arrayVariant(array.get()), 3, 4), kSubscript);
    VARIANT buffer = arrayVariant(array.get());
    EXPECT_EQ(failureOf(early_->MedianCut_Buffer(&buffer, 3, 4)), kSubscript);
    EXPECT_EQ(bytesOf(array.get()), picture);
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST_F(ImageFx, RefusesSizesWhoseProductOverflows) {
    const SafeArray array = arrayFrom(0, kPicture);
    EXPECT_EQ(blurEarly(arrayVariant(array.get()), 0x7FFFFFFF, 0x7FFFFFFF), kSubscript);
    EXPECT_EQ(bytesOf(array.get()), kPicture);
}

TEST_F(ImageFx, DoesNothingForFewRowsOrColumnsOrNegativeSizes) {
    const SafeArray array = arrayFrom(0, kPicture);
    const long sizes[][2] = {{2, 4}, {3, 3}, {0, 0}, {-3, 4}, {3, -4}};
    for (const auto& size : sizes) {
        EXPECT_EQ(blurEarly(arrayVariant(array.get()), size[0], size[1]), host::kNone);
    }
    EXPECT_EQ(bytesOf(array.get()), kPicture);
}

TEST_F(ImageFx, RefusesArraysOfMoreDimensions) {
    const Bounds bounds[] = {{0, 11}, {0, 3}};
    const SafeArray array = vrx::makeByteArray(bounds);
    EXPECT_EQ(blurLate(arrayVariant(array.get()), 3, 4), kTypeMismatch);
}

TEST_F(ImageFx, RefusesOtherElementsAndOtherValues) {
    const SafeArray words(SafeArrayCreateVector(VT_I2, 0, 48));
    VARIANT buffer{};
    V_VT(&buffer) = VT_ARRAY | VT_I2;
    V_ARRAY(&buffer) = words.get();
    EXPECT_EQ(blurLate(buffer, 3, 4), kTypeMismatch);
    EXPECT_EQ(blurLate(integer(5), 3, 4), kTypeMismatch);
    EXPECT_EQ(blurLate(VARIANT{}, 3, 4), kTypeMismatch);
}

TEST_F(ImageFx, TakesAnArrayThatIsNotDimensionedForOneWithoutBytes) {
    SAFEARRAY* variable = nullptr;
    EXPECT_EQ(blurLate(typedReference(VT_ARRAY | VT_UI1, &variable), 3, 4), kSubscript);
    EXPECT_EQ(blurLate(typedReference(VT_ARRAY | VT_UI1, &variable), 0, 4), host::kNone);
}

}  // namespace
