// What the save dialogs ask the one settings component of the library, and tell it.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VrxSettings.h"
#include "com/object_base.h"
#include "hdr_host.h"
#include "window_driver.h"

using vrx::Bstr;
using vrx::ComPtr;

namespace {

const vrx::ClassIdentity kIdentity = {u"Recorder", CLSID_SettingsRegistry, IID__SettingsRegistry};

struct Journal {
    int made = 0;
    std::vector<std::u16string> calls;
};

/// Knows no values, and writes down what it is asked for.
class Recorder final : public vrx::ObjectBase<_SettingsRegistry> {
  public:
    explicit Recorder(Journal& journal) : ObjectBase(kIdentity), journal_(journal) { ++journal_.made; }

    STDMETHODIMP ReadValue(long, BSTR subkey, BSTR name, BSTR* byDefault, BSTR* value) override {
        note(u"read ", subkey, name);
        *value = SysAllocString(*byDefault);
        return S_OK;
    }
    STDMETHODIMP WriteValue(long, BSTR subkey, BSTR name, BSTR) override {
        note(u"write ", subkey, name);
        return S_OK;
    }

  private:
    void note(const std::u16string& what, BSTR subkey, BSTR name) {
        journal_.calls.push_back(what + vrx::toText(subkey) + u" " + vrx::toText(name));
    }

    Journal& journal_;
};

/// Takes the place of the registered component.
class RecorderFactory final : public IClassFactory {
  public:
    explicit RecorderFactory(Journal& journal) : journal_(journal) {
        EXPECT_EQ(CoRegisterClassObject(CLSID_SettingsRegistry, this, CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &registration_),
                  S_OK);
    }
    RecorderFactory(const RecorderFactory&) = delete;
    RecorderFactory& operator=(const RecorderFactory&) = delete;
    ~RecorderFactory() { CoRevokeClassObject(registration_); }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** object) override {
        return ComPtr<Recorder>(new Recorder(journal_))->QueryInterface(iid, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

  private:
    Journal& journal_;
    DWORD registration_ = 0;
};

class SaveDialogs : public testing::Test {
  protected:
    /// The library gives back the component that earlier tests have used.
    void SetUp() override { ASSERT_EQ(host::component().canUnload(), S_OK); }
    void TearDown() override { EXPECT_EQ(host::component().canUnload(), S_OK); }

    static void saveHdr() {
        const host::Hdr hdr;
        hdr->put_REGKEY(Bstr(SysAllocString(L"Shop")).get());
        const host::WindowDriver driver(L"Save HDR", [](HWND) {});
        EXPECT_EQ(hdr->Save(nullptr), S_OK);
    }
    static void saveImage() {
        const host::ThrowawayFolder folder;
        const std::wstring bmp = folder.write(L"picture.bmp", host::bmpFile(4, 4, RGB(1, 2, 3)));
        const auto image = host::create(L"VrxCommon.CVrxImage").as<_CVrxImage>();
        const host::WindowDriver driver(L"Save Picture", [](HWND) {});
        EXPECT_EQ(image->Save(Bstr(SysAllocString(bmp.c_str())).get()), S_OK);
    }

    Journal journal_;
    RecorderFactory factory_{journal_};
};

TEST_F(SaveDialogs, OfDifferentKindsOpenedOneAfterTheOtherShareTheOneSettingsComponent) {
    saveHdr();
    EXPECT_EQ(journal_.made, 1);
    saveImage();
    EXPECT_EQ(journal_.made, 1);
}

TEST_F(SaveDialogs, ReadAndWriteTheirValuesInOneOrder) {
    saveHdr();
    saveImage();
    const std::vector<std::u16string> expected{
        u"read Shop\\HDRSaver Path",  u"read Shop\\HDRSaver Type",  u"read Shop\\HDRSaver JPGDetail",
        u"write Shop\\HDRSaver Path", u"write Shop\\HDRSaver Type", u"write Shop\\HDRSaver JPGDetail",
        u"read \\ImageSaver Path",    u"read \\ImageSaver Type",    u"read \\ImageSaver JPGDetail",
        u"write \\ImageSaver Path",   u"write \\ImageSaver Type",   u"write \\ImageSaver JPGDetail"};
    EXPECT_EQ(journal_.calls, expected);
}

}  // namespace
