#include "dialogs/control/property_pages.h"

#include <olectl.h>

namespace vrx {

const CLSID& propertyPage() { return CLSID_CPicturePropPage; }

STDMETHODIMP PropertyPagesPart::GetPages(CAUUID* pages) {
    if (!pages) return E_POINTER;
    *pages = {};
    auto* page = static_cast<GUID*>(CoTaskMemAlloc(sizeof(GUID)));
    if (!page) return E_OUTOFMEMORY;
    *page = propertyPage();
    *pages = {1, page};
    return S_OK;
}

}  // namespace vrx
