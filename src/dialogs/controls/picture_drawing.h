// Drawing a picture object into a rectangle, and off-screen bitmaps to draw on.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "common/win_resource.h"

namespace vrx {

/// A bitmap selected into a memory device context for as long as it exists.
class BitmapDc {
  public:
    explicit BitmapDc(HBITMAP bitmap) : dc_(CreateCompatibleDC(nullptr)) {
        previous_ = SelectObject(dc_.get(), bitmap);
    }
    BitmapDc(const BitmapDc&) = delete;
    BitmapDc& operator=(const BitmapDc&) = delete;
    ~BitmapDc() {
        if (previous_) SelectObject(dc_.get(), previous_);
    }

    explicit operator bool() const { return previous_ != nullptr; }
    [[nodiscard]] HDC get() const { return dc_.get(); }

  private:
    MemoryDc dc_;
    HGDIOBJ previous_ = nullptr;
};

/// A bitmap to draw a picture on before it is shown.
[[nodiscard]] HBITMAP makeCanvas(HDC screen, IPicture* picture, int width, int height);

/// Stretches a picture over the frame.
void drawPicture(HDC dc, IPicture& picture, const RECT& frame);

}  // namespace vrx
