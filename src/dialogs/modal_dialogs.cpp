#include "dialogs/modal_dialogs.h"

#include <utility>

#include "com/com_ptr.h"
#include "com/entry.h"
#include "com/variant_convert.h"
#include "dialogs/frmLoadHDR.h"
#include "dialogs/frmLoadImage.h"
#include "dialogs/frmSaveHDR.h"
#include "dialogs/frmSaveImage.h"
#include "dialogs/frmZoom.h"

namespace vrx {
namespace {

/// A dialog's preview goes after the dialog: it lets the host's messages pass then, and their handlers may
/// leave.
using DialogPreview = HeldReference<VrxPreviewImg>;

ComPtr<VrxPreviewImg> makePreview() { return ComPtr<VrxPreviewImg>(new VrxPreviewImg); }

/// What the user chooses in a dialog that `prepare` gets first; empty when it was cancelled.
template <class Dialog, class Prepare>
std::u16string chooseIn(Prepare prepare) {
    const Held<std::u16string> chosen;
    {
        const DialogPreview preview(makePreview());
        const Held<Dialog> dialog(*preview.get());
        prepare(*dialog);
        dialog->showModal();
        *chosen = dialog->GetDirAppo();
        dialog->unload();
    }
    return std::move(*chosen);
}

void showUntilClosed(Form& form) {
    form.showModal();
    form.unload();
}

class ModalHdrDialogs final : public HdrDialogs {
  public:
    std::u16string load(_CVrxHDR& picture, const std::u16string& regKey, BSTR suggestedFile) const override {
        return chooseIn<frmLoadHDR>([&](frmLoadHDR& dialog) {
            dialog.setREGKEY(regKey);
            dialog.setObjHDR(ComPtr<_CVrxHDR>(&picture));
            dialog.setInputFileName(toText(suggestedFile));
        });
    }

    void save(_CVrxHDR& picture, const std::u16string& regKey) const override {
        const DialogPreview preview(makePreview());
        const Held<frmSaveHDR> dialog(*preview.get());
        dialog->setREGKEY(regKey);
        dialog->setObjHDR(ComPtr<_CVrxHDR>(&picture));
        showUntilClosed(*dialog);
    }

    void see(_CVrxHDR& picture, BSTR file) const override {
        const Held<frmZoom> window;
        window->setObjHDR(ComPtr<_CVrxHDR>(&picture));
        window->See_HDR(toText(file));
        showUntilClosed(*window);
    }
};

class ModalImageDialogs final : public ImageDialogs {
  public:
    std::u16string load(const std::u16string& regKey, BSTR suggestedFile) const override {
        return chooseIn<frmLoadImage>([&](frmLoadImage& dialog) {
            dialog.setREGKEY(regKey);
            dialog.setInputFileName(toText(suggestedFile));
        });
    }

    void save(const std::u16string& regKey, std::u16string&& bitmapFile) const override {
        const Held<frmSaveImage> dialog;
        dialog->setREGKEY(regKey);
        dialog->setPath(std::move(bitmapFile));
        showUntilClosed(*dialog);
    }

    void see(BSTR file) const override {
        const Held<frmZoom> window;
        window->See_Image(toText(file));
        showUntilClosed(*window);
    }
};

constexpr ModalHdrDialogs kHdrDialogs;
constexpr ModalImageDialogs kImageDialogs;

}  // namespace

const HdrDialogs& modalHdrDialogs() { return kHdrDialogs; }

const ImageDialogs& modalImageDialogs() { return kImageDialogs; }

}  // namespace vrx
