// What the positions of the file dialogs' sliders mean.

#include "dialogs/engine/slider_values.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

TEST(SliderValues, GiveTheExposureInTenthsOfAStop) {
    EXPECT_EQ(exposureOfSlider(0), 0.0F);
    EXPECT_EQ(exposureOfSlider(1), 0.1F);
    EXPECT_EQ(exposureOfSlider(160), 16.0F);
    EXPECT_EQ(exposureOfSlider(320), 32.0F);
}

TEST(SliderValues, GiveTheGammaInHundredthsAboveOne) {
    EXPECT_EQ(gammaOfSlider(0), 1.0F);
    EXPECT_EQ(gammaOfSlider(100), 2.0F);
    EXPECT_EQ(gammaOfSlider(120), 2.2F);
    EXPECT_EQ(gammaOfSlider(200), 3.0F);
}

TEST(SliderValues, GiveTheQualityInStepsOfFive) {
    EXPECT_EQ(qualityOfSlider(1), 5);
    EXPECT_EQ(qualityOfSlider(17), 85);
    EXPECT_EQ(qualityOfSlider(20), 100);
}

TEST(SliderValues, ShowAQualityAtTheNearestPosition) {
    EXPECT_EQ(sliderOfQuality(85), 17);
    EXPECT_EQ(sliderOfQuality(87), 17);  // 17.4
    EXPECT_EQ(sliderOfQuality(82), 16);  // 16.4
    EXPECT_EQ(sliderOfQuality(88), 18);  // 17.6
    EXPECT_EQ(sliderOfQuality(100), 20);
    EXPECT_EQ(sliderOfQuality(0), 0);
}

}  // namespace
}  // namespace vrx
