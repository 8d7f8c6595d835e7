// A settings component of the tests' own, which writes down how it is called.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "VrxSettings.h"
#include "com/object_base.h"

namespace host {

struct SettingsJournal {
    int made = 0;
    int alive = 0;
    HRESULT answer = S_OK;
    std::u16string stored = u"kept";
    std::vector<std::u16string> calls;  ///< like "read subkey|name|default" and "write subkey|name|value"
};

inline const vrx::ClassIdentity kSettingsIdentity = {u"Recorder", CLSID_SettingsRegistry,
                                                     IID__SettingsRegistry};

class RecordingSettings final : public vrx::ObjectBase<_SettingsRegistry> {
  public:
    explicit RecordingSettings(SettingsJournal& journal) : ObjectBase(kSettingsIdentity), journal_(journal) {
        ++journal_.made;
        ++journal_.alive;
    }
    ~RecordingSettings() override { --journal_.alive; }

    STDMETHODIMP ReadValue(long hive, BSTR subkey, BSTR name, BSTR* byDefault, BSTR* value) override {
        EXPECT_EQ(static_cast<DWORD>(hive), 0x80000002);
        note(u"read ", subkey, name, *byDefault);
        *value = SUCCEEDED(journal_.answer) ? vrx::toBstr(journal_.stored).release() : nullptr;
        return journal_.answer;
    }
    STDMETHODIMP WriteValue(long hive, BSTR subkey, BSTR name, BSTR text) override {
        EXPECT_EQ(static_cast<DWORD>(hive), 0x80000002);
        note(u"write ", subkey, name, text);
        return journal_.answer;
    }

  private:
    void note(const char16_t* call, BSTR subkey, BSTR name, BSTR text) {
        journal_.calls.push_back(call + vrx::toText(subkey) + u"|" + vrx::toText(name) + u"|" +
                                 vrx::toText(text));
    }

    SettingsJournal& journal_;
};

/// Takes the place of the registered component for as long as it exists.
class SettingsRecorder final : public IClassFactory {
  public:
    SettingsRecorder() {
        EXPECT_EQ(CoRegisterClassObject(CLSID_SettingsRegistry, this, CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &registration_),
                  S_OK);
    }
    SettingsRecorder(const SettingsRecorder&) = delete;
    SettingsRecorder& operator=(const SettingsRecorder&) = delete;
    ~SettingsRecorder() { CoRevokeClassObject(registration_); }

    SettingsJournal journal;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** object) override {
        return vrx::ComPtr<RecordingSettings>(new RecordingSettings(journal))->QueryInterface(iid, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

  private:
    DWORD registration_ = 0;
};

}  // namespace host
