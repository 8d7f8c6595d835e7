// A 24-bit bitmap section, bottom-up, that is selected into a memory device context of its own: a canvas for
// the system's drawing whose bytes can be read and written in place.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <cstdint>
#include <memory>
#include <span>

#include "com/win_resource.h"

namespace vrx {

namespace closing {
/// DeleteObject takes a memory device context like any other object of the drawing system; where a system
/// refuses it there, DeleteDC takes it.
inline void dcAsObject(HDC handle) {
    if (!DeleteObject(handle)) DeleteDC(handle);
}
}  // namespace closing
using SectionDc = Resource<HDC, closing::dcAsObject>;

/// CopyToClipboard, RandomiseBits and Resample have no caller in the library: they complete the class, for
/// code that is still to come, and tests keep them right.
class cDIBSection {
  public:
    cDIBSection() = default;
    cDIBSection(const cDIBSection&) = delete;
    cDIBSection& operator=(const cDIBSection&) = delete;
    ~cDIBSection() { ClearUp(); }

    /// Hands a copy in the screen's format to the clipboard; true when it was taken. The 24-bit format is not
    /// offered: asked for it, a message says so.
    bool CopyToClipboard(bool bAsDIB = false);

    /// Makes a section without releasing the one before: that is left to Create. Error 6 for sizes whose
    /// bytes cannot be counted in 32 bits.
    bool CreateDIB(HDC lhDC, std::int32_t lWidth, std::int32_t lHeight, HBITMAP& hDib);

    /// Becomes a copy of a picture's bitmap, in its size in pixels; empty for a picture without one, and
    /// where it cannot be copied. Error 91 without a picture.
    void CreateFromPicture(IPictureDisp* picThis);

    /// A black section in place of the one before.
    bool Create(std::int32_t lWidth, std::int32_t lHeight);

    [[nodiscard]] std::int32_t BytesPerScanLine() const;
    /// Of the last section that was asked for, whether it could be made or has been released since.
    [[nodiscard]] std::int32_t Width() const { return header_.biWidth; }
    [[nodiscard]] std::int32_t Height() const { return header_.biHeight; }

    /// From another device context into this section. A negative width or height means the section's own.
    /// False where the system did not draw.
    bool LoadPictureBlt(HDC lhDC, std::int32_t lSrcLeft, std::int32_t lSrcTop, std::int32_t lSrcWidth = -1,
                        std::int32_t lSrcHeight = -1, DWORD eRop = SRCCOPY);
    /// From this section into another device context, by the same rule.
    void PaintPicture(HDC lhDC, std::int32_t lDestLeft, std::int32_t lDestTop, std::int32_t lDestWidth = -1,
                      std::int32_t lDestHeight = -1, std::int32_t lSrcLeft = 0, std::int32_t lSrcTop = 0,
                      DWORD eRop = SRCCOPY) const;

    [[nodiscard]] HDC hDC() const { return hdc_.get(); }
    [[nodiscard]] HBITMAP hDib() const { return hDib_.get(); }
    [[nodiscard]] std::uint8_t* DIBSectionBitsPtr() const { return bits_; }

    /// Noise in green and red, or in gray, from a new seed at every call.
    void RandomiseBits(bool bGray = false);

    /// Empty again; Width and Height stay.
    void ClearUp();

    /// A copy in another size, interpolated between pixels; none where no section of that size can be made.
    /// Error 11 for a new width or height of 1, which leaves no distance to divide, and 9 without a section.
    [[nodiscard]] std::unique_ptr<cDIBSection> Resample(std::int32_t lNewHeight,
                                                        std::int32_t lNewWidth) const;

  private:
    [[nodiscard]] std::span<std::uint8_t> pixels() const;

    // In this order, so that the context goes after the section that was selected into it.
    SectionDc hdc_;
    Bitmap hDib_;
    HGDIOBJ oldBitmap_ = nullptr;
    std::uint8_t* bits_ = nullptr;
    BITMAPINFOHEADER header_{};
};

}  // namespace vrx
