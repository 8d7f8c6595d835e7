// All that makes an object a control on a container's form, interface by interface.
#pragma once

#include <windows.h>

#include "com/class_identity.h"
#include "dialogs/control/container.h"
#include "dialogs/control/control_body.h"
#include "dialogs/control/designed_extent.h"
#include "dialogs/control/in_place.h"
#include "dialogs/control/ole_control.h"
#include "dialogs/control/ole_object.h"
#include "dialogs/control/persistence.h"
#include "dialogs/control/property_pages.h"
#include "dialogs/control/quick_activate.h"
#include "dialogs/control/view_object.h"

namespace vrx {

class OleParts {
  public:
    OleParts(const ClassIdentity& identity, IUnknown& object, ControlBody& body,
             IConnectionPointContainer& events);

    /// The part that implements an interface; null for none.
    [[nodiscard]] void* find(REFIID iid);

    [[nodiscard]] const Container& container() const { return container_; }
    [[nodiscard]] const SIZEL& extent() const { return extent_.himetric(); }
    [[nodiscard]] SIZE designedSize() const { return extent_.pixels(); }
    /// Whether the container wants to hear of events: not while it is being designed, nor while it refuses.
    [[nodiscard]] bool takesEvents() const {
        return container_.ambient().userMode && !oleControl_.eventsFrozen();
    }
    void focusChanged(bool gained) { inPlace_.focusChanged(gained); }
    void viewChanged() { viewObject_.tellChanged(); }

  private:
    Container container_;
    DesignedExtent extent_;
    InPlace inPlace_;
    OleObjectPart oleObject_;
    OleControlPart oleControl_;
    InPlaceObjectPart inPlaceObject_;
    InPlaceActiveObjectPart activeObject_;
    ViewObjectPart viewObject_;
    StreamPersistencePart streamPersistence_;
    StoragePersistencePart storagePersistence_;
    QuickActivatePart quickActivate_;
    PropertyPagesPart propertyPages_;
};

}  // namespace vrx
