// The dialog that saves an HDR picture, and shows meanwhile how it looks as a JPEG or BMP file.
#pragma once

#include <string>

#include "dialogs/VrxPreviewImg.h"
#include "dialogs/save_dialog.h"

namespace vrx {

class frmSaveHDR final : public SaveDialog {
  public:
    explicit frmSaveHDR(VrxPreviewImg& preview);

    /// The object that is shown and saved.
    void setObjHDR(ComPtr<_CVrxHDR> object) { object_ = std::move(object); }

  private:
    void onLoad() override;
    void onCommand(int id, int notification, HWND control) override;
    void onScroll(HWND control, int code) override;
    void writePicture(SaveFormat format, const std::u16string& fullName) override;

    void anchorControls();
    void showExposition();
    void applyExposure();
    void applyGamma();
    void refresh();
    void render();

    ComPtr<_CVrxHDR> object_;
    VrxPreviewImg& preview_;
    Slider exposure_;
    Slider gamma_;
};

}  // namespace vrx
