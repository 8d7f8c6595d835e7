// Where the dialogs keep their values, and numbers as text and back.
#include "dialogs/engine/settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string_view>

#include "ground/decimal_text.h"

namespace vrx::test {
namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr NumberSetting kAny{u"", u"", 7, kSmallest, kLargest};

std::int32_t quality(std::u16string_view text) { return settingNumber(text, settings::kHdrSaverQuality); }
std::int32_t any(std::u16string_view text) { return settingNumber(text, kAny); }

TEST(Settings, OfAFirstRunAreTypeZeroAndQuality85) {
    EXPECT_EQ(settings::kImageSaverType.defaultValue, 0);
    EXPECT_EQ(settings::kImageLoaderType.defaultValue, 0);
    EXPECT_EQ(settings::kHdrSaverType.defaultValue, 0);
    EXPECT_EQ(settings::kImageSaverQuality.defaultValue, 85);
    EXPECT_EQ(settings::kHdrSaverQuality.defaultValue, 85);
    EXPECT_EQ(settings::kPatternWidth.defaultValue, 3735);
}

struct Place {
    std::u16string_view suffix;
    std::u16string_view name;
    bool operator==(const Place&) const = default;
};

template <class Setting>
Place placeOf(const Setting& setting) {
    return {setting.suffix, setting.name};
}

TEST(Settings, LieAtTheirPublishedPlaces) {
    using namespace settings;
    EXPECT_EQ(placeOf(kImageSaverPath), (Place{u"\\ImageSaver", u"Path"}));
    EXPECT_EQ(placeOf(kImageSaverType), (Place{u"\\ImageSaver", u"Type"}));
    EXPECT_EQ(placeOf(kImageSaverQuality), (Place{u"\\ImageSaver", u"JPGDetail"}));
    EXPECT_EQ(placeOf(kImageLoaderPath), (Place{u"\\ImageLoader", u"Path"}));
    EXPECT_EQ(placeOf(kImageLoaderPreview), (Place{u"\\ImageLoader", u"Preview"}));
    EXPECT_EQ(placeOf(kImageLoaderType), (Place{u"\\ImageLoader", u"Type"}));
    EXPECT_EQ(placeOf(kHdrSaverPath), (Place{u"\\HDRSaver", u"Path"}));
    EXPECT_EQ(placeOf(kHdrSaverType), (Place{u"\\HDRSaver", u"Type"}));
    EXPECT_EQ(placeOf(kHdrSaverQuality), (Place{u"\\HDRSaver", u"JPGDetail"}));
    EXPECT_EQ(placeOf(kHdrLoaderPath), (Place{u"\\ImageHDR", u"Path"}));
    EXPECT_EQ(placeOf(kHdrLoaderPreview), (Place{u"\\ImageHDR", u"Preview"}));
    EXPECT_EQ(placeOf(kPatternPath), (Place{u"\\Pattern", u"Path"}));
    EXPECT_EQ(placeOf(kPatternWidth), (Place{u"\\Pattern", u"Width"}));
}

TEST(DecimalText, IsPlain) {
    EXPECT_EQ(decimalText(85), u"85");
    EXPECT_EQ(decimalText(0), u"0");
    EXPECT_EQ(decimalText(-1), u"-1");
    EXPECT_EQ(decimalText(kLargest), u"2147483647");
    EXPECT_EQ(decimalText(kSmallest), u"-2147483648");
}

TEST(SettingNumber, ReadsBackWhatWasWritten) {
    for (const std::int32_t value : {0, 1, -1, 85, 87, 3735, kLargest, kSmallest}) {
        EXPECT_EQ(any(decimalText(value)), value);
    }
}

TEST(SettingNumber, KeepsAQualityThatIsNoMultipleOfFive) {
    EXPECT_EQ(quality(u"87"), 87);
    EXPECT_EQ(quality(u"0"), 0);
    EXPECT_EQ(quality(u"3"), 3);
}

TEST(SettingNumber, IsTheDefaultForTextThatIsNoNumber) {
    for (const std::u16string_view text :
         {u"",    u" ", u"abc", u"8 5", u"85x", u"x85", u"85,5", u"0x10",  u"&H10",   u"--1",
          u"+-1", u"+", u"-",   u".",   u"nan", u"inf", u"-inf", u"1e999", u"\u0665", u"\uFF18"}) {
        EXPECT_EQ(quality(text), 85) << testing::PrintToString(text);
    }
    EXPECT_EQ(quality(std::u16string_view(u"8\0"
                                          u"5",
                                          3)),
              85);
}

TEST(SettingNumber, OutOfRangeIsTheNearestValidValue) {
    EXPECT_EQ(quality(u"101"), 100);
    EXPECT_EQ(quality(u"-1"), 0);
    EXPECT_EQ(quality(u"99999999999999999999"), 100);
    EXPECT_EQ(settingNumber(u"2", settings::kHdrLoaderPreview), 1);
    EXPECT_EQ(settingNumber(u"-1", settings::kImageLoaderPreview), 0);
    EXPECT_EQ(settingNumber(u"7", settings::kImageLoaderType), 3);
    EXPECT_EQ(settingNumber(u"7", settings::kImageSaverType), 1);
    EXPECT_EQ(settingNumber(u"7", settings::kHdrSaverType), 2);
    EXPECT_EQ(settingNumber(u"-10", settings::kPatternWidth), 0);
    EXPECT_EQ(any(u"2147483648"), kLargest);
    EXPECT_EQ(any(u"-1e300"), kSmallest);
}

TEST(SettingNumber, RoundsFractionsHalvesToEven) {
    EXPECT_EQ(any(u"84.5"), 84);
    EXPECT_EQ(any(u"85.5"), 86);
    EXPECT_EQ(any(u"-0.4"), 0);
    EXPECT_EQ(any(u"8.5e1"), 85);
}

TEST(SettingNumber, AllowsBlanksAroundAndAPlusSign) {
    EXPECT_EQ(any(u"  85 "), 85);
    EXPECT_EQ(any(u"+85"), 85);
    EXPECT_EQ(any(u"\t-1\r\n"), -1);
}

}  // namespace
}  // namespace vrx::test
