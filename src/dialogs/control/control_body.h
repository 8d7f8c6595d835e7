// What the OLE side of a control asks of the control itself: its window, what it shows, and the properties
// that a container keeps.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/com_ptr.h"
#include "dialogs/controls/mouse_pointer.h"
#include "dialogs/controls/picture_scene.h"

namespace vrx {

/// The properties that are saved with a container's document, in the order of their saving.
struct KeptProperties {
    MousePointer pointer = MousePointer::Default;
    ComPtr<IPicture> icon;  ///< empty for none
};

class ControlBody {
  public:
    /// Null while there is none.
    [[nodiscard]] virtual HWND window() const = 0;
    /// Throws where the system refuses it.
    virtual void createWindow(HWND parent, const RECT& place) = 0;
    virtual void destroyWindow() = 0;
    /// The inner area in pixels, as long as there is no window.
    virtual void setDesignedSize(SIZE size) = 0;
    /// Names, colours and mode are the container's now.
    virtual void ambientChanged() = 0;

    [[nodiscard]] virtual PictureScene scene() const = 0;

    [[nodiscard]] virtual const KeptProperties& keptProperties() const = 0;
    /// As they were saved: unchanged since.
    virtual void setKeptProperties(KeptProperties properties) = 0;
    [[nodiscard]] virtual bool isChanged() const = 0;
    virtual void markSaved() = 0;

  protected:
    ~ControlBody() = default;
};

}  // namespace vrx
