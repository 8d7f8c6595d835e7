// Class factories, the life of the module, and the standard interfaces of every class.

#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>

#include "VrxCommon.h"
#include "host.h"

using vrx::ComPtr;

namespace {

struct Row {
    const wchar_t* name;
    const CLSID& classId;
    const IID& interfaceId;
    const IID* events = nullptr;  ///< null without
};

const Row kRows[] = {
    {L"CVrxHDR", CLSID_CVrxHDR, IID__CVrxHDR, &DIID___CVrxHDR},
    {L"CVrxImage", CLSID_CVrxImage, IID__CVrxImage},
    {L"ImageFX", CLSID_ImageFX, IID__ImageFX},
    {L"CVrxPattern", CLSID_CVrxPattern, IID__CVrxPattern},
    {L"CVrxFun", CLSID_CVrxFun, IID__CVrxFun},
    {L"VrxPreviewImg", CLSID_VrxPreviewImg, IID__VrxPreviewImg, &DIID___VrxPreviewImg},
};

ComPtr<IClassFactory> factoryOf(REFCLSID classId) {
    ComPtr<IClassFactory> factory;
    host::component().classObject(classId, IID_IClassFactory, reinterpret_cast<void**>(factory.put()));
    return factory;
}

class EveryClass : public testing::TestWithParam<Row> {};

TEST_P(EveryClass, IsCreatedByBothOfItsProgramIds) {
    const std::wstring programId = std::wstring(L"VrxCommon.") + GetParam().name;
    EXPECT_TRUE(host::create(programId.c_str()));
    EXPECT_TRUE(host::create((programId + L".1").c_str()));
}

TEST_P(EveryClass, RefusesToBeAggregated) {
    const ComPtr<IClassFactory> factory = factoryOf(GetParam().classId);
    ASSERT_TRUE(factory);
    void* object = &object;
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
}

TEST_P(EveryClass, RefusesAnUnknownInterface) {
    const ComPtr<IClassFactory> factory = factoryOf(GetParam().classId);
    ASSERT_TRUE(factory);
    void* object = &object;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST_P(EveryClass, OffersItsInterfacesWithOneIdentity) {
    const ComPtr<IDispatch> object = host::createDirectly(GetParam().classId);
    ASSERT_TRUE(object);
    const ComPtr<IUnknown> identity = object.as<IUnknown>();
    for (const IID& iid : {IID_IUnknown, IID_IDispatch, GetParam().interfaceId, IID_ISupportErrorInfo,
                           IID_IProvideClassInfo, IID_IProvideClassInfo2}) {
        ComPtr<IUnknown> other;
        ASSERT_EQ(object->QueryInterface(iid, reinterpret_cast<void**>(other.put())), S_OK);
        EXPECT_EQ(other.as<IUnknown>().get(), identity.get());
    }
    EXPECT_EQ(static_cast<bool>(object.as<IConnectionPointContainer>()), GetParam().events != nullptr);
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_P(EveryClass, SupportsErrorInformationForItsInterfaceOnly) {
    const ComPtr<ISupportErrorInfo> support =
        host::createDirectly(GetParam().classId).as<ISupportErrorInfo>();
    ASSERT_TRUE(support);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(GetParam().interfaceId), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IStream), S_FALSE);
}

TEST_P(EveryClass, DescribesItself) {
    const ComPtr<IProvideClassInfo2> provider =
        host::createDirectly(GetParam().classId).as<IProvideClassInfo2>();
    ASSERT_TRUE(provider);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(provider->GetClassInfo(info.put()), S_OK);
    vrx::Bstr name;
    ASSERT_EQ(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_STREQ(name.get(), GetParam().name);

    GUID events{};
    const HRESULT result = provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events);
    EXPECT_EQ(result, GetParam().events ? S_OK : E_NOTIMPL);
    EXPECT_TRUE(events == (GetParam().events ? *GetParam().events : GUID_NULL));
    EXPECT_EQ(provider->GetGUID(99, &events), E_INVALIDARG);
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
    EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);
}

TEST_P(EveryClass, AnswersForUnknownNamesAndMembers) {
    const ComPtr<IDispatch> object = host::createDirectly(GetParam().classId);
    ASSERT_TRUE(object);
    DISPID id = 7;
    wchar_t* names[] = {const_cast<wchar_t*>(L"Nonsense")};
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, 0, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
    EXPECT_EQ(object->GetIDsOfNames(IID_IUnknown, names, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id), E_INVALIDARG);
    EXPECT_EQ(host::invoke(*object, 4711, DISPATCH_METHOD, {}).code, DISP_E_MEMBERNOTFOUND);
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(object->GetTypeInfo(1, 0, info.put()), DISP_E_BADINDEX);
    UINT count = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
}

INSTANTIATE_TEST_SUITE_P(Of, EveryClass, testing::ValuesIn(kRows),
                         [](const testing::TestParamInfo<Row>& row) {
                             const std::wstring name = row.param.name;
                             return std::string(name.begin(), name.end());
                         });

TEST(ClassObjects, AreRefusedForEveryOtherClass) {
    void* object = &object;
    for (const IID& other : {GUID_NULL, IID_IUnknown, IID__VrxPreviewImg, LIBID_VrxCommon}) {
        EXPECT_EQ(host::component().classObject(other, IID_IClassFactory, &object),
                  CLASS_E_CLASSNOTAVAILABLE);
        EXPECT_EQ(object, nullptr);
    }
    EXPECT_EQ(host::component().classObject(CLSID_CVrxHDR, IID_IStream, &object), E_NOINTERFACE);
    EXPECT_EQ(host::component().classObject(CLSID_CVrxHDR, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(Module, MayBeUnloadedOnlyWhenNothingIsLeft) {
    CoFreeUnusedLibraries();
    ASSERT_EQ(host::component().canUnload(), S_OK);
    ComPtr<IClassFactory> factory = factoryOf(CLSID_CVrxFun);
    EXPECT_EQ(host::component().canUnload(), S_FALSE);
    ComPtr<IDispatch> object = host::createDirectly(CLSID_CVrxFun);
    factory = {};
    EXPECT_EQ(host::component().canUnload(), S_FALSE);
    object = {};
    EXPECT_EQ(host::component().canUnload(), S_OK);
}

TEST(Module, StaysWhileAHostLocksIt) {
    ComPtr<IClassFactory> factory = factoryOf(CLSID_CVrxFun);
    ASSERT_EQ(factory->LockServer(TRUE), S_OK);
    ASSERT_EQ(factory->LockServer(TRUE), S_OK);
    factory = {};
    EXPECT_EQ(host::component().canUnload(), S_FALSE);
    factory = factoryOf(CLSID_ImageFX);
    ASSERT_EQ(factory->LockServer(FALSE), S_OK);
    ASSERT_EQ(factory->LockServer(FALSE), S_OK);
    factory = {};
    EXPECT_EQ(host::component().canUnload(), S_OK);
}

TEST(Module, WorksAgainAfterItMayHaveBeenUnloaded) {
    ASSERT_EQ(host::component().canUnload(), S_OK);
    const ComPtr<IDispatch> object = host::createDirectly(CLSID_CVrxPattern);
    ASSERT_TRUE(object);
    EXPECT_EQ(host::put(*object, L"REGKEY", host::Text(L"Software\\Test")).code, S_OK);
    const host::Outcome read = host::get(*object, L"REGKEY");
    ASSERT_EQ(V_VT(&read.result.get()), VT_BSTR);
    EXPECT_STREQ(V_BSTR(&read.result.get()), L"Software\\Test");
}

/// Counts one for the object itself, so that a leak shows up in the number that Release returns.
TEST(ReferenceCount, ReturnsToZero) {
    ComPtr<IDispatch> object = host::createDirectly(CLSID_ImageFX);
    ASSERT_TRUE(object);
    host::call(*object, L"ScaleX", {host::number(1)});
    IDispatch* raw = object.detach();
    EXPECT_EQ(raw->Release(), 0u);
}

}  // namespace
