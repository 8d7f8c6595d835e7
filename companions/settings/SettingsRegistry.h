// Texts in the registry, by hive, subkey and name: the published class.
// What the machine's hive refuses is kept in the user's, at the same place, and is looked for there first.
#pragma once

#include "VrxSettings.h"
#include "com/object_base.h"

namespace vrx {

class SettingsRegistry final : public ObjectBase<_SettingsRegistry> {
  public:
    SettingsRegistry();

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;

    STDMETHODIMP ReadValue(long lHive, BSTR strSubKey, BSTR strName, BSTR* strDefault, BSTR* value) override;
    STDMETHODIMP WriteValue(long lHive, BSTR strSubKey, BSTR strName, BSTR strValue) override;

  private:
    ~SettingsRegistry() override = default;

    // The object has no state, so every apartment of the process may call it directly.
    ComPtr<IUnknown> marshaler_;
};

}  // namespace vrx
