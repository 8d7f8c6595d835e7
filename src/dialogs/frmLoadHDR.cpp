#include "dialogs/frmLoadHDR.h"

#include "com/entry.h"
#include "common/message_loop.h"
#include "dialogs/resource.h"

namespace vrx {
namespace {

constexpr LoadDialogKind kKind{IDD_FRMLOADHDR, file_types::kHdrLoader, settings::kHdrLoaderPath,
                               settings::kHdrLoaderPreview, std::nullopt};

// How often the waiting messages get their turn before a load begins again with the sliders' new values.
constexpr int kMessagePasses = 200;

bool isEmpty(_CVrxHDR& object) {
    long width = 0;
    object.get_DimX(&width);
    return width < 1;
}

}  // namespace

frmLoadHDR::frmLoadHDR(VrxPreviewImg& preview) : LoadDialog(kKind, preview), hdr_(*this) {}

void frmLoadHDR::onLoad() {
    LoadDialog::onLoad();
    for (const int id : {IDC_LABEL8, IDC_LABEL9}) anchor(id, kLeft | kBottom);
    for (const int id : {IDC_SLIDER1, IDC_SLIDER2}) anchor(id, kLeft | kRight | kBottom);
    preview().put_HDRFile(VARIANT_TRUE);
    preview().putref_objHDR(objHDR().get());
    exposure_.attach(control(IDC_SLIDER1), kExposureScale);
    gamma_.attach(control(IDC_SLIDER2), kGammaScale);
    applyExposure();
    applyGamma();
}

void frmLoadHDR::applyExposure() {
    const float exposure = exposureOfSlider(exposure_.take());
    if (hdr_) objHDR()->put_Exposure(exposure);
}

void frmLoadHDR::applyGamma() {
    const float gamma = gammaOfSlider(gamma_.take());
    if (hdr_) objHDR()->put_Gamma(gamma);
}

/// A preview that is being loaded goes on with the new file, so it must not be told to end.
void frmLoadHDR::showChosenFile() {
    if (hdr_ && !preview().loadsFile()) objHDR()->Init();
    applyExposure();
    applyGamma();
    loadPreview();
}

void frmLoadHDR::loadPreview() {
    const Held<std::u16string> name(chosen());
    setPreviewFile(*name);
    // An empty file comes as a picture of one pixel.
    if (hdr_ && isEmpty(*objHDR())) preview().put_Picture(nullptr);
    // Another file may have been chosen meanwhile.
    if (!closing() && chosen() == *name) setChosen(previewFile());
}

/// A move ends with notifications that tell nothing new.
void frmLoadHDR::onScroll(HWND /*control*/, int /*code*/) {
    if (!hdr_ || closing()) return;
    const bool exposureMoved = exposure_.moved();
    const bool gammaMoved = gamma_.moved();
    if (exposureMoved) applyExposure();
    if (gammaMoved) applyGamma();
    if ((exposureMoved || gammaMoved) && previewOn()) refreshPreview();
}

/// Shows the sliders' new values: a whole picture is painted again, any other is loaded again.
void frmLoadHDR::refreshPreview() {
    if (showsWholePicture()) {
        objHDR()->Get_BMP();
        UpdateWindow(preview().window());
        return;
    }
    // A slider that moves while messages pass is seen by the load that begins after the last of them.
    if (!messagesPass_ && letMessagesPass()) loadPreview();
}

/// False when the dialog or the program ends meanwhile.
bool frmLoadHDR::letMessagesPass() {
    messagesPass_ = true;
    int passes = 0;
    while (passes < kMessagePasses && !closing() && doEvents()) ++passes;
    messagesPass_ = false;
    return passes == kMessagePasses && !closing();
}

bool frmLoadHDR::showsWholePicture() const {
    VARIANT_BOOL loading = VARIANT_FALSE;
    objHDR()->get_HDRLoading(&loading);
    return loading == VARIANT_FALSE && !isEmpty(*objHDR());
}

}  // namespace vrx
