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

/// What the user has chosen; empty when it was cancelled.
std::u16string chosenIn(LoadDialog& dialog) {
    dialog.showModal();
    const Held<std::u16string> chosen(dialog.GetDirAppo());
    dialog.unload();
    return std::move(*chosen);
}

void showUntilClosed(Form& form) {
    form.showModal();
    form.unload();
}

class ModalHdrDialogs final : public HdrDialogs {
  public:
    std::u16string load(_CVrxHDR& picture, const std::u16string& regKey, BSTR suggestedFile) const override {
        const Held<frmLoadHDR> dialog;
        dialog->setREGKEY(regKey);
        dialog->setObjHDR(ComPtr<_CVrxHDR>(&picture));
        dialog->setInputFileName(toText(suggestedFile));
        return chosenIn(*dialog);
    }

    void save(_CVrxHDR& picture, const std::u16string& regKey) const override {
        const Held<frmSaveHDR> dialog;
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
        const Held<frmLoadImage> dialog;
        dialog->setREGKEY(regKey);
        dialog->setInputFileName(toText(suggestedFile));
        return chosenIn(*dialog);
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
