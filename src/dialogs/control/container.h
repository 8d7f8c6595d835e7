// The container that a control stands in: its site, and what it tells all its controls.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <optional>
#include <string>

#include "com/com_ptr.h"
#include "com/entry.h"
#include "com/variant_convert.h"

namespace vrx {

/// What a container tells all its controls; as here where it tells nothing.
struct Ambient {
    bool userMode = true;  ///< false while a form is being designed
    std::optional<COLORREF> backColor;
    std::optional<COLORREF> foreColor;
    std::wstring displayName;  ///< of the control
    std::wstring scaleUnits;   ///< of the container's coordinates
    LCID locale = LOCALE_USER_DEFAULT;
};

class Container {
  public:
    [[nodiscard]] const ComPtr<IOleClientSite>& site() const { return site_; }
    /// Another interface of the site; empty where there is none.
    template <class Interface>
    [[nodiscard]] ComPtr<Interface> siteAs() const {
        return interfaceOf<Interface>(site_.get());
    }
    /// Empty for none. Does not ask for the ambient properties yet.
    void setSite(ComPtr<IOleClientSite> site);

    [[nodiscard]] const Ambient& ambient() const { return ambient_; }
    /// Asks for all of them anew.
    void readAmbient();

    void tellFocus(bool gained) const;
    /// Whether the container has used the key.
    [[nodiscard]] bool translateKey(MSG& key) const;
    /// Whether the container has shown property pages of its own accord.
    [[nodiscard]] bool showPropertyFrame() const;
    /// A size as the container writes it, in its units; empty where it tells none.
    [[nodiscard]] std::wstring sizeText(SIZEL himetric) const;

  private:
    ComPtr<IOleClientSite> site_;
    Ambient ambient_;
};

}  // namespace vrx
