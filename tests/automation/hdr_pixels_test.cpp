// CVrxHDR: single pixels as linear values.

#include <gtest/gtest.h>

#include "hdr_host.h"

using host::Hdr;
using host::integer;
using host::reference;
using host::RgbePicture;
using host::typedReference;
using vrx::Variant;

namespace {

class Pixel : public testing::Test {
  protected:
    RgbePicture picture_{3, 2};
    const Hdr hdr_;

    void SetUp() override {
        picture_.at(1, 0) = {128, 0, 255, 136};
        picture_.at(2, 1) = {10, 20, 30, 0};
        ASSERT_EQ(hdr_.set(picture_), S_OK);
    }
    void buildTables() const {
        hdr_.view(3, 2.2F);
        ASSERT_EQ(hdr_->Get_BMP(), S_OK);
    }
    host::Outcome pixel(long x, long y, VARIANT r, VARIANT g, VARIANT b) const {
        return host::call(hdr_.late(), L"Get_Pixel", {integer(x), integer(y), r, g, b});
    }
};

TEST_F(Pixel, ComponentsAreLinearValues) {
    EXPECT_EQ(hdr_.compo(1, 0, 0), 128.5F);
    EXPECT_EQ(hdr_.compo(1, 0, 1), 0.5F);
    EXPECT_EQ(hdr_.compo(1, 0, 2), 255.5F);
    EXPECT_EQ(hdr_.compo(2, 1, 0), 10.5F * 0x1p-136F);
    buildTables();
    EXPECT_EQ(hdr_.compo(1, 0, 0), 128.5F) << "exposure and gamma have no part in it";
}

TEST_F(Pixel, ComponentThreeIsTheExponentLikeAMantissa) { EXPECT_EQ(hdr_.compo(1, 0, 3), 136.5F); }

TEST_F(Pixel, ComponentOutOfRangeIsTheScaleOfThePixel) {
    EXPECT_EQ(hdr_.compo(1, 0, 4), 1.0F);
    EXPECT_EQ(hdr_.compo(1, 0, -1), 1.0F);
    EXPECT_EQ(hdr_.compo(2, 1, 100), 0x1p-136F);
}

TEST_F(Pixel, ComponentAtAnXyOutsideTheStoreIsTwoToTheMinus136WithoutAnError) {
    for (const auto& [x, y] : {std::pair{-1L, 0L}, {4L, 0L}, {0L, -1L}, {0L, 3L}, {LONG_MAX, LONG_MIN}}) {
        for (const long component : {0L, 3L, 9L}) {
            const host::Outcome outcome =
                host::call(hdr_.late(), L"Get_Compo", {integer(x), integer(y), integer(component)});
            EXPECT_EQ(outcome.code, S_OK);
            EXPECT_EQ(V_VT(&outcome.result.get()), VT_R4);
            EXPECT_EQ(V_R4(&outcome.result.get()), 0x1p-136F);
        }
    }
    const Hdr empty;
    EXPECT_EQ(empty.compo(0, 0, 0), 0x1p-136F);
}

TEST_F(Pixel, OfTheColumnAndRowBehindThePictureIsInTheStore) {
    EXPECT_EQ(hdr_.compo(3, 0, 0), 0.5F * 0x1p-136F);
    EXPECT_EQ(hdr_.compo(0, 2, 3), 0.5F * 0x1p-136F);
}

TEST_F(Pixel, OnAnObjectWhoseLookUpTableWasNeverBuiltIsMinusOneInAllThreeOutputs) {
    Variant r;
    Variant g = vrx::makeText(u"old");
    Variant b = vrx::makeDouble(2);
    for (const long x : {1L, 99L}) {
        ASSERT_EQ(pixel(x, 0, reference(r.get()), reference(g.get()), reference(b.get())).code, S_OK);
        for (const Variant* value : {&r, &g, &b}) {
            EXPECT_EQ(V_VT(&value->get()), VT_I2);
            EXPECT_EQ(V_I2(&value->get()), -1);
        }
    }
    double typed[3] = {};
    pixel(0, 0, typedReference(VT_R8, &typed[0]), typedReference(VT_R8, &typed[1]),
          typedReference(VT_R8, &typed[2]));
    for (const double value : typed) EXPECT_EQ(value, -1.0);
}

TEST_F(Pixel, InScriptVariablesIsInPercentAsDouble) {
    buildTables();
    Variant r;
    Variant g;
    Variant b = vrx::makeText(u"old");
    ASSERT_EQ(pixel(1, 0, reference(r.get()), reference(g.get()), reference(b.get())).code, S_OK);
    for (const auto& [value, percent] : {std::pair{&r, 12850.0}, {&g, 50.0}, {&b, 25550.0}}) {
        EXPECT_EQ(V_VT(&value->get()), VT_R8);
        EXPECT_EQ(V_R8(&value->get()), percent);
    }
}

TEST_F(Pixel, RoundsTheScaleInPercentToSinglePrecision) {
    buildTables();
    double r = 0;
    double g = 0;
    double b = 0;
    VARIANT red = typedReference(VT_R8, &r);
    VARIANT green = typedReference(VT_R8, &g);
    VARIANT blue = typedReference(VT_R8, &b);
    ASSERT_EQ(hdr_->Get_Pixel(2, 1, &red, &green, &blue), S_OK);
    const double scale = static_cast<float>(0x1p-136 * 100);
    EXPECT_EQ(r, 10.5 * scale);
    EXPECT_EQ(g, 20.5 * scale);
    EXPECT_EQ(b, 30.5 * scale);
}

TEST_F(Pixel, InTypedVariablesIsConverted) {
    buildTables();
    double r = 0;
    float g = 0;
    long b = 0;
    ASSERT_EQ(
        pixel(1, 0, typedReference(VT_R8, &r), typedReference(VT_R4, &g), typedReference(VT_I4, &b)).code,
        S_OK);
    EXPECT_EQ(r, 12850.0);
    EXPECT_EQ(g, 50.0F);
    EXPECT_EQ(b, 25550);
}

TEST_F(Pixel, ThatDoesNotFitAVariableLeavesItAndGoesOnWithTheNext) {
    buildTables();
    short r = 7;
    double g = 0;
    unsigned char b = 9;
    EXPECT_EQ(
        pixel(1, 0, typedReference(VT_I2, &r), typedReference(VT_R8, &g), typedReference(VT_UI1, &b)).code,
        S_OK);
    EXPECT_EQ(r, 12850);
    EXPECT_EQ(g, 50.0);
    EXPECT_EQ(b, 9);
}

TEST_F(Pixel, OutsideTheStoreLeavesTheVariablesAsTheyAre) {
    buildTables();
    double r = 1;
    Variant g = vrx::makeText(u"kept");
    Variant b;
    for (const auto& [x, y] : {std::pair{-1L, 0L}, {4L, 0L}, {0L, 3L}}) {
        EXPECT_EQ(pixel(x, y, typedReference(VT_R8, &r), reference(g.get()), reference(b.get())).code, S_OK);
        EXPECT_EQ(r, 1);
        ASSERT_EQ(V_VT(&g.get()), VT_BSTR);
        EXPECT_STREQ(V_BSTR(&g.get()), L"kept");
        EXPECT_EQ(V_VT(&b.get()), VT_EMPTY);
    }
}

}  // namespace
