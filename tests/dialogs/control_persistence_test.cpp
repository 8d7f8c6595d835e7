// What a container keeps of the control: in property bags, streams and storages, and what it refuses to read.

#include <map>

#include "control_fixture.h"

using host::ControlTest;
using vrx::ComPtr;

namespace {

constexpr HRESULT kTypeMismatch = static_cast<HRESULT>(0x800A000D);  // 13
constexpr HRESULT kOverflow = static_cast<HRESULT>(0x800A0006);      // 6

ComPtr<IStream> makeStream(const host::FileBytes& bytes = {}) {
    ComPtr<IStream> stream;
    CreateStreamOnHGlobal(nullptr, TRUE, stream.put());
    if (!bytes.empty()) stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    return stream;
}

host::FileBytes bytesOf(IStream& stream) {
    STATSTG size{};
    stream.Stat(&size, STATFLAG_NONAME);
    stream.Seek({}, STREAM_SEEK_SET, nullptr);
    host::FileBytes bytes(size.cbSize.LowPart);
    stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    return bytes;
}

ComPtr<IStorage> makeStorage() {
    ComPtr<ILockBytes> bytes;
    ComPtr<IStorage> storage;
    CreateILockBytesOnHGlobal(nullptr, TRUE, bytes.put());
    StgCreateDocfileOnILockBytes(bytes.get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0,
                                 storage.put());
    return storage;
}

class Kept : public ControlTest {
  protected:
    [[nodiscard]] short pointer() const { return pointerOf(*control_); }
    static short pointerOf(_VrxPreviewImg& control) {
        short value = -1;
        control.get_MousePointer(&value);
        return value;
    }
    [[nodiscard]] bool hasIcon() const { return iconOf(*control_); }
    static bool iconOf(_VrxPreviewImg& control) {
        ComPtr<IPictureDisp> icon;
        control.get_MouseIcon(icon.put());
        return static_cast<bool>(icon);
    }
    /// A picture that can be saved.
    ComPtr<IPictureDisp> icon() const {
        ComPtr<IPictureDisp> loaded;
        setFile(picture());
        control_->get_Picture(loaded.put());
        return loaded;
    }
    host::FileBytes saved(bool withIcon) {
        control_->put_MousePointer(7);
        control_->putref_MouseIcon(withIcon ? icon().get() : nullptr);
        const ComPtr<IStream> stream = makeStream();
        EXPECT_EQ(as<IPersistStreamInit>()->Save(stream.get(), TRUE), S_OK);
        return bytesOf(*stream);
    }
};

TEST_F(Kept, InAStreamStandVersionPointerAndIconInThisOrder) {
    const host::FileBytes expected{'V', 'r', 'x', 'P', 1, 0, 0, 0, 7, 0, 0, 0, 0, 0};
    EXPECT_EQ(saved(false), expected);
    ULARGE_INTEGER size{};
    EXPECT_EQ(as<IPersistStreamInit>()->GetSizeMax(&size), S_OK);
    EXPECT_EQ(size.QuadPart, expected.size());
}

TEST_F(Kept, InAStreamComesBack) {
    const host::FileBytes bytes = saved(true);
    ULARGE_INTEGER size{};
    as<IPersistStreamInit>()->GetSizeMax(&size);
    EXPECT_EQ(size.QuadPart, bytes.size());
    const auto other = host::createDirectly(CLSID_VrxPreviewImg).as<_VrxPreviewImg>();
    const ComPtr<IStream> stream = makeStream(bytes);
    EXPECT_EQ(other.as<IPersistStreamInit>()->Load(stream.get()), S_OK);
    EXPECT_EQ(pointerOf(*other), 7);
    EXPECT_TRUE(iconOf(*other));
    EXPECT_EQ(other.as<IPersistStreamInit>()->IsDirty(), S_FALSE);
}

TEST_F(Kept, TellsWhetherItHasChanged) {
    const auto kept = as<IPersistStreamInit>();
    EXPECT_EQ(kept->IsDirty(), S_FALSE);
    control_->put_MousePointer(2);
    EXPECT_EQ(kept->IsDirty(), S_OK);
    const ComPtr<IStream> stream = makeStream();
    EXPECT_EQ(kept->Save(stream.get(), FALSE), S_OK);
    EXPECT_EQ(kept->IsDirty(), S_OK);
    EXPECT_EQ(kept->Save(stream.get(), TRUE), S_OK);
    EXPECT_EQ(kept->IsDirty(), S_FALSE);
    EXPECT_EQ(kept->InitNew(), S_OK);
    EXPECT_EQ(pointer(), 0);
}

TEST_F(Kept, StaysAsItWasWhenAStreamIsCutAtAnyByte) {
    const host::FileBytes whole = saved(true);
    const auto kept = as<IPersistStreamInit>();
    control_->put_MousePointer(3);
    control_->putref_MouseIcon(nullptr);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const ComPtr<IStream> stream = makeStream({whole.begin(), whole.begin() + static_cast<long>(length)});
        ASSERT_EQ(kept->Load(stream.get()), STG_E_READFAULT) << length;
        ASSERT_EQ(pointer(), 3);
        ASSERT_FALSE(hasIcon());
    }
}

TEST_F(Kept, StaysAsItWasWhenAStreamIsOfAnotherKindOrVersion) {
    host::FileBytes bytes = saved(false);
    control_->put_MousePointer(3);
    const auto kept = as<IPersistStreamInit>();
    bytes[4] = 2;
    EXPECT_EQ(kept->Load(makeStream(bytes).get()), STG_E_OLDDLL);
    bytes[4] = 0;
    EXPECT_EQ(kept->Load(makeStream(bytes).get()), STG_E_INVALIDHEADER);
    bytes[0] = 'X';
    EXPECT_EQ(kept->Load(makeStream(bytes).get()), STG_E_INVALIDHEADER);
    EXPECT_EQ(kept->Load(nullptr), E_POINTER);
    EXPECT_EQ(kept->Save(nullptr, TRUE), E_POINTER);
    EXPECT_EQ(pointer(), 3);
}

TEST_F(Kept, StaysAsItWasWhenTheIconIsBroken) {
    host::FileBytes bytes = saved(true);
    std::fill(bytes.begin() + 14, bytes.end(), std::uint8_t{0xAA});
    control_->put_MousePointer(3);
    control_->putref_MouseIcon(nullptr);
    EXPECT_TRUE(FAILED(as<IPersistStreamInit>()->Load(makeStream(bytes).get())));
    EXPECT_EQ(pointer(), 3);
    EXPECT_FALSE(hasIcon());
}

TEST_F(Kept, InAStorageComesBack) {
    const ComPtr<IStorage> storage = makeStorage();
    ASSERT_TRUE(storage);
    const auto kept = as<IPersistStorage>();
    EXPECT_EQ(kept->InitNew(storage.get()), S_OK);
    EXPECT_EQ(kept->InitNew(storage.get()), CO_E_ALREADYINITIALIZED);
    EXPECT_EQ(kept->Load(storage.get()), CO_E_ALREADYINITIALIZED);
    control_->put_MousePointer(7);
    EXPECT_EQ(kept->Save(storage.get(), TRUE), S_OK);
    EXPECT_EQ(kept->IsDirty(), S_OK);
    EXPECT_EQ(kept->SaveCompleted(nullptr), S_OK);
    EXPECT_EQ(kept->IsDirty(), S_FALSE);
    const auto other = host::createDirectly(CLSID_VrxPreviewImg).as<_VrxPreviewImg>();
    EXPECT_EQ(other.as<IPersistStorage>()->Load(storage.get()), S_OK);
    EXPECT_EQ(pointerOf(*other), 7);
}

TEST_F(Kept, InAStorageFollowsItsStates) {
    const ComPtr<IStorage> storage = makeStorage();
    const auto kept = as<IPersistStorage>();
    EXPECT_EQ(kept->Load(storage.get()), STG_E_FILENOTFOUND);
    control_->put_MousePointer(7);
    EXPECT_EQ(kept->SaveCompleted(nullptr), E_UNEXPECTED);
    EXPECT_EQ(kept->Save(storage.get(), FALSE), S_OK);
    EXPECT_EQ(kept->SaveCompleted(nullptr), S_OK);
    EXPECT_EQ(kept->IsDirty(), S_OK);  // a copy
    EXPECT_EQ(kept->Save(storage.get(), FALSE), S_OK);
    EXPECT_EQ(kept->HandsOffStorage(), S_OK);
    EXPECT_EQ(kept->Save(storage.get(), FALSE), E_UNEXPECTED);
    EXPECT_EQ(kept->SaveCompleted(nullptr), E_INVALIDARG);
    EXPECT_EQ(kept->SaveCompleted(storage.get()), S_OK);
    EXPECT_EQ(kept->IsDirty(), S_FALSE);
    EXPECT_EQ(kept->Save(nullptr, TRUE), E_POINTER);
    EXPECT_EQ(kept->InitNew(nullptr), E_POINTER);
}

/// Answers with values of the test's own, whatever type is asked for.
class AnyBag final : public IPropertyBag {
  public:
    std::map<std::wstring, VARIANT> values;
    HRESULT failure = S_OK;

    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
        if (FAILED(failure)) return failure;
        const auto found = values.find(name);
        if (found == values.end()) return E_INVALIDARG;
        return VariantCopy(value, &found->second);
    }
    STDMETHODIMP Write(LPCOLESTR, VARIANT*) override { return E_FAIL; }
};

TEST_F(Kept, StaysAsItWasWhenAPropertyBagHoldsAWrongType) {
    const auto kept = as<IPersistPropertyBag>();
    control_->put_MousePointer(3);
    AnyBag bag;
    const host::Text words(L"a cross");
    bag.values[L"MousePointer"] = words;
    EXPECT_EQ(kept->Load(&bag, nullptr), kTypeMismatch);
    bag.values[L"MousePointer"] = host::number(1e9);
    EXPECT_EQ(kept->Load(&bag, nullptr), kOverflow);
    bag.values[L"MousePointer"] = host::integer(2);
    bag.values[L"MouseIcon"] = host::integer(2);
    EXPECT_EQ(kept->Load(&bag, nullptr), kTypeMismatch);
    VARIANT object{};
    V_VT(&object) = VT_DISPATCH;
    V_DISPATCH(&object) = control_.get();  // no picture
    bag.values[L"MouseIcon"] = object;
    EXPECT_EQ(kept->Load(&bag, nullptr), kTypeMismatch);
    bag.failure = DISP_E_TYPEMISMATCH;
    EXPECT_EQ(kept->Load(&bag, nullptr), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(pointer(), 3);
    EXPECT_EQ(as<IPersistStreamInit>()->IsDirty(), S_OK);
    bag.failure = E_FAIL;  // for a property that the bag does not have
    EXPECT_EQ(kept->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(pointer(), 0);
    EXPECT_EQ(kept->Load(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(kept->Save(nullptr, TRUE, TRUE), E_POINTER);
}

TEST_F(Kept, InAPropertyBagMayBeAText) {
    AnyBag bag;
    const host::Text number(L"2");
    bag.values[L"MousePointer"] = number;
    EXPECT_EQ(as<IPersistPropertyBag>()->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(pointer(), 2);
}

TEST_F(Kept, HasStillChangedWhenSavingFails) {
    AnyBag bag;
    control_->put_MousePointer(2);
    EXPECT_EQ(as<IPersistPropertyBag>()->Save(&bag, TRUE, TRUE), E_FAIL);
    EXPECT_EQ(as<IPersistStreamInit>()->IsDirty(), S_OK);
}

}  // namespace
