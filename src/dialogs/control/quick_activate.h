// Everything that a container and a control tell each other at first, in one call.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/part.h"
#include "dialogs/control/ole_object.h"
#include "dialogs/control/view_object.h"

namespace vrx {

class QuickActivatePart final : public Part<IQuickActivate> {
  public:
    QuickActivatePart(IUnknown& object, OleObjectPart& oleObject, ViewObjectPart& view,
                      IConnectionPointContainer& events, const IID& eventsId)
        : Part(object), oleObject_(oleObject), view_(view), events_(events), eventsId_(eventsId) {}

    STDMETHODIMP QuickActivate(QACONTAINER* container, QACONTROL* control) override;
    STDMETHODIMP SetContentExtent(LPSIZEL size) override;
    STDMETHODIMP GetContentExtent(LPSIZEL size) override;

  private:
    HRESULT connect(const QACONTAINER& container, QACONTROL& control);
    HRESULT advise(const IID& iid, IUnknown* sink, DWORD& cookie);

    OleObjectPart& oleObject_;
    ViewObjectPart& view_;
    IConnectionPointContainer& events_;
    const IID& eventsId_;
};

}  // namespace vrx
