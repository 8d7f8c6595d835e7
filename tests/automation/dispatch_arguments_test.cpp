// Every form in which hosts pass arguments for by-reference parameters, and what comes back.

#include <gtest/gtest.h>

#include <array>

#include "host.h"
#include "probes.h"

using host::call;
using host::integer;
using host::omitted;
using host::Outcome;
using host::reference;
using host::Text;
using host::truth;
using host::typedReference;
using vrx::Variant;

namespace {

constexpr HRESULT kTypeMismatch = static_cast<HRESULT>(0x800A000D);  // 13
constexpr HRESULT kOverflow = static_cast<HRESULT>(0x800A0006);      // 6

class Scalars : public testing::Test {
  protected:
    vrx::ComPtr<probe::Effects> effects_ = probe::make<probe::Effects>();

    Outcome color(std::initializer_list<VARIANT> optional) {
        const Text file(L"file");
        std::vector<VARIANT> arguments = {file, integer(11), integer(12)};
        arguments.insert(arguments.end(), optional.begin(), optional.end());
        std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
        return host::invoke(*effects_, 5, DISPATCH_METHOD,
                            {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0});
    }

    void expectDefaults() {
        ASSERT_TRUE(effects_->received);
        EXPECT_FALSE(effects_->received->twoColor);
        EXPECT_EQ(effects_->received->threshold, 128);
        EXPECT_FALSE(effects_->received->holdProportion);
        EXPECT_EQ(effects_->received->width, 0);
        EXPECT_EQ(effects_->received->height, 0);
    }
};

TEST_F(Scalars, LeftOutAtTheEndArriveAsTheirDefaults) {
    const Outcome outcome = color({});
    ASSERT_EQ(outcome.code, S_OK);
    EXPECT_TRUE(effects_->received->fileName == u"file");
    EXPECT_EQ(effects_->received->pictureHdc, 11);
    EXPECT_EQ(effects_->received->imageHandle, 12);
    expectDefaults();
    ASSERT_EQ(V_VT(&outcome.result.get()), VT_BOOL);
    EXPECT_EQ(V_BOOL(&outcome.result.get()), VARIANT_TRUE);
}

TEST_F(Scalars, MarkedAsLeftOutArriveAsTheirDefaults) {
    VARIANT missing = omitted();
    SCODE missingCode = DISP_E_PARAMNOTFOUND;
    const VARIANT marks[] = {missing, reference(missing), typedReference(VT_ERROR, &missingCode)};
    for (const VARIANT& mark : marks) {
        ASSERT_EQ(color({mark, mark, mark, mark, mark}).code, S_OK);
        expectDefaults();
    }
    EXPECT_EQ(V_VT(&missing), VT_ERROR);
    EXPECT_EQ(V_ERROR(&missing), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(missingCode, DISP_E_PARAMNOTFOUND);
}

TEST_F(Scalars, AsReferencesOfTheExactTypeComeBack) {
    VARIANT_BOOL two = VARIANT_FALSE;
    unsigned char threshold = 200;
    VARIANT_BOOL hold = VARIANT_FALSE;
    long width = 3;
    long height = 4;
    ASSERT_EQ(
        color({typedReference(VT_BOOL, &two), typedReference(VT_UI1, &threshold),
               typedReference(VT_BOOL, &hold), typedReference(VT_I4, &width), typedReference(VT_I4, &height)})
            .code,
        S_OK);
    EXPECT_EQ(effects_->received->threshold, 200);
    EXPECT_EQ(effects_->received->width, 3);
    EXPECT_EQ(effects_->received->height, 4);
    EXPECT_EQ(two, VARIANT_TRUE);
    EXPECT_EQ(threshold, 7);
    EXPECT_EQ(hold, VARIANT_TRUE);
    EXPECT_EQ(width, 640);
    EXPECT_EQ(height, 480);
}

TEST_F(Scalars, AsScriptVariablesComeBackInTheTypeOfTheParameter) {
    Variant empty;
    Variant text = vrx::makeText(u"12");
    Variant real = vrx::makeDouble(33.5);
    Variant narrow = vrx::makeInteger(5);
    ASSERT_EQ(color({reference(empty.get()), reference(text.get()), omitted(), reference(real.get()),
                     reference(narrow.get())})
                  .code,
              S_OK);
    EXPECT_FALSE(effects_->received->twoColor);
    EXPECT_EQ(effects_->received->threshold, 12);
    EXPECT_EQ(effects_->received->width, 34);  // 33.5 to even
    EXPECT_EQ(effects_->received->height, 5);
    EXPECT_EQ(V_VT(&empty.get()), VT_BOOL);
    EXPECT_EQ(V_BOOL(&empty.get()), VARIANT_TRUE);
    EXPECT_EQ(V_VT(&text.get()), VT_UI1);
    EXPECT_EQ(V_UI1(&text.get()), 7);
    EXPECT_EQ(V_VT(&real.get()), VT_I4);
    EXPECT_EQ(V_I4(&real.get()), 640);
    EXPECT_EQ(V_I4(&narrow.get()), 480);
}

TEST(Arguments, AreWrittenBackOnlyWhereTheMethodChangedThem) {
    const auto effects = host::create(L"VrxCommon.ImageFX");
    ASSERT_TRUE(effects);
    Variant two = vrx::makeInteger(1);
    Variant threshold = vrx::makeText(u"12");
    Variant hold;
    double width = 33.5;
    Variant height = vrx::makeDouble(8.25);
    ASSERT_EQ(
        call(*effects, L"ColorToBN",
             {Text(L"no such file"), integer(0), integer(0), reference(two.get()), reference(threshold.get()),
              reference(hold.get()), typedReference(VT_R8, &width), reference(height.get())})
            .code,
        S_OK);
    EXPECT_EQ(V_VT(&two.get()), VT_I2);
    EXPECT_EQ(V_I2(&two.get()), 1);
    ASSERT_EQ(V_VT(&threshold.get()), VT_BSTR);
    EXPECT_STREQ(V_BSTR(&threshold.get()), L"12");
    EXPECT_EQ(V_VT(&hold.get()), VT_EMPTY);
    EXPECT_EQ(width, 33.5);
    ASSERT_EQ(V_VT(&height.get()), VT_R8);
    EXPECT_EQ(V_R8(&height.get()), 8.25);
}

TEST(Arguments, OfALoadStayAsTheHostWroteThem) {
    const auto hdr = host::create(L"VrxCommon.CVrxHDR");
    ASSERT_TRUE(hdr);
    Variant invert = vrx::makeInteger(1);
    call(*hdr, L"Load_HDR", {Text(L""), reference(invert.get())});
    EXPECT_EQ(V_VT(&invert.get()), VT_I2);
    EXPECT_EQ(V_I2(&invert.get()), 1);
}

TEST(Arguments, OfTextKeepTheTypeThatTheyHadWhereTheTextIsTheSame) {
    const auto image = probe::make<probe::Image>();
    image->leavesPath = true;
    Variant file = vrx::makeLong(12);
    ASSERT_EQ(call(*image, L"Save_BMP", {reference(file.get())}).code, S_OK);
    EXPECT_TRUE(image->path == u"12");
    EXPECT_EQ(V_VT(&file.get()), VT_I4);
}

TEST_F(Scalars, AsVariablesThatReferToOthersComeBackThere) {
    long width = 21;
    VARIANT inner = typedReference(VT_I4, &width);
    VARIANT middle = reference(inner);
    ASSERT_EQ(color({omitted(), omitted(), omitted(), reference(middle)}).code, S_OK);
    EXPECT_EQ(effects_->received->width, 21);
    EXPECT_EQ(width, 640);
    EXPECT_EQ(V_VT(&inner), VT_BYREF | VT_I4);
}

TEST_F(Scalars, AsReferencesOfAnotherTypeAreConvertedBothWays) {
    short width = 9;
    double height = 8.0;
    BSTR threshold = SysAllocString(L"44");
    ASSERT_EQ(color({omitted(), typedReference(VT_BSTR, &threshold), omitted(), typedReference(VT_I2, &width),
                     typedReference(VT_R8, &height)})
                  .code,
              S_OK);
    EXPECT_EQ(effects_->received->threshold, 44);
    EXPECT_EQ(effects_->received->width, 9);
    EXPECT_EQ(effects_->received->height, 8);
    EXPECT_STREQ(threshold, L"7");
    EXPECT_EQ(width, 640);
    EXPECT_EQ(height, 480.0);
    SysFreeString(threshold);
}

TEST_F(Scalars, AsPlainValuesArrive) {
    ASSERT_EQ(color({truth(true), integer(99), truth(true), integer(-1), Text(L"1000")}).code, S_OK);
    EXPECT_TRUE(effects_->received->twoColor);
    EXPECT_EQ(effects_->received->threshold, 99);
    EXPECT_TRUE(effects_->received->holdProportion);
    EXPECT_EQ(effects_->received->width, -1);
    EXPECT_EQ(effects_->received->height, 1000);
}

TEST_F(Scalars, DoNotComeBackFromACallThatFails) {
    effects_->failure = vrx::Error{79, u"", u"Path not found!"};
    long width = 3;
    Variant height = vrx::makeText(u"4");
    const Outcome outcome =
        color({omitted(), omitted(), omitted(), typedReference(VT_I4, &width), reference(height.get())});
    EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
    EXPECT_EQ(width, 3);
    EXPECT_EQ(V_VT(&height.get()), VT_BSTR);
    EXPECT_EQ(V_VT(&outcome.result.get()), VT_EMPTY);
}

TEST_F(Scalars, ThatDoNotSuitAreNamedByTheirIndex) {
    // Five optional arguments given, so Threshold, the second of them, is at index 3.
    const Outcome mismatch = color({omitted(), Text(L"abc"), omitted(), omitted(), omitted()});
    EXPECT_EQ(mismatch.code, DISP_E_EXCEPTION);
    EXPECT_EQ(mismatch.scode, kTypeMismatch);
    EXPECT_EQ(mismatch.source, L"Effects");
    EXPECT_EQ(mismatch.description, L"Type mismatch");
    EXPECT_EQ(mismatch.badArgument, 3u);
    const Outcome overflow = color({omitted(), integer(300), omitted(), omitted(), omitted()});
    EXPECT_EQ(overflow.scode, kOverflow);
    EXPECT_EQ(overflow.badArgument, 3u);
    EXPECT_FALSE(effects_->received);
}

TEST_F(Scalars, ThatDoNotSuitGiveTheGenericCodeToAHostWithoutExceptionInformation) {
    VARIANT arguments[] = {integer(300), truth(false), integer(1), integer(1), integer(0)};
    DISPPARAMS parameters{arguments, nullptr, 5, 0};
    UINT badArgument = 99;
    EXPECT_EQ(effects_->Invoke(5, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, &badArgument),
              DISP_E_OVERFLOW);
    EXPECT_EQ(badArgument, 0u);
    const Text wrong(L"abc");
    arguments[0] = wrong;
    EXPECT_EQ(effects_->Invoke(5, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
              DISP_E_TYPEMISMATCH);
}

TEST_F(Scalars, ThatDoNotFitTheHostsVariableFailAfterTheCall) {
    unsigned char width = 1;
    const Outcome outcome = color({omitted(), omitted(), omitted(), typedReference(VT_UI1, &width)});
    EXPECT_EQ(outcome.scode, kOverflow);
    EXPECT_EQ(outcome.badArgument, 0u);
    EXPECT_TRUE(effects_->received);
    EXPECT_EQ(width, 1);
}

TEST_F(Scalars, AsNullOrEndlessReferencesAreRefused) {
    VARIANT endless{};
    endless = reference(endless);
    const VARIANT hostile[] = {typedReference(VT_I4, nullptr), typedReference(VT_VARIANT, nullptr), endless,
                               typedReference(VT_ERROR, nullptr), typedReference(0x0FFF, &endless)};
    for (const VARIANT& argument : hostile) {
        const Outcome outcome = color({omitted(), omitted(), omitted(), argument});
        EXPECT_EQ(outcome.scode, kTypeMismatch) << V_VT(&argument);
        EXPECT_EQ(outcome.badArgument, 0u);
    }
    EXPECT_FALSE(effects_->received);
}

TEST(TextByReference, ComesBackInEveryForm) {
    const auto image = probe::make<probe::Image>();
    BSTR typed = SysAllocString(L"typed");
    Variant variable = vrx::makeText(u"variable");
    EXPECT_EQ(call(*image, L"Save_BMP", {typedReference(VT_BSTR, &typed)}).code, S_OK);
    EXPECT_TRUE(image->path == u"typed");
    EXPECT_STREQ(typed, L"changed");
    EXPECT_EQ(call(*image, L"Save_BMP", {reference(variable.get())}).code, S_OK);
    EXPECT_TRUE(image->path == u"variable");
    EXPECT_STREQ(V_BSTR(&variable.get()), L"changed");
    EXPECT_EQ(call(*image, L"Save_BMP", {Text(L"value")}).code, S_OK);
    EXPECT_TRUE(image->path == u"value");
    const Outcome outcome = call(*image, L"Save_BMP");
    EXPECT_TRUE(image->path.empty());
    ASSERT_EQ(V_VT(&outcome.result.get()), VT_BSTR);
    EXPECT_STREQ(V_BSTR(&outcome.result.get()), L"saved");
    SysFreeString(typed);
}

class Variants : public testing::Test {
  protected:
    vrx::ComPtr<probe::Effects> effects_ = probe::make<probe::Effects>();
    VARIANT* place_ = nullptr;

    void SetUp() override {
        effects_->onBuffer = [this](VARIANT& buffer) {
            place_ = &buffer;
            vrx::putVariant(buffer, vrx::makeLong(vrx::toText(buffer) == u"5" ? 6 : 0));
        };
    }
    HRESULT blur(VARIANT buffer) {
        return call(*effects_, L"Blur_Buffer", {buffer, integer(1), integer(1)}).code;
    }
};

TEST_F(Variants, AsScriptVariablesAreHandedOverAsTheyAre) {
    Variant variable = vrx::makeText(u"5");
    EXPECT_EQ(blur(reference(variable.get())), S_OK);
    EXPECT_EQ(place_, &variable.get());
    EXPECT_EQ(V_VT(&variable.get()), VT_I4);
    EXPECT_EQ(V_I4(&variable.get()), 6);
}

TEST_F(Variants, AsTypedReferencesComeBackConverted) {
    short typed = 5;
    EXPECT_EQ(blur(typedReference(VT_I2, &typed)), S_OK);
    EXPECT_EQ(typed, 6);
    VARIANT inner = typedReference(VT_I2, &typed);
    typed = 5;
    EXPECT_EQ(blur(reference(inner)), S_OK);
    EXPECT_EQ(typed, 6);
    EXPECT_EQ(V_VT(&inner), VT_BYREF | VT_I2);
}

TEST_F(Variants, AsPlainValuesAreCopied) {
    const Variant value = vrx::makeText(u"5");
    EXPECT_EQ(blur(value.get()), S_OK);
    ASSERT_EQ(V_VT(&value.get()), VT_BSTR);
    EXPECT_STREQ(V_BSTR(&value.get()), L"5");
    EXPECT_NE(place_, &value.get());
}

TEST_F(Variants, ThatAreRequiredCannotBeLeftOut) {
    EXPECT_EQ(blur(omitted()), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(call(*effects_, L"Blur_Buffer").code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(place_, nullptr);
}

}  // namespace
