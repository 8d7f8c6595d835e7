// The pages on which a designer sets the control's properties.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/part.h"

namespace vrx {

/// The system's page for pictures, of which MouseIcon is one.
[[nodiscard]] const CLSID& propertyPage();

class PropertyPagesPart final : public Part<ISpecifyPropertyPages> {
  public:
    using Part::Part;

    STDMETHODIMP GetPages(CAUUID* pages) override;
};

}  // namespace vrx
