#include "dialogs/frmLoadImage.h"

#include "dialogs/resource.h"
#include "ground/error.h"

namespace vrx {
namespace {

constexpr LoadDialogKind kKind{IDD_FRMLOADIMAGE, file_types::kImageLoader, settings::kImageLoaderPath,
                               settings::kImageLoaderPreview, settings::kImageLoaderType};

}  // namespace

frmLoadImage::frmLoadImage(VrxPreviewImg& preview) : LoadDialog(kKind, preview) {}

void frmLoadImage::showChosenFile() {
    setPreviewFile(chosen());
    if (previewFile() == kErrorName) return;
    long width = 0;
    long height = 0;
    preview().get_ImageWidth(&width);
    preview().get_ImageHeight(&height);
    showSize(width, height);
}

}  // namespace vrx
