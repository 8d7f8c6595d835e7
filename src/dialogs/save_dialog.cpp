#include "dialogs/save_dialog.h"

#include <new>

#include "com/entry.h"
#include "common/file_io.h"
#include "common/message_box.h"
#include "dialogs/resource.h"
#include "dialogs/settings_store.h"
#include "dialogs/wait_cursor.h"
#include "ground/blanks.h"
#include "ground/decimal_text.h"
#include "ground/error.h"
#include "raster/cDIBSection.h"
#include "raster/mIntelJPEGLibrary.h"
#include "raster/picture_file.h"

namespace vrx {

void SaveDialog::onLoad() {
    anchors_.attach(window());
    browser_.attach(window(), kind_.types);
    slider_.attach(control(IDC_SLIDER1), kQualityScale);
    readSettings();
    enableQuality();
    // The system gives the focus to the first control after this.
    PostMessageW(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(IDC_TEXT1)), TRUE);
}

void SaveDialog::readSettings() {
    const SettingsStore store(regKey_);
    const std::u16string folder = store.read(kind_.path);
    const std::int32_t type = store.read(kind_.type);
    quality_ = store.read(kind_.quality);
    setText(IDC_LABEL5, decimalText(quality_));
    browser_.setFirstFolder(folder);
    browser_.setType(type);
    slider_.setPosition(sliderOfQuality(quality_));
}

void SaveDialog::onUnload() {
    const SettingsStore store(regKey_);
    store.write(kind_.path, browser_.folder());
    store.write(kind_.type, browser_.type());
    store.write(kind_.quality, quality_);
}

void SaveDialog::onCommand(int id, int notification, HWND /*control*/) {
    if (browser_.handleCommand(id, notification) || notification != BN_CLICKED) return;
    if (id == IDC_COMMAND1) save();
    if (id == IDC_COMMAND2) hide();
}

bool SaveDialog::onEnter() {
    const HWND focus = GetFocus();
    // The files are there to be seen, not to be opened.
    if (focus == control(IDC_FILE1)) return false;
    if (focus != control(IDC_TEXT1)) return browser_.handleEnter();
    if (!isBlank(text(IDC_TEXT1))) save();
    return true;
}

void SaveDialog::onScroll(HWND control, int /*code*/) {
    if (control != slider_.window() || !slider_.moved()) return;
    quality_ = qualityOfSlider(slider_.take());
    setText(IDC_LABEL5, decimalText(quality_));
}

bool SaveDialog::onMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer) {
    if (message != WM_GETMINMAXINFO) return browser_.handleMessage(message, wide, longer, answer);
    anchors_.limit(*reinterpret_cast<MINMAXINFO*>(longer));
    return true;
}

void SaveDialog::anchor(std::initializer_list<int> ids, unsigned edges) {
    for (const int id : ids) anchors_.add(control(id), edges);
}

void SaveDialog::enableQuality() {
    const bool enabled = format() == SaveFormat::Jpeg;
    for (const int id : {IDC_LABEL4, IDC_LABEL5, IDC_LABEL6, IDC_LABEL7, IDC_SLIDER1}) enable(id, enabled);
}

SaveFormat SaveDialog::format() const {
    return saveFormatOf(kind_.types[static_cast<std::size_t>(browser_.type())]);
}

void SaveDialog::save() {
    const Held<std::u16string> name(text(IDC_TEXT1));
    if (name->empty()) {
        showMessage(save_text::kNoName, MB_ICONEXCLAMATION, save_text::kTitle);
        return;
    }
    const Held<std::u16string> fullName;
    const Held<std::u16string> failure;
    try {
        *fullName = saveFileName(browser_.folder(), *name, format());
        if (saveAs(*name, *fullName)) hide();
        return;
    } catch (const Error& error) {
        *failure = error.description;
    } catch (const std::bad_alloc&) {
        *failure = platformError(Platform::OutOfMemory).description;
    }
    showMessage(save_text::aborted(*failure), MB_ICONERROR, save_text::kErrorTitle);
}

/// False where the user keeps the old file.
bool SaveDialog::saveAs(const std::u16string& name, const std::u16string& fullName) {
    if (!mayReplace(fullName)) return false;
    if (!canNameFile(name)) throw platformError(Platform::BadFileName);
    const Held<WaitCursor> wait;
    writePicture(format(), fullName);
    return true;
}

bool SaveDialog::mayReplace(const std::u16string& fullName) {
    return !findsFile(fullName) || showMessage(save_text::replaceQuestion(fullName),
                                               MB_YESNO | MB_ICONEXCLAMATION, save_text::kTitle) == IDYES;
}

void SaveDialog::writeBitmap(const std::u16string& bitmapFile, SaveFormat format,
                             const std::u16string& fullName) {
    if (format == SaveFormat::Jpeg) {
        writeJpeg(bitmapFile, fullName);
    } else {
        copyFile(bitmapFile, fullName);
    }
}

void SaveDialog::writeJpeg(const std::u16string& bitmapFile, const std::u16string& fullName) const {
    const Held<cDIBSection> section;
    section->CreateFromPicture(loadPicture(bitmapFile).as<IPictureDisp>().get());
    if (!writeSection(*section, fullName)) showMessage(save_text::jpegFailure(fullName), MB_ICONEXCLAMATION);
}

/// The codec knows names of the 8-bit code page only, so it writes a file of another name first. Where that
/// one cannot be put in its place, the reason is told like that of any other failure.
bool SaveDialog::writeSection(const cDIBSection& section, const std::u16string& fullName) const {
    const Held<TemporaryFile> written;
    const Held<std::u16string> path(written->path());
    if (!SaveJPG(section, *path, quality_)) return false;
    copyFile(*path, fullName);
    return true;
}

}  // namespace vrx
