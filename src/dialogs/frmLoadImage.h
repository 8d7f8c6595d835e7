// The dialog of CVrxImage.Load: chooses a picture file, with a preview.
#pragma once

#include "dialogs/load_dialog.h"

namespace vrx {

class frmLoadImage final : public LoadDialog {
  public:
    explicit frmLoadImage(VrxPreviewImg& preview);

  private:
    void showChosenFile() override;
};

}  // namespace vrx
