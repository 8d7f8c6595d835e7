#include "dialogs/load_dialog.h"

#include <algorithm>

#include "com/entry.h"
#include "dialogs/engine/file_names.h"
#include "dialogs/frmZoom.h"
#include "dialogs/resource.h"
#include "dialogs/settings_store.h"
#include "ground/decimal_text.h"

namespace vrx {
namespace {

// Picture1, a control that nobody sees, is larger than the picture by this much, as far as a window can be.
constexpr std::int32_t kPictureBorder = 3;
constexpr std::int32_t kLongestSide = 32767;

int sideOfPicture(std::int32_t length) {
    return std::clamp(length, 0, kLongestSide - kPictureBorder) + kPictureBorder;
}

}  // namespace

LoadDialog::LoadDialog(const LoadDialogKind& kind, VrxPreviewImg& preview)
    : Form(kind.templateId), kind_(kind), browser_(*this), preview_(preview) {
    preview_.setOwner(this);
}

LoadDialog::~LoadDialog() { preview_.setOwner(nullptr); }

void LoadDialog::setInputFileName(const std::u16string& name) { inputFileName_ = folderOfSuggestion(name); }

void LoadDialog::SetImageSize(std::int32_t width, std::int32_t height) {
    showSize(width, height);
    SetWindowPos(control(IDC_PICTURE1), nullptr, 0, 0, sideOfPicture(width), sideOfPicture(height),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void LoadDialog::showSize(std::int32_t width, std::int32_t height) {
    picture_ = {width, height};
    setText(IDC_LABEL6, decimalText(width));
    setText(IDC_LABEL7, decimalText(height));
    ShowWindow(control(IDC_LBLBY), SW_SHOWNA);
}

void LoadDialog::onLoad() {
    placeControls();
    browser_.attach(window(), kind_.types);
    readSettings();
    // The system gives the focus to the first control after this.
    PostMessageW(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(IDC_FILE1)), TRUE);
}

void LoadDialog::placeControls() {
    preview_.createInPlaceOf(control(IDC_VRXPREVIMG));

    anchors_.attach(window());
    for (const int id : {IDC_DIR1, IDC_FILE1}) anchor(id, kLeft | kTop | kBottom);
    for (const int id : {IDC_LABEL2, IDC_TEXT1, IDC_LABEL3, IDC_COMBO1}) anchor(id, kLeft | kBottom);
    for (const int id : {IDC_LABEL6, IDC_LBLBY, IDC_LABEL7}) anchor(id, kTop | kRight);
    anchor(IDC_VRXPREVIMG, kLeft | kTop | kRight | kBottom);
    for (const int id : {IDC_COMMAND1, IDC_COMMAND2}) anchor(id, kRight | kBottom);
}

void LoadDialog::readSettings() {
    const SettingsStore store(regKey_);
    const std::u16string folder = store.read(kind_.path);
    setChecked(IDC_CHECK1, store.read(kind_.preview) != 0);
    if (kind_.type) browser_.setType(store.read(*kind_.type));
    showFirstFolder(folder);
}

/// The suggested one if there is such a folder.
void LoadDialog::showFirstFolder(const std::u16string& stored) {
    if (!inputFileName_.empty() && browser_.setFolder(inputFileName_)) return;
    browser_.setFirstFolder(stored);
}

void LoadDialog::onUnload() {
    closing_ = true;
    const SettingsStore store(regKey_);
    store.write(kind_.path, browser_.folder());
    store.write(kind_.preview, previewOn() ? 1 : 0);
    if (kind_.type) store.write(*kind_.type, browser_.type());
    endPreview();
}

void LoadDialog::onCommand(int id, int notification, HWND /*control*/) {
    if (closing_) return;
    switch (id) {
        case IDC_COMMAND1:
            accept();
            break;
        case IDC_COMMAND2:
            cancel();
            break;
        default:
            browser_.handleCommand(id, notification);
    }
}

bool LoadDialog::onMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer) {
    if (message != WM_GETMINMAXINFO) return browser_.handleMessage(message, wide, longer, answer);
    anchors_.limit(*reinterpret_cast<MINMAXINFO*>(longer));
    return true;
}

void LoadDialog::fileChosen() {
    if (closing_) return;
    const Held<std::u16string> name(browser_.fileName());
    chosen_ = fullFileName(browser_.folder(), *name);
    setText(IDC_TEXT1, *name);
    if (previewOn() && !name->empty()) showChosenFile();
}

void LoadDialog::previewClicked() {
    if (closing_ || !preview_.picture() || picture_.cx <= 0 || picture_.cy <= 0) return;
    const Held<frmZoom> zoom;
    zoom->load(window());
    zoom->setObjHDR(pictureSource());
    zoom->Set_BMP(preview_.picture(), picture_.cx, picture_.cy);
    zoom->showModal();
    zoom->unload();
}

void LoadDialog::accept() {
    if (closing_) return;
    if (!previewFile().empty()) chosen_ = fullFileName(browser_.folder(), browser_.fileName());
    accepted_ = true;
    close();
}

void LoadDialog::cancel() {
    if (closing_) return;
    chosen_.clear();
    close();
}

void LoadDialog::close() {
    closing_ = true;
    endPreview();
    hide();
}

bool LoadDialog::previewOn() const { return isChecked(IDC_CHECK1); }

std::u16string LoadDialog::previewFile() {
    Bstr name;
    preview_.get_File(name.put());
    return toText(name.get());
}

void LoadDialog::setPreviewFile(const std::u16string& name) {
    const Held<Bstr> file(toBstr(name));
    preview_.put_File(file->get());
}

}  // namespace vrx
