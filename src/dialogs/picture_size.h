// The size of picture objects, as they tell it and in pixels of the screen.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/com_ptr.h"
#include "dialogs/engine/zoom_layout.h"

namespace vrx {

/// In HiMetric units (0.01 mm).
struct PictureLengths {
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
};

/// Nothing without a picture or for an empty one.
[[nodiscard]] PictureLengths lengthsOf(const ComPtr<IPicture>& picture);

/// The same in pixels, each side by the screen's resolution in its direction.
[[nodiscard]] Extent screenSizeOf(const ComPtr<IPicture>& picture);

}  // namespace vrx
