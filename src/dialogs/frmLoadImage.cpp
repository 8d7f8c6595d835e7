#include "dialogs/frmLoadImage.h"

#include <array>

#include "dialogs/resource.h"
#include "ground/error.h"

namespace vrx {
namespace {

constexpr std::array<std::u16string_view, 4> kTypes{u"*.JPG", u"*.BMP", u"*.GIF", u"*.*"};
constexpr LoadDialogKind kKind{IDD_FRMLOADIMAGE, kTypes, settings::kImageLoaderPath,
                               settings::kImageLoaderPreview, settings::kImageLoaderType};

}  // namespace

frmLoadImage::frmLoadImage() : LoadDialog(kKind) {}

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
