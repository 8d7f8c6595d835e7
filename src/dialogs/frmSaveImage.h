// The dialog that saves a raster picture, which stands in a BMP file already.
#pragma once

#include <string>
#include <utility>

#include "dialogs/save_dialog.h"

namespace vrx {

class frmSaveImage final : public SaveDialog {
  public:
    frmSaveImage();

    /// The full name of the BMP file that holds the picture.
    void setPath(std::u16string path) { path_ = std::move(path); }

  private:
    void onLoad() override;
    void writePicture(SaveFormat format, const std::u16string& fullName) override;

    std::u16string path_;
};

}  // namespace vrx
