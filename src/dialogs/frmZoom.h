// The zoom window: a picture in its own size on top of everything, and for HDR pictures the values of the
// pixel under the mouse.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "dialogs/controls/scrolled_picture.h"
#include "dialogs/form.h"
#include "dialogs/hdr_events.h"

namespace vrx {

class frmZoom final : public Form, private PictureViewOwner, private HdrListener {
  public:
    frmZoom();

    /// The object that decodes and samples HDR files.
    void setObjHDR(ComPtr<_CVrxHDR> object) { hdr_.connect(std::move(object)); }

    // Each makes the window, hidden; an empty name does nothing.
    /// Throws for a file that is no picture, before there is a window.
    void See_Image(const std::u16string& fileName);
    /// The decoding starts when the window is activated.
    void See_HDR(const std::u16string& fileName);
    /// Shows a picture, which may be empty, of this size in pixels.
    void Set_BMP(ComPtr<IPicture> picture, std::int32_t width, std::int32_t height);

  private:
    void onLoad() override;
    void onUnload() override;
    void onClose() override;
    void onActivate(bool active) override;
    void onResize(int width, int height) override;
    bool onMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer) override;

    void viewClicked() override { onClose(); }
    void viewPointed(int x, int y) override;

    void headerLoaded(std::int32_t dimX, std::int32_t dimY) override;
    void pictureRefreshed(ComPtr<IPicture> picture) override;

    void startPreview();
    void showPixel();
    void showReadout(bool shown);
    void placeReadout(int width, int height) const;
    void fitWindow();
    void limitSize(MINMAXINFO& limits) const;
    [[nodiscard]] int stripHeight() const;
    [[nodiscard]] Extent borders() const;

    ScrolledPicture picture_;
    HdrConnection hdr_;
    std::u16string fileName_;
    bool hdrMode_ = false;
    bool startPreview_ = false;
    std::optional<POINT> pointed_;
    std::array<RECT, 6> readout_{};  // as designed
};

}  // namespace vrx
