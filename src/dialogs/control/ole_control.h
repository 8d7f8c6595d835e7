// What makes an embedded object a control: its keys, the container's ambient properties, and pauses of
// events.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/part.h"
#include "dialogs/control/container.h"
#include "dialogs/control/control_body.h"

namespace vrx {

class OleControlPart final : public Part<IOleControl> {
  public:
    OleControlPart(IUnknown& object, ControlBody& body, Container& container)
        : Part(object), body_(body), container_(container) {}

    STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
    STDMETHODIMP OnMnemonic(LPMSG key) override;
    STDMETHODIMP OnAmbientPropertyChange(DISPID property) override;
    STDMETHODIMP FreezeEvents(BOOL freeze) override;

    /// What happens while a container takes no events is lost.
    [[nodiscard]] bool eventsFrozen() const { return freezes_ > 0; }

  private:
    ControlBody& body_;
    Container& container_;
    unsigned freezes_ = 0;
};

}  // namespace vrx
