// How the codec takes a host's record, field by field.

#include "jpeg/engine/record_check.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "codec_run.h"
#include "record_offsets.h"

namespace vrx::test {
namespace {

using jpeg::Color;
using jpeg::Status;
using Field = std::int32_t JpegCoreProperties::*;

/// A record as the component fills it in for a section.
JpegCoreProperties recordOf(int width, int height, int padding) {
    JpegCoreProperties record;
    jpeg::initialise(record);
    record.DIBWidth = width;
    record.DIBHeight = height;
    record.DIBPadBytes = padding;
    record.JPGWidth = width;
    record.JPGHeight = height == INT32_MIN ? INT32_MAX : std::abs(height);
    record.jquality = 90;
    return record;
}

Status checkStatus(const JpegCoreProperties& record) {
    return statusOf([&] {
        (void)jpeg::pixelLayoutOf(record);
        (void)jpeg::jpegFormatOf(record);
    });
}

Status statusWith(Field field, std::int32_t value) {
    JpegCoreProperties record = recordOf(10, 10, 2);
    record.*field = value;
    return checkStatus(record);
}

TEST(Record, HoldsItsDefaultsAtTheirPlaces) {
    JpegCoreProperties record;
    std::memset(&record, 0xCC, sizeof record);
    jpeg::initialise(record);
    std::int32_t words[kRecordSize / 4];
    ASSERT_EQ(sizeof record, sizeof words);
    std::memcpy(words, &record, sizeof words);
    std::int32_t expected[kRecordSize / 4] = {};
    for (const auto& [field, value] : kRecordDefaults) expected[wordOf(field)] = value;
    for (std::size_t i = 0; i < std::size(words); ++i) {
        if (!isPadding(i)) EXPECT_EQ(words[i], expected[i]) << "offset " << i * 4;
    }
}

TEST(Record, OfASectionDescribesItsRows) {
    const jpeg::PixelLayout layout = jpeg::pixelLayoutOf(recordOf(10, 7, 2));
    EXPECT_EQ(layout.width, 10U);
    EXPECT_EQ(layout.height, 7U);
    EXPECT_EQ(layout.color, Color::Bgr);
    EXPECT_EQ(layout.stride, 32U);
    EXPECT_TRUE(layout.bottomUp);
    EXPECT_EQ(layout.size(), 32U * 6U + 30U);
    EXPECT_EQ(layout.rowOffset(0), 32U * 6U);
    EXPECT_EQ(layout.rowOffset(6), 0U);
}

TEST(Record, OfNegativeHeightDescribesTopDownRows) {
    const jpeg::PixelLayout layout = jpeg::pixelLayoutOf(recordOf(10, -7, 2));
    EXPECT_EQ(layout.height, 7U);
    EXPECT_FALSE(layout.bottomUp);
    EXPECT_EQ(layout.rowOffset(0), 0U);
    EXPECT_EQ(layout.rowOffset(6), 32U * 6U);
}

TEST(Record, MayHaveRowsWithoutPaddingOrRowsOfALargerPicture) {
    EXPECT_EQ(checkStatus(recordOf(10, 10, 0)), Status::Ok);
    EXPECT_EQ(checkStatus(recordOf(10, 10, 2)), Status::Ok);
    EXPECT_EQ(checkStatus(recordOf(10, 10, 2 + 3 * 400)), Status::Ok);
}

TEST(Record, IsRefusedForPaddingThatContradictsTheWidth) {
    for (const int padding : {1, 3, 4, 5, -1, -2, -30, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(checkStatus(recordOf(10, 10, padding)), Status::BadPadding) << padding;
    }
    EXPECT_EQ(checkStatus(recordOf(4, 10, 1)), Status::BadPadding);
}

TEST(Record, IsRefusedForZeroAndNegativeSizes) {
    EXPECT_EQ(checkStatus(recordOf(0, 10, 0)), Status::BadSize);
    EXPECT_EQ(checkStatus(recordOf(10, 0, 2)), Status::BadSize);
    EXPECT_EQ(checkStatus(recordOf(-10, 10, 2)), Status::BadSize);
    EXPECT_EQ(checkStatus(recordOf(INT32_MIN, 10, 0)), Status::BadSize);
}

TEST(Record, IsRefusedForAbsurdSizesAndProducts) {
    EXPECT_EQ(checkStatus(recordOf(65501, 1, 0)), Status::TooLarge);
    EXPECT_EQ(checkStatus(recordOf(1, 65501, 0)), Status::TooLarge);
    EXPECT_EQ(checkStatus(recordOf(1, INT32_MIN, 0)), Status::TooLarge);
    EXPECT_EQ(checkStatus(recordOf(INT32_MAX, INT32_MAX, 0)), Status::TooLarge);
    EXPECT_EQ(checkStatus(recordOf(65500, 65500, 0)), Status::TooLarge);
    EXPECT_EQ(checkStatus(recordOf(4, 10, INT32_MAX - 3)), Status::TooLarge);
}

TEST(Record, IsRefusedForColorsAndChannelsThatTheCodecDoesNotKnow) {
    for (const int value : {0, 1, 2, 4, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(statusWith(&JpegCoreProperties::DIBChannels, value), Status::UnsupportedColor) << value;
        EXPECT_EQ(statusWith(&JpegCoreProperties::JPGChannels, value), Status::UnsupportedColor) << value;
    }
    for (const int value : {0, 4, 5, 255, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(statusWith(&JpegCoreProperties::DIBColor, value), Status::UnsupportedColor) << value;
    }
    for (const int value : {0, 1, 2, 4, 5, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(statusWith(&JpegCoreProperties::JPGColor, value), Status::UnsupportedColor) << value;
    }
    for (const int value : {3, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(statusWith(&JpegCoreProperties::JPGSubsampling, value), Status::UnsupportedColor) << value;
    }
}

TEST(Record, IsRefusedForOptionsThatTheCodecDoesNotHave) {
    EXPECT_EQ(statusWith(&JpegCoreProperties::UseJPEGPROPERTIES, 1), Status::UnsupportedOption);
    EXPECT_EQ(statusWith(&JpegCoreProperties::DIBSubsampling, 1), Status::UnsupportedOption);
    EXPECT_EQ(statusWith(&JpegCoreProperties::cconversion_reqd, 0), Status::UnsupportedOption);
    EXPECT_EQ(statusWith(&JpegCoreProperties::upsampling_reqd, 0), Status::UnsupportedOption);
}

TEST(Record, IsRefusedForAQualityOutside1To100) {
    EXPECT_EQ(statusWith(&JpegCoreProperties::jquality, 1), Status::Ok);
    EXPECT_EQ(statusWith(&JpegCoreProperties::jquality, 100), Status::Ok);
    for (const int value : {0, 101, -1, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(statusWith(&JpegCoreProperties::jquality, value), Status::BadQuality) << value;
    }
}

TEST(Record, IsRefusedForAJpegOfAnotherSizeThanThePixels) {
    for (const int value : {9, 11, INT32_MAX}) {
        EXPECT_EQ(statusWith(&JpegCoreProperties::JPGWidth, value), Status::SizesDiffer) << value;
        EXPECT_EQ(statusWith(&JpegCoreProperties::JPGHeight, value), Status::SizesDiffer) << value;
    }
    for (const int value : {0, -10, INT32_MIN}) {
        EXPECT_EQ(statusWith(&JpegCoreProperties::JPGWidth, value), Status::BadSize) << value;
        EXPECT_EQ(statusWith(&JpegCoreProperties::JPGHeight, value), Status::BadSize) << value;
    }
}

/// Values that make arithmetic overflow, and such as good records hold.
std::int32_t hostileValue(std::mt19937& random) {
    constexpr std::int32_t kValues[] = {0, 1, -1, 2, 3, 4, 10, 100, 65500, 65536, INT32_MAX, INT32_MIN};
    const auto choice = random() % (std::size(kValues) + 1);
    return choice < std::size(kValues) ? kValues[choice] : static_cast<std::int32_t>(random());
}

TEST(Record, OfHostileFieldsIsRefusedOrDescribesWhatFitsAProcess) {
    std::mt19937 random(20021);
    constexpr Field kFields[] = {&JpegCoreProperties::DIBWidth,    &JpegCoreProperties::DIBHeight,
                                 &JpegCoreProperties::DIBPadBytes, &JpegCoreProperties::DIBChannels,
                                 &JpegCoreProperties::DIBColor,    &JpegCoreProperties::DIBSubsampling};
    int accepted = 0;
    for (int i = 0; i < 20000; ++i) {
        JpegCoreProperties record = recordOf(10, 10, 2);
        for (const Field field : kFields) {
            if (random() % 3 == 0) record.*field = hostileValue(random);
        }
        jpeg::PixelLayout layout{};
        if (statusOf([&] { layout = jpeg::pixelLayoutOf(record); }) != Status::Ok) continue;
        ++accepted;
        EXPECT_LE(static_cast<double>(layout.stride) * layout.height, 2147483647.0);
        EXPECT_GE(layout.stride, layout.rowSize());
        EXPECT_LE(layout.rowOffset(0) + layout.rowSize(), layout.size());
        EXPECT_LE(layout.rowOffset(layout.height - 1) + layout.rowSize(), layout.size());
    }
    EXPECT_GT(accepted, 1000);
}

TEST(Record, TakesOverWhatAHeaderTells) {
    JpegCoreProperties record = recordOf(10, 10, 2);
    jpeg::store({97, 61, Color::Grey, jpeg::Subsampling::None}, record);
    EXPECT_EQ(record.JPGWidth, 97);
    EXPECT_EQ(record.JPGHeight, 61);
    EXPECT_EQ(record.JPGChannels, 1);
    EXPECT_EQ(record.JPGColor, 4);
    EXPECT_EQ(record.JPGSubsampling, 0);
}

TEST(Status, OfEveryFailureHasANegativeNumberAndATextOfItsOwn) {
    std::vector<std::string> texts;
    for (int code = 0; code >= -17; --code) texts.emplace_back(jpeg::textOf(static_cast<Status>(code)));
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(std::unique(texts.begin(), texts.end()), texts.end());
    EXPECT_STREQ(jpeg::textOf(Status::Ok), "No error");
    EXPECT_STREQ(jpeg::textOf(static_cast<Status>(1)), "Unknown error");
    EXPECT_STREQ(jpeg::textOf(static_cast<Status>(-18)), "Unknown error");
}

}  // namespace
}  // namespace vrx::test
