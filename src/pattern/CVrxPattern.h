// Colour pattern: the published class around pattern strings and their editor.
#pragma once

#include <string>

#include "VrxCommon.h"
#include "com/object_base.h"
#include "pattern/pattern_dialog.h"

namespace vrx {

class CVrxPattern final : public ObjectBase<_CVrxPattern> {
  public:
    explicit CVrxPattern(const PatternDialog& dialog);

    STDMETHODIMP get_REGKEY(BSTR* value) override;
    STDMETHODIMP put_REGKEY(BSTR value) override;
    STDMETHODIMP Load(BSTR* Default) override;
    STDMETHODIMP Get_PatternFromString(BSTR strPattern, long NumItem, VARIANT* arPattern) override;

  private:
    ~CVrxPattern() override = default;

    const PatternDialog& dialog_;
    std::u16string regKey_;
};

}  // namespace vrx
