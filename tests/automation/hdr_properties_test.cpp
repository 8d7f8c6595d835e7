// CVrxHDR: properties and the pixel store as hosts set and read it.

#include <gtest/gtest.h>

#include <limits>

#include "failure.h"
#include "hdr_host.h"

using host::Failure;
using host::failureOf;
using host::Hdr;
using host::integer;
using host::number;
using host::reference;
using host::RgbePicture;
using host::typedReference;
using vrx::SafeArray;
using vrx::Variant;

namespace {

const Failure kSubscript{9, L"CVrxHDR", L"Subscript out of range"};
const Failure kTypeMismatch{13, L"CVrxHDR", L"Type mismatch"};

double real(const host::Outcome& outcome) { return V_R4(&outcome.result.get()); }

TEST(HdrProperties, OfANewObjectAreZeroFalseAndEmpty) {
    const Hdr hdr;
    for (const wchar_t* name : {L"Gamma", L"Exposure"}) {
        const host::Outcome read = host::get(hdr.late(), name);
        EXPECT_EQ(V_VT(&read.result.get()), VT_R4);
        EXPECT_EQ(V_R4(&read.result.get()), 0.0F);
    }
    for (const wchar_t* name : {L"DimX", L"DimY", L"AutoExpositionType"}) {
        const host::Outcome read = host::get(hdr.late(), name);
        EXPECT_EQ(V_VT(&read.result.get()), VT_I4);
        EXPECT_EQ(V_I4(&read.result.get()), 0);
    }
    for (const wchar_t* name : {L"HDRLoading", L"AutoExposition"}) {
        const host::Outcome read = host::get(hdr.late(), name);
        EXPECT_EQ(V_VT(&read.result.get()), VT_BOOL);
        EXPECT_EQ(V_BOOL(&read.result.get()), VARIANT_FALSE);
    }
    const host::Outcome key = host::get(hdr.late(), L"REGKEY");
    EXPECT_EQ(V_VT(&key.result.get()), VT_BSTR);
    EXPECT_EQ(SysStringLen(V_BSTR(&key.result.get())), 0u);
}

TEST(HdrProperties, GammaOfOneHalfReadsBackAsOneAndGammaOfTenReadsBackAsSix) {
    const Hdr hdr;
    const std::pair<double, double> cases[] = {{0.5, 1}, {10, 6}, {-3, 1},   {0, 1},
                                               {1, 1},   {6, 6},  {2.5, 2.5}};
    for (const auto& [given, held] : cases) {
        EXPECT_EQ(host::put(hdr.late(), L"Gamma", number(given)).code, S_OK);
        EXPECT_EQ(real(host::get(hdr.late(), L"Gamma")), held);
    }
}

TEST(HdrProperties, ExposureIsKeptAsGivenAndNeverFails) {
    const Hdr hdr;
    for (const double given : {0.0, -2.25, 16.0, 127.0, 128.0, 1000.0, -1000.0}) {
        EXPECT_EQ(host::put(hdr.late(), L"Exposure", number(given)).code, S_OK);
        EXPECT_EQ(real(host::get(hdr.late(), L"Exposure")), given);
    }
    EXPECT_EQ(hdr->put_Exposure(std::numeric_limits<float>::max()), S_OK);
    EXPECT_EQ(hdr->put_Exposure(std::numeric_limits<float>::infinity()), S_OK);
}

TEST(HdrProperties, AreStoredAsGiven) {
    const Hdr hdr;
    EXPECT_EQ(host::put(hdr.late(), L"REGKEY", host::Text(L"Software\\\u017Bubr")).code, S_OK);
    const host::Outcome key = host::get(hdr.late(), L"REGKEY");
    EXPECT_STREQ(V_BSTR(&key.result.get()), L"Software\\\u017Bubr");
    EXPECT_EQ(host::put(hdr.late(), L"AutoExposition", integer(1)).code, S_OK);
    EXPECT_EQ(V_BOOL(&host::get(hdr.late(), L"AutoExposition").result.get()), VARIANT_TRUE);
    EXPECT_EQ(host::put(hdr.late(), L"AutoExpositionType", integer(1)).code, S_OK);
    EXPECT_EQ(V_I4(&host::get(hdr.late(), L"AutoExpositionType").result.get()), 1);
}

TEST(HdrProperties, ThatAreReadOnlyCannotBeAssigned) {
    const Hdr hdr;
    for (const wchar_t* name : {L"DimX", L"DimY", L"HDRLoading"}) {
        EXPECT_TRUE(FAILED(host::put(hdr.late(), name, integer(1)).code));
    }
    EXPECT_EQ(hdr.dimX(), 0);
}

TEST(SetHdr, OfAnArrayWithBounds0To99And0To49And0To3GivesDimX99AndDimY49) {
    const Hdr hdr;
    Variant pixels = vrx::makeArray(host::byteArray({{0, 99}, {0, 49}, {0, 3}}));
    EXPECT_EQ(host::call(hdr.late(), L"Set_HDR", {pixels.get()}).code, S_OK);
    EXPECT_EQ(hdr.dimX(), 99);
    EXPECT_EQ(hdr.dimY(), 49);
    EXPECT_EQ(hdr.store().size(), 100u * 50u * 4u);
}

TEST(SetHdr, TakesAnArrayOfOnePixelAsAPictureWithoutPixels) {
    const Hdr hdr;
    Variant pixel = vrx::makeArray(host::byteArray({{0, 0}, {0, 0}, {0, 3}}, {128, 0, 0, 136}));
    EXPECT_EQ(hdr->Set_HDR(&pixel.get()), S_OK);
    EXPECT_EQ(hdr.dimX(), 0);
    EXPECT_EQ(hdr.dimY(), 0);
    EXPECT_EQ(hdr.compo(0, 0, 0), 128.5F);
    EXPECT_EQ(hdr->Get_BMP(), S_OK);
}

TEST(SetHdr, TakesTheArrayInEveryFormInWhichHostsPassIt) {
    const RgbePicture picture(3, 2);
    const SafeArray array = host::byteArray({{0, 3}, {0, 2}, {0, 3}}, picture.store());
    SAFEARRAY* typed = array.get();
    VARIANT value{};
    V_VT(&value) = VT_ARRAY | VT_UI1;
    V_ARRAY(&value) = typed;
    VARIANT variable = typedReference(VT_ARRAY | VT_UI1, &typed);
    for (const VARIANT& form : {value, reference(value), variable, reference(variable)}) {
        const Hdr late;
        EXPECT_EQ(host::call(late.late(), L"Set_HDR", {form}).code, S_OK) << V_VT(&form);
        EXPECT_EQ(late.store(), picture.store());
        const Hdr early;
        VARIANT argument = form;
        EXPECT_EQ(early->Set_HDR(&argument), S_OK) << V_VT(&form);
        EXPECT_EQ(early.store(), picture.store());
    }
}

TEST(SetHdr, LeavesTheCallersArrayUsableAndKeepsApartFromIt) {
    const RgbePicture picture(3, 2);
    const SafeArray array = host::byteArray({{0, 3}, {0, 2}, {0, 3}}, picture.store());
    SAFEARRAY* typed = array.get();
    const Hdr hdr;
    host::call(hdr.late(), L"Set_HDR", {typedReference(VT_ARRAY | VT_UI1, &typed)});
    EXPECT_EQ(typed->cLocks, 0u);
    LONG index[] = {1, 1, 0};
    std::uint8_t value = picture.at(1, 1).r ^ 0xFF;
    ASSERT_EQ(SafeArrayPutElement(typed, index, &value), S_OK);
    EXPECT_EQ(hdr.store(), picture.store());
}

class SetHdrRefuses : public testing::Test {
  protected:
    const RgbePicture picture_{3, 2};
    const Hdr hdr_;

    void SetUp() override { ASSERT_EQ(hdr_.set(picture_), S_OK); }

    void expectUnchanged() const {
        EXPECT_EQ(hdr_.dimX(), 3);
        EXPECT_EQ(hdr_.dimY(), 2);
        EXPECT_EQ(hdr_.store(), picture_.store());
    }
    void expectRefused(SafeArray array, const Failure& failure) const {
        SAFEARRAY* typed = array.get();
        VARTYPE type = VT_UI1;
        if (typed) SafeArrayGetVartype(typed, &type);
        VARIANT argument = typedReference(static_cast<VARTYPE>(VT_ARRAY | type), &typed);
        EXPECT_EQ(failureOf(host::call(hdr_.late(), L"Set_HDR", {argument})), failure);
        EXPECT_EQ(failureOf(hdr_->Set_HDR(&argument)), failure);
        expectUnchanged();
    }
};

TEST_F(SetHdrRefuses, ArraysOfAnotherRank) {
    expectRefused(host::byteArray({{0, 9}}), kSubscript);
    expectRefused(host::byteArray({{0, 9}, {0, 9}}), kSubscript);
    expectRefused(host::byteArray({{0, 1}, {0, 1}, {0, 3}, {0, 1}}), kSubscript);
    expectRefused({}, kSubscript);
}

TEST_F(SetHdrRefuses, ArraysWithOtherLowerBounds) {
    expectRefused(host::byteArray({{1, 4}, {0, 2}, {0, 3}}), kSubscript);
    expectRefused(host::byteArray({{0, 4}, {1, 2}, {0, 3}}), kSubscript);
    expectRefused(host::byteArray({{0, 4}, {0, 2}, {1, 4}}), kSubscript);
    expectRefused(host::byteArray({{-1, 4}, {0, 2}, {0, 3}}), kSubscript);
}

TEST_F(SetHdrRefuses, ArraysWithoutTheFourComponents) {
    expectRefused(host::byteArray({{0, 4}, {0, 2}, {0, 2}}), kSubscript);
    expectRefused(host::byteArray({{0, -1}, {0, 2}, {0, 3}}), kSubscript);
}

TEST_F(SetHdrRefuses, ArraysOfOtherElements) {
    SAFEARRAYBOUND bounds[] = {{4, 0}, {3, 0}, {4, 0}};
    for (const VARTYPE type : {VT_I1, VT_I2, VT_I4, VT_R4, VT_R8, VT_BOOL, VT_VARIANT, VT_BSTR}) {
        expectRefused(SafeArray(SafeArrayCreate(type, 3, bounds)), kTypeMismatch);
    }
}

TEST_F(SetHdrRefuses, NothingButLeavesDimXAndDimYAndTheStoreUnchangedForAVariantThatHoldsNoArray) {
    Variant text = vrx::makeText(u"1,2,3");
    VARIANT null{};
    V_VT(&null) = VT_NULL;
    long typed = 4;
    const VARIANT others[] = {VARIANT{},   null,       integer(7),
                              number(1.5), text.get(), typedReference(VT_I4, &typed)};
    for (VARIANT other : others) {
        EXPECT_EQ(host::call(hdr_.late(), L"Set_HDR", {other}).code, S_OK) << V_VT(&other);
        EXPECT_EQ(host::call(hdr_.late(), L"Set_HDR", {reference(other)}).code, S_OK) << V_VT(&other);
        EXPECT_EQ(hdr_->Set_HDR(&other), S_OK) << V_VT(&other);
        expectUnchanged();
    }
}

TEST(GetHdr, HandsOutACopyInEveryFormOfAVariable) {
    const RgbePicture picture(4, 3);
    const Hdr hdr;
    hdr.set(picture);
    Variant empty;
    Variant text = vrx::makeText(u"old");
    SAFEARRAY* typed = nullptr;
    VARIANT array = typedReference(VT_ARRAY | VT_UI1, &typed);
    for (const VARIANT& form : {reference(empty.get()), reference(text.get()), array, reference(array)}) {
        EXPECT_EQ(host::call(hdr.late(), L"Get_HDR", {form}).code, S_OK);
    }
    const SafeArray owned(typed);
    ASSERT_EQ(V_VT(&empty.get()), VT_ARRAY | VT_UI1);
    ASSERT_EQ(V_VT(&text.get()), VT_ARRAY | VT_UI1);
    for (SAFEARRAY* copy : {V_ARRAY(&empty.get()), V_ARRAY(&text.get()), typed}) {
        const vrx::ByteArrayView view(copy);
        ASSERT_EQ(view.rank(), 3u);
        EXPECT_EQ(view.bounds(0).lower, 0);
        EXPECT_EQ(view.bounds(0).upper, 4);
        EXPECT_EQ(view.bounds(1).upper, 3);
        EXPECT_EQ(view.bounds(2).upper, 3);
        EXPECT_TRUE(std::ranges::equal(view.bytes(), picture.store()));
        view.bytes()[0] ^= 0xFF;
    }
    EXPECT_EQ(hdr.store(), picture.store());
}

TEST(GetHdr, OfAnEmptyObjectIsEmpty) {
    const Hdr hdr;
    Variant variable = vrx::makeText(u"old");
    EXPECT_EQ(host::call(hdr.late(), L"Get_HDR", {reference(variable.get())}).code, S_OK);
    EXPECT_EQ(V_VT(&variable.get()), VT_EMPTY);
    hdr.set(RgbePicture(2, 2));
    EXPECT_EQ(hdr->Cls(), S_OK);
    variable = vrx::makeLong(3);
    EXPECT_EQ(hdr->Get_HDR(&variable.get()), S_OK);
    EXPECT_EQ(V_VT(&variable.get()), VT_EMPTY);
}

TEST(GetHdr, OfAnObjectWithoutPixelsIntoATypedByteArrayIsAnEmptyByteArray) {
    const Hdr hdr;
    for (const bool late : {true, false}) {
        SAFEARRAY* typed = host::byteArray({{0, 9}}).release();
        VARIANT array = typedReference(VT_ARRAY | VT_UI1, &typed);
        const HRESULT code = late ? host::call(hdr.late(), L"Get_HDR", {array}).code : hdr->Get_HDR(&array);
        EXPECT_EQ(code, S_OK);
        const SafeArray owned(typed);
        ASSERT_TRUE(typed);
        EXPECT_EQ(SafeArrayGetDim(typed), 1u);
        const vrx::ByteArrayView view(typed);
        EXPECT_TRUE(view.bytes().empty());
        EXPECT_EQ(view.bounds(0).lower, 0);
        EXPECT_EQ(view.bounds(0).upper, -1);
    }
    SAFEARRAY* none = nullptr;
    VARIANT array = typedReference(VT_ARRAY | VT_UI1, &none);
    EXPECT_EQ(hdr->Get_HDR(&array), S_OK);
    const SafeArray owned(none);
}

TEST(Cls, ErasesThePixelsAndTheSizes) {
    const Hdr hdr;
    hdr.set(RgbePicture(5, 4));
    hdr.view(2, 2);
    EXPECT_EQ(host::call(hdr.late(), L"Cls").code, S_OK);
    EXPECT_EQ(hdr.dimX(), 0);
    EXPECT_EQ(hdr.dimY(), 0);
    EXPECT_EQ(hdr.compo(0, 0, 0), 0x1p-136F);
    EXPECT_EQ(real(host::get(hdr.late(), L"Exposure")), 2);
    EXPECT_EQ(real(host::get(hdr.late(), L"Gamma")), 2);
}

}  // namespace
