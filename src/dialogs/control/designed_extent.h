// How large a control is, as its container has designed it.
#pragma once

#include <windows.h>

#include "dialogs/dpi.h"
#include "ground/himetric.h"

namespace vrx {

class DesignedExtent {
  public:
    [[nodiscard]] const SIZEL& himetric() const { return himetric_; }
    /// In pixels of the screen.
    [[nodiscard]] SIZE pixels() const {
        const ScreenDpi dpi = screenDpi();
        return {MulDiv(himetric_.cx, dpi.x, kHimetricPerInch), MulDiv(himetric_.cy, dpi.y, kHimetricPerInch)};
    }

    /// A length from 2^31 units on comes as a negative one.
    [[nodiscard]] static bool isLength(const SIZEL& size) { return size.cx > 0 && size.cy > 0; }
    void set(const SIZEL& size) { himetric_ = size; }

  private:
    // 160 x 120 pixels at 96 dots per inch.
    SIZEL himetric_{4233, 3175};
};

}  // namespace vrx
