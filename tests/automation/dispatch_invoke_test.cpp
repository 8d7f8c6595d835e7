// Late-bound calls: members and kinds, named and missing arguments, failures, and what hostile hosts may
// send.

#include <gtest/gtest.h>

#include <olectl.h>

#include <new>
#include <stdexcept>

#include "host.h"
#include "probes.h"

using host::call;
using host::integer;
using host::invoke;
using host::number;
using host::Outcome;
using host::Text;
using vrx::ComPtr;

namespace {

constexpr DISPID kScaleX = 1;
constexpr DISPID kColorToBn = 5;
constexpr DISPID kMousePointer = 8;

class Calls : public testing::Test {
  protected:
    ComPtr<probe::Effects> effects_ = probe::make<probe::Effects>();

    void SetUp() override {
        effects_->onScale = [](float width) { return static_cast<short>(width); };
    }
};

TEST_F(Calls, AnswerTheResultInItsType) {
    const Outcome outcome = call(*effects_, L"ScaleX", {number(12)});
    ASSERT_EQ(outcome.code, S_OK);
    ASSERT_EQ(V_VT(&outcome.result.get()), VT_I2);
    EXPECT_EQ(V_I2(&outcome.result.get()), 12);
}

TEST_F(Calls, NeedNoPlaceForTheResult) {
    VARIANT width = number(12);
    DISPPARAMS arguments{&width, nullptr, 1, 0};
    EXPECT_EQ(effects_->Invoke(kScaleX, IID_NULL, 0, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr),
              S_OK);
}

TEST_F(Calls, AreFoundAsMethodOrPropertyWhenTheHostCannotTell) {
    EXPECT_EQ(call(*effects_, L"ScaleX", {number(1)}, DISPATCH_METHOD | DISPATCH_PROPERTYGET).code, S_OK);
    EXPECT_EQ(call(*effects_, L"ScaleX", {number(1)}, DISPATCH_PROPERTYGET).code, DISP_E_MEMBERNOTFOUND);
    const auto preview = probe::make<probe::Preview>();
    EXPECT_EQ(call(*preview, L"MousePointer", {}, DISPATCH_METHOD | DISPATCH_PROPERTYGET).code, S_OK);
    EXPECT_EQ(call(*preview, L"MousePointer", {}, DISPATCH_METHOD).code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(Calls, TakeNamedArgumentsInAnyOrder) {
    // ImageHandle, PictureHDC and FileName by name, in the order of rgvarg.
    const Text file(L"f");
    VARIANT arguments[] = {integer(3), integer(2), file};
    DISPID names[] = {2, 1, 0};
    EXPECT_EQ(invoke(*effects_, kColorToBn, DISPATCH_METHOD, {arguments, names, 3, 3}).code, S_OK);
    EXPECT_TRUE(effects_->received->fileName == u"f");
    EXPECT_EQ(effects_->received->pictureHdc, 2);
    EXPECT_EQ(effects_->received->imageHandle, 3);
}

TEST_F(Calls, TakeNamedArgumentsBesidePositionalOnes) {
    const Text file(L"f");
    VARIANT arguments[] = {integer(55), integer(3), integer(2), file};
    DISPID height = 7;
    EXPECT_EQ(invoke(*effects_, kColorToBn, DISPATCH_METHOD, {arguments, &height, 4, 1}).code, S_OK);
    EXPECT_EQ(effects_->received->height, 55);
    EXPECT_EQ(effects_->received->width, 0);
    EXPECT_EQ(effects_->received->threshold, 128);
}

TEST_F(Calls, FindParametersByTheirNames) {
    wchar_t* names[] = {const_cast<wchar_t*>(L"colortobn"), const_cast<wchar_t*>(L"Threshold"),
                        const_cast<wchar_t*>(L"FileName")};
    DISPID ids[3] = {};
    ASSERT_EQ(effects_->GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
    EXPECT_EQ(ids[0], 5);
    EXPECT_EQ(ids[1], 4);
    EXPECT_EQ(ids[2], 0);
}

TEST_F(Calls, RefuseNamesThatAreUnknownOrGivenTwice) {
    const Text file(L"f");
    VARIANT arguments[] = {integer(3), integer(2), integer(1), file};
    DISPID name = 8;
    const Outcome unknown = invoke(*effects_, kColorToBn, DISPATCH_METHOD, {arguments, &name, 4, 1});
    EXPECT_EQ(unknown.code, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(unknown.badArgument, 0u);
    name = 1;
    EXPECT_EQ(invoke(*effects_, kColorToBn, DISPATCH_METHOD, {arguments, &name, 4, 1}).code,
              DISP_E_BADPARAMCOUNT);
    name = DISPID_PROPERTYPUT;
    EXPECT_EQ(invoke(*effects_, kColorToBn, DISPATCH_METHOD, {arguments, &name, 4, 1}).code,
              DISP_E_PARAMNOTFOUND);
    name = 7;
    EXPECT_EQ(invoke(*effects_, kColorToBn, DISPATCH_METHOD, {arguments, &name, 1, 1}).code,
              DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(Calls, RefuseTooFewAndTooManyArguments) {
    EXPECT_EQ(call(*effects_, L"ScaleX").code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(call(*effects_, L"ScaleX", {number(1), number(2)}).code, DISP_E_BADPARAMCOUNT);
    std::vector<VARIANT> many(60000, integer(1));
    EXPECT_EQ(invoke(*effects_, kScaleX, DISPATCH_METHOD, {many.data(), nullptr, 60000, 0}).code,
              DISP_E_BADPARAMCOUNT);
}

TEST_F(Calls, RefuseHostileArgumentBlocks) {
    VARIANT argument = number(1);
    DISPID name = 0;
    EXPECT_EQ(invoke(*effects_, kScaleX, DISPATCH_METHOD, {nullptr, nullptr, 1, 0}).code, E_INVALIDARG);
    EXPECT_EQ(invoke(*effects_, kScaleX, DISPATCH_METHOD, {&argument, &name, 1, 2}).code, E_INVALIDARG);
    EXPECT_EQ(invoke(*effects_, kScaleX, DISPATCH_METHOD, {&argument, nullptr, 1, 1}).code, E_INVALIDARG);
    EXPECT_EQ(invoke(*effects_, kScaleX, DISPATCH_METHOD, {&argument, &name, 0xFFFFFFFF, 0xFFFFFFFF}).code,
              DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invoke(*effects_, kScaleX, 0, {&argument, nullptr, 1, 0}).code, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(*effects_, DISPID_VALUE, DISPATCH_PROPERTYGET, {}).code, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(effects_->Invoke(kScaleX, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
              E_INVALIDARG);
    DISPPARAMS arguments{&argument, nullptr, 1, 0};
    EXPECT_EQ(
        effects_->Invoke(kScaleX, IID_IDispatch, 0, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr),
        DISP_E_UNKNOWNINTERFACE);
}

TEST_F(Calls, ConvertWithoutRegardToTheUsersLocale) {
    float received = 0;
    effects_->onScale = [&](float width) { return received = width, short{0}; };
    EXPECT_EQ(call(*effects_, L"ScaleX", {Text(L"1.5")}).code, S_OK);
    EXPECT_EQ(received, 1.5f);
}

TEST_F(Calls, BringErrorsOfTheLibraryToTheHostWhole) {
    effects_->onScale = [](float) -> short { throw vrx::Error{1, u"CVrxHDR::Import", u"File Type Wrong!"}; };
    const Outcome outcome = call(*effects_, L"ScaleX", {number(1)});
    EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.scode, static_cast<HRESULT>(0x800A0001));
    EXPECT_EQ(outcome.wCode, 0);
    EXPECT_EQ(outcome.source, L"CVrxHDR::Import");
    EXPECT_EQ(outcome.description, L"File Type Wrong!");
}

TEST_F(Calls, GiveErrorsWithoutASourceTheNameOfTheClass) {
    effects_->onScale = [](float) -> short { throw vrx::platformError(vrx::Platform::FileNotFound); };
    const Outcome outcome = call(*effects_, L"ScaleX", {number(1)});
    EXPECT_EQ(outcome.scode, static_cast<HRESULT>(0x800A0035));
    EXPECT_EQ(outcome.source, L"Effects");
    EXPECT_EQ(outcome.description, L"File not found");
}

TEST_F(Calls, TurnEveryOtherExceptionIntoAnError) {
    effects_->onScale = [](float) -> short { throw std::bad_alloc(); };
    EXPECT_EQ(call(*effects_, L"ScaleX", {number(1)}).scode, static_cast<HRESULT>(0x800A0007));
    effects_->onScale = [](float) -> short { throw std::runtime_error("odd"); };
    EXPECT_EQ(call(*effects_, L"ScaleX", {number(1)}).scode, static_cast<HRESULT>(0x800A0033));
    effects_->onScale = [](float) -> short { throw 5; };
    EXPECT_EQ(call(*effects_, L"ScaleX", {number(1)}).description, L"Internal error");
}

TEST_F(Calls, FailForHostsWithoutExceptionInformationToo) {
    effects_->onScale = [](float) -> short { throw vrx::platformError(vrx::Platform::Overflow); };
    VARIANT width = number(1);
    DISPPARAMS arguments{&width, nullptr, 1, 0};
    EXPECT_EQ(effects_->Invoke(kScaleX, IID_NULL, 0, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr),
              DISP_E_EXCEPTION);
}

TEST_F(Calls, DoNotReportTheErrorOfAnEarlierCall) {
    effects_->onScale = [](float) -> short { throw vrx::Error{5, u"Old", u"old"}; };
    short ignored = 0;
    EXPECT_TRUE(FAILED(effects_->ScaleX(1, &ignored)));
    effects_->onScale = [](float) { return short{1}; };
    EXPECT_EQ(call(*effects_, L"ScaleX", {number(1)}).code, S_OK);
    ComPtr<IErrorInfo> left;
    EXPECT_EQ(GetErrorInfo(0, left.put()), S_FALSE);
}

class Properties : public testing::Test {
  protected:
    ComPtr<probe::Preview> preview_ = probe::make<probe::Preview>();
};

TEST_F(Properties, ArePutByNameOrByPosition) {
    EXPECT_EQ(host::put(*preview_, L"MousePointer", integer(5)).code, S_OK);
    EXPECT_EQ(preview_->mousePointer, 5);
    VARIANT value = integer(6);
    EXPECT_EQ(invoke(*preview_, kMousePointer, DISPATCH_PROPERTYPUT, {&value, nullptr, 1, 0}).code, S_OK);
    EXPECT_EQ(preview_->mousePointer, 6);
    EXPECT_EQ(invoke(*preview_, kMousePointer, DISPATCH_PROPERTYPUT, {}).code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(host::put(*preview_, L"MousePointer", integer(40000)).scode, static_cast<HRESULT>(0x800A0006));
}

TEST_F(Properties, ThatAreReadOnlyCannotBePut) {
    EXPECT_EQ(host::put(*preview_, L"ImageWidth", integer(5)).code, DISP_E_MEMBERNOTFOUND);
}

ComPtr<IPictureDisp> emptyPicture() {
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_NONE;
    ComPtr<IPictureDisp> picture;
    OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE, reinterpret_cast<void**>(picture.put()));
    return picture;
}

VARIANT object(VARTYPE type, IUnknown* value) {
    VARIANT made{};
    V_VT(&made) = type;
    V_UNKNOWN(&made) = value;
    return made;
}

TEST_F(Properties, ThatHoldObjectsComeBackAsTheSameObject) {
    const ComPtr<IPictureDisp> picture = emptyPicture();
    ASSERT_TRUE(picture);
    EXPECT_EQ(host::put(*preview_, L"Picture", object(VT_DISPATCH, picture.get())).code, S_OK);
    EXPECT_EQ(preview_->picture.get(), picture.get());
    const Outcome got = host::get(*preview_, L"Picture");
    ASSERT_EQ(V_VT(&got.result.get()), VT_DISPATCH);
    EXPECT_EQ(V_DISPATCH(&got.result.get()), picture.get());
    EXPECT_EQ(host::put(*preview_, L"Picture", object(VT_UNKNOWN, picture.get())).code, S_OK);
    EXPECT_EQ(host::put(*preview_, L"Picture", object(VT_DISPATCH, nullptr)).code, S_OK);
    EXPECT_FALSE(preview_->picture);
}

TEST_F(Properties, ThatHoldObjectsAreSetAsReferences) {
    const ComPtr<IDispatch> hdr = host::createDirectly(CLSID_CVrxHDR);
    ASSERT_TRUE(hdr);
    EXPECT_EQ(host::put(*preview_, L"objHDR", object(VT_DISPATCH, hdr.get()), DISPATCH_PROPERTYPUTREF).code,
              S_OK);
    EXPECT_TRUE(preview_->hdr);
    EXPECT_EQ(host::put(*preview_, L"objHDR", object(VT_DISPATCH, hdr.get())).code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(Properties, RefuseObjectsOfAnotherKind) {
    const ComPtr<IDispatch> hdr = host::createDirectly(CLSID_CVrxHDR);
    EXPECT_EQ(host::put(*preview_, L"Picture", object(VT_DISPATCH, hdr.get())).scode,
              static_cast<HRESULT>(0x800A000D));
    EXPECT_EQ(host::put(*preview_, L"Picture", integer(1)).scode, static_cast<HRESULT>(0x800A000D));
    EXPECT_FALSE(preview_->picture);
}

}  // namespace
