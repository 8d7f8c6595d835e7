#include "dialogs/frmSaveImage.h"

#include "dialogs/resource.h"

namespace vrx {
namespace {

constexpr SaveDialogKind kKind{IDD_FRMSAVEIMAGE, file_types::kImageSaver, settings::kImageSaverPath,
                               settings::kImageSaverType, settings::kImageSaverQuality};

}  // namespace

frmSaveImage::frmSaveImage() : SaveDialog(kKind) {}

void frmSaveImage::onLoad() {
    SaveDialog::onLoad();
    anchor({IDC_DRIVE1}, kLeft | kTop | kRight);
    anchor({IDC_COMMAND3}, kTop | kRight);
    anchor({IDC_DIR1}, kLeft | kTop | kBottom);
    anchor({IDC_FILE1}, kLeft | kTop | kRight | kBottom);
    anchor({IDC_LABEL2, IDC_LABEL3, IDC_LABEL4, IDC_LABEL5, IDC_LABEL6}, kLeft | kBottom);
    anchor({IDC_TEXT1, IDC_COMBO1, IDC_SLIDER1}, kLeft | kRight | kBottom);
    anchor({IDC_LABEL7, IDC_COMMAND1, IDC_COMMAND2}, kRight | kBottom);
}

void frmSaveImage::writePicture(SaveFormat format, const std::u16string& fullName) {
    writeBitmap(path_, format, fullName);
}

}  // namespace vrx
