// The dialog of CVrxHDR.Load: chooses an HDR picture file, with a preview that the object itself decodes and
// sliders for the preview's exposure and gamma.
#pragma once

#include "dialogs/controls/slider.h"
#include "dialogs/hdr_events.h"
#include "dialogs/load_dialog.h"

namespace vrx {

class frmLoadHDR final : public LoadDialog, private HdrListener {
  public:
    explicit frmLoadHDR(VrxPreviewImg& preview);

    void setObjHDR(ComPtr<_CVrxHDR> object) { hdr_.connect(std::move(object)); }
    [[nodiscard]] const ComPtr<_CVrxHDR>& objHDR() const { return hdr_.object(); }

  private:
    void onLoad() override;
    void onScroll(HWND control, int code) override;

    void showChosenFile() override;
    void endPreview() override { hdr_.endLoad(); }
    [[nodiscard]] ComPtr<_CVrxHDR> pictureSource() const override { return objHDR(); }

    void headerLoaded(std::int32_t dimX, std::int32_t dimY) override { SetImageSize(dimX, dimY); }
    void pictureRefreshed(ComPtr<IPicture> /*picture*/) override {}

    void applyExposure();
    void applyGamma();
    void refreshPreview();
    [[nodiscard]] bool letMessagesPass();
    void loadPreview();
    [[nodiscard]] bool showsWholePicture() const;

    HdrConnection hdr_;
    Slider exposure_;
    Slider gamma_;
    bool messagesPass_ = false;
};

}  // namespace vrx
