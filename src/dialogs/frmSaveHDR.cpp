#include "dialogs/frmSaveHDR.h"

#include <array>
#include <optional>

#include "com/error_info.h"
#include "com/variant_convert.h"
#include "common/file_io.h"
#include "common/host_program.h"
#include "dialogs/engine/file_names.h"
#include "dialogs/resource.h"
#include "dialogs/wait_cursor.h"
#include "ground/upper_case.h"

namespace vrx {
namespace {

constexpr SaveDialogKind kKind{IDD_FRMSAVEHDR, file_types::kHdrSaver, settings::kHdrSaverPath,
                               settings::kHdrSaverType, settings::kHdrSaverQuality};

// By the numbers of Enum_AutoExpositionType.
constexpr std::array kExpositionTypes{L"Attenuate Max", L"Attenuate All"};

// In place of an exposure and a gamma: the object's own.
constexpr float kOwn = -1;

/// The file that holds the picture as a bitmap until the next one: in the host's folder or, where that takes
/// no files, in the user's temporary one.
std::u16string temporaryBitmap(const std::u16string& target) {
    std::u16string hosts = temporaryFileName(hostFolder());
    // The file that the user wants may have this very name.
    if (!equalInUpperCase(hosts, target) && takesFiles(hostFolder())) return hosts;
    return temporaryFileName(temporaryFolder());
}

}  // namespace

frmSaveHDR::frmSaveHDR(VrxPreviewImg& preview) : SaveDialog(kKind), preview_(preview) {}

void frmSaveHDR::onLoad() {
    SaveDialog::onLoad();
    preview_.createInPlaceOf(control(IDC_VRXPREVIMG));
    anchorControls();
    exposure_.attach(control(IDC_SLIDER2), kExposureScale);
    gamma_.attach(control(IDC_SLIDER3), kGammaScale);
    for (const wchar_t* type : kExpositionTypes)
        SendDlgItemMessageW(window(), IDC_CMBAUTOEXPTYPE, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(type));
    if (!object_) return;
    showExposition();
    preview_.putref_objHDR(object_.get());
    applyExposure();
    applyGamma();
    render();
}

void frmSaveHDR::anchorControls() {
    anchor({IDC_DIR1, IDC_FILE1}, kLeft | kTop | kBottom);
    anchor({IDC_LABEL2, IDC_TEXT1, IDC_LABEL3, IDC_COMBO1}, kLeft | kBottom);
    anchor({IDC_LABEL4, IDC_LABEL5, IDC_LABEL6, IDC_SLIDER1, IDC_LABEL7}, kLeft | kBottom);
    anchor({IDC_VRXPREVIMG}, kLeft | kTop | kRight | kBottom);
    anchor({IDC_CHKAUTOEXPOSURE, IDC_LABEL14, IDC_CMBAUTOEXPTYPE}, kLeft | kBottom);
    anchor({IDC_LABEL8, IDC_LABEL9, IDC_LABEL10, IDC_LABEL12}, kLeft | kBottom);
    anchor({IDC_SLIDER2, IDC_SLIDER3}, kLeft | kRight | kBottom);
    anchor({IDC_LABEL11, IDC_LABEL13, IDC_COMMAND1, IDC_COMMAND2}, kRight | kBottom);
}

void frmSaveHDR::showExposition() {
    VARIANT_BOOL on = VARIANT_FALSE;
    Enum_AutoExpositionType type = HDRAETMax;
    object_->get_AutoExposition(&on);
    object_->get_AutoExpositionType(&type);
    setChecked(IDC_CHKAUTOEXPOSURE, on != VARIANT_FALSE);
    SendDlgItemMessageW(window(), IDC_CMBAUTOEXPTYPE, CB_SETCURSEL, static_cast<WPARAM>(numberOf(type)), 0);
}

void frmSaveHDR::onCommand(int id, int notification, HWND control) {
    if (object_ && id == IDC_CHKAUTOEXPOSURE && notification == BN_CLICKED) {
        object_->put_AutoExposition(isChecked(id) ? VARIANT_TRUE : VARIANT_FALSE);
        refresh();
    } else if (object_ && id == IDC_CMBAUTOEXPTYPE && notification == CBN_SELCHANGE) {
        const LRESULT row = SendMessageW(control, CB_GETCURSEL, 0, 0);
        object_->put_AutoExpositionType(static_cast<Enum_AutoExpositionType>(row));
        refresh();
    } else {
        SaveDialog::onCommand(id, notification, control);
    }
}

void frmSaveHDR::onScroll(HWND control, int code) {
    SaveDialog::onScroll(control, code);
    if (!object_) return;
    if (control == exposure_.window() && exposure_.moved()) {
        applyExposure();
        refresh();
    }
    if (control == gamma_.window() && gamma_.moved()) {
        applyGamma();
        refresh();
    }
}

void frmSaveHDR::applyExposure() { object_->put_Exposure(exposureOfSlider(exposure_.take())); }

void frmSaveHDR::applyGamma() { object_->put_Gamma(gammaOfSlider(gamma_.take())); }

void frmSaveHDR::refresh() {
    VARIANT_BOOL slow = VARIANT_FALSE;
    object_->get_AutoExposition(&slow);
    const Held<std::optional<WaitCursor>> wait;
    if (slow != VARIANT_FALSE) wait->emplace();
    render();
    UpdateWindow(preview_.window());
}

/// The preview follows by the object's event. What cannot be painted is not shown; it may be saved all the
/// same.
void frmSaveHDR::render() {
    if (FAILED(object_->Get_BMP())) return;
    long width = 0;
    object_->get_DimX(&width);
    // An object without pixels paints a single one.
    if (width < 1) preview_.put_Picture(nullptr);
    // After a picture that could not be painted there is no frame yet.
    preview_.FitPicture();
}

void frmSaveHDR::writePicture(SaveFormat format, const std::u16string& fullName) {
    if (!object_) throw platformError(Platform::ObjectNotSet);
    if (format == SaveFormat::Hdr) {
        const Held<Bstr> name(toBstr(fullName));
        const Held<Bstr> written;
        checkCall(object_->Save_HDR(name->get(), written->put()));
        return;
    }
    const Held<std::u16string> bitmap(temporaryBitmap(fullName));
    checkCall(object_->Convert_HDR_to_BMP(toBstr(*bitmap).get(), kOwn, kOwn));
    writeBitmap(*bitmap, format, fullName);
}

}  // namespace vrx
