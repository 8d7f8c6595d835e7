// Byte arrays and bitmap-info records as arguments of late-bound calls.

#include <gtest/gtest.h>

#include <vector>

#include "host.h"
#include "probes.h"

using host::call;
using host::Outcome;
using host::reference;
using host::typedReference;
using vrx::ComPtr;
using vrx::SafeArray;
using vrx::Variant;

namespace {

constexpr HRESULT kTypeMismatch = static_cast<HRESULT>(0x800A000D);  // 13

const GUID kRecordLibrary = {0x897F52C7, 0x06C5, 0x419E, {0x8D, 0x75, 0xFE, 0x91, 0x81, 0x40, 0x45, 0xD8}};
const GUID kBmpInfo = {0x7008D90C, 0x4753, 0x463B, {0x83, 0xDA, 0x3D, 0x8B, 0x32, 0xD9, 0x26, 0x9E}};
const GUID kRgbQuad = {0x37A41D57, 0x714A, 0x449E, {0xA0, 0xDE, 0x8D, 0x06, 0xAE, 0xFA, 0xE3, 0xD9}};

ComPtr<IRecordInfo> recordInfo(const GUID& record) {
    ComPtr<IRecordInfo> info;
    GetRecordInfoFromGuids(kRecordLibrary, 1, 0, 0, record, info.put());
    return info;
}

/// Description of a record with an identity and a size that a host makes up.
class FalseRecord final : public IRecordInfo {
  public:
    FalseRecord(const GUID& guid, ULONG size) : guid_(guid), size_(size) {}
    virtual ~FalseRecord() = default;

    STDMETHODIMP QueryInterface(REFIID, void** object) override { return *object = nullptr, E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP RecordInit(PVOID) override { return S_OK; }
    STDMETHODIMP RecordClear(PVOID) override { return S_OK; }
    STDMETHODIMP RecordCopy(PVOID, PVOID) override { return E_NOTIMPL; }
    STDMETHODIMP GetGuid(GUID* guid) override { return *guid = guid_, S_OK; }
    STDMETHODIMP GetName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP GetSize(ULONG* size) override { return *size = size_, S_OK; }
    STDMETHODIMP GetTypeInfo(ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetField(PVOID, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetFieldNoCopy(PVOID, LPCOLESTR, VARIANT*, PVOID*) override { return E_NOTIMPL; }
    STDMETHODIMP PutField(ULONG, PVOID, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP PutFieldNoCopy(ULONG, PVOID, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetFieldNames(ULONG*, BSTR*) override { return E_NOTIMPL; }
    WINBOOL STDMETHODCALLTYPE IsMatchingType(IRecordInfo*) override { return FALSE; }
    PVOID STDMETHODCALLTYPE RecordCreate() override { return nullptr; }
    STDMETHODIMP RecordCreateCopy(PVOID, PVOID*) override { return E_NOTIMPL; }
    STDMETHODIMP RecordDestroy(PVOID) override { return S_OK; }

  private:
    GUID guid_;
    ULONG size_;
};

class BytesAndRecord : public testing::Test {
  protected:
    ComPtr<probe::Image> image_ = probe::make<probe::Image>();
    ComPtr<IRecordInfo> info_ = recordInfo(kBmpInfo);
    BmpInfo bitmap_{};

    void SetUp() override {
        ASSERT_TRUE(info_);
        bitmap_.biWidth = 31;
    }

    VARIANT record(VARTYPE type = VT_RECORD) {
        VARIANT made{};
        V_VT(&made) = type;
        V_RECORD(&made) = &bitmap_;
        V_RECORDINFO(&made) = info_.get();
        return made;
    }

    Outcome set(VARIANT array, VARIANT bitmap) { return call(*image_, L"Set_BMP", {array, bitmap}); }
    Outcome get(VARIANT array, VARIANT bitmap) { return call(*image_, L"Get_BMP", {array, bitmap}); }
};

const std::uint8_t kBytes[] = {1, 2, 3, 4};

SafeArray fourBytes() { return vrx::makeByteArray(kBytes); }

std::vector<int> bytesOf(SAFEARRAY* array) {
    const vrx::ByteArrayView view(array);
    return {view.bytes().begin(), view.bytes().end()};
}

TEST_F(BytesAndRecord, ArriveInEveryFormOfAnArray) {
    SafeArray array = fourBytes();
    SAFEARRAY* typed = array.get();
    VARIANT value{};
    V_VT(&value) = VT_ARRAY | VT_UI1;
    V_ARRAY(&value) = typed;
    VARIANT inner = typedReference(VT_ARRAY | VT_UI1, &typed);
    for (const VARIANT& form : {value, reference(value), inner, reference(inner)}) {
        image_->bytes.clear();
        EXPECT_EQ(set(form, record()).code, S_OK) << V_VT(&form);
        EXPECT_EQ(image_->bytes, std::vector<std::uint8_t>({1, 2, 3, 4}));
    }
    EXPECT_EQ(bytesOf(typed), std::vector<int>({1, 2, 3, 4}));
}

TEST_F(BytesAndRecord, ComeBackThroughAReferenceToAnArray) {
    SAFEARRAY* typed = fourBytes().release();
    EXPECT_EQ(get(typedReference(VT_ARRAY | VT_UI1, &typed), record()).code, S_OK);
    EXPECT_EQ(bytesOf(typed), std::vector<int>({5, 6, 7}));
    EXPECT_EQ(bitmap_.biWidth, 77);
    SafeArrayDestroy(typed);
}

TEST_F(BytesAndRecord, ComeBackInAScriptVariable) {
    Variant variable = vrx::makeArray(fourBytes());
    EXPECT_EQ(get(reference(variable.get()), record()).code, S_OK);
    ASSERT_EQ(V_VT(&variable.get()), VT_ARRAY | VT_UI1);
    EXPECT_EQ(bytesOf(V_ARRAY(&variable.get())), std::vector<int>({5, 6, 7}));
}

TEST_F(BytesAndRecord, ComeBackInAnEmptyVariable) {
    Variant variable;
    EXPECT_EQ(get(reference(variable.get()), record()).code, S_OK);
    ASSERT_EQ(V_VT(&variable.get()), VT_ARRAY | VT_UI1);
    EXPECT_EQ(bytesOf(V_ARRAY(&variable.get())), std::vector<int>({5, 6, 7}));
}

TEST_F(BytesAndRecord, ComeBackInAnArrayThatIsNotDimensioned) {
    SAFEARRAY* typed = nullptr;
    EXPECT_EQ(get(typedReference(VT_ARRAY | VT_UI1, &typed), record()).code, S_OK);
    EXPECT_EQ(bytesOf(typed), std::vector<int>({5, 6, 7}));
    SafeArrayDestroy(typed);
}

TEST_F(BytesAndRecord, AreCopiedWhenTheArrayIsAValue) {
    Variant value = vrx::makeArray(fourBytes());
    EXPECT_EQ(get(value.get(), record()).code, S_OK);
    EXPECT_EQ(bytesOf(V_ARRAY(&value.get())), std::vector<int>({1, 2, 3, 4}));
}

TEST_F(BytesAndRecord, ArriveInEveryFormOfARecord) {
    SafeArray array = fourBytes();
    SAFEARRAY* typed = array.get();
    VARIANT value = record();
    VARIANT byReference = record(VT_BYREF | VT_RECORD);
    for (const VARIANT& form : {value, byReference, reference(value), reference(byReference)}) {
        image_->recordPlace = nullptr;
        image_->width = 0;
        EXPECT_EQ(set(typedReference(VT_ARRAY | VT_UI1, &typed), form).code, S_OK) << V_VT(&form);
        EXPECT_EQ(image_->recordPlace, &bitmap_);
        EXPECT_EQ(image_->width, 31);
    }
}

TEST_F(BytesAndRecord, OfTheWrongKindAreATypeMismatch) {
    SafeArray array = fourBytes();
    SAFEARRAY* typed = array.get();
    const VARIANT bytes = typedReference(VT_ARRAY | VT_UI1, &typed);

    SAFEARRAYBOUND bound{4, 0};
    SafeArray numbers(SafeArrayCreate(VT_I4, 1, &bound));
    SAFEARRAY* typedNumbers = numbers.get();
    const Outcome wrongArray = set(typedReference(VT_ARRAY | VT_I4, &typedNumbers), record());
    EXPECT_EQ(wrongArray.scode, kTypeMismatch);
    EXPECT_EQ(wrongArray.badArgument, 1u);
    EXPECT_EQ(set(host::integer(1), record()).scode, kTypeMismatch);

    const Outcome wrongRecord = set(bytes, host::integer(1));
    EXPECT_EQ(wrongRecord.scode, kTypeMismatch);
    EXPECT_EQ(wrongRecord.badArgument, 0u);
    const ComPtr<IRecordInfo> colour = recordInfo(kRgbQuad);
    ASSERT_TRUE(colour);
    VARIANT other = record();
    V_RECORDINFO(&other) = colour.get();
    EXPECT_EQ(set(bytes, other).scode, kTypeMismatch);
    VARIANT hollow = record();
    V_RECORD(&hollow) = nullptr;
    EXPECT_EQ(set(bytes, hollow).scode, kTypeMismatch);
    hollow = record();
    V_RECORDINFO(&hollow) = nullptr;
    EXPECT_EQ(set(bytes, hollow).scode, kTypeMismatch);
    EXPECT_EQ(image_->recordPlace, nullptr);
}

TEST_F(BytesAndRecord, OfAnotherIdentityOrSizeAreATypeMismatch) {
    SafeArray array = fourBytes();
    SAFEARRAY* typed = array.get();
    const auto setWith = [&](FalseRecord description) {
        VARIANT value = record();
        V_RECORDINFO(&value) = &description;
        return set(typedReference(VT_ARRAY | VT_UI1, &typed), value);
    };
    for (const ULONG size : {0u, 40u, 1063u, 1065u}) {
        EXPECT_EQ(setWith({kBmpInfo, size}).scode, kTypeMismatch) << size;
    }
    EXPECT_EQ(setWith({kRgbQuad, 1064}).scode, kTypeMismatch);
    EXPECT_EQ(setWith({kBmpInfo, 1064}).code, S_OK);
}

TEST_F(BytesAndRecord, CannotBeLeftOut) {
    EXPECT_EQ(call(*image_, L"Set_BMP").code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(set(host::omitted(), record()).code, DISP_E_PARAMNOTOPTIONAL);
}

}  // namespace
