// The base of the dialogs that save a picture: folder, name and type of the file, JPEG quality, the question
// before a file is replaced, the settings that are kept, and the messages when something fails.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "dialogs/anchors.h"
#include "dialogs/controls/slider.h"
#include "dialogs/engine/save_rules.h"
#include "dialogs/engine/settings.h"
#include "dialogs/file_browser.h"
#include "dialogs/form.h"

namespace vrx {

class cDIBSection;

/// What one dialog has of its own.
struct SaveDialogKind {
    int templateId;
    std::span<const std::u16string_view> types;
    FolderSetting path;
    NumberSetting type;
    NumberSetting quality;
};

class SaveDialog : public Form, private FileBrowserOwner {
  public:
    void setREGKEY(std::u16string root) { regKey_ = std::move(root); }

  protected:
    explicit SaveDialog(const SaveDialogKind& kind) : Form(kind.templateId), kind_(kind), browser_(*this) {}
    ~SaveDialog() override = default;

    void onLoad() override;
    void onUnload() override;
    void onCommand(int id, int notification, HWND control) override;
    bool onEnter() override;
    void onScroll(HWND control, int code) override;
    void onResize(int /*width*/, int /*height*/) override { anchors_.arrange(); }
    bool onMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer) override;

    /// Writes the picture as a file of this format. What it throws is told to the user, and the dialog stays.
    virtual void writePicture(SaveFormat format, const std::u16string& fullName) = 0;
    /// The same for a picture that stands in a BMP file, as a copy of that or as JPEG at the dialog's
    /// quality. The user is told where the JPEG cannot be written.
    void writeBitmap(const std::u16string& bitmapFile, SaveFormat format, const std::u16string& fullName);

    void anchor(std::initializer_list<int> ids, unsigned edges);

  private:
    void fileChosen() override {}
    void typeChosen() override { enableQuality(); }

    void readSettings();
    void enableQuality();
    [[nodiscard]] SaveFormat format() const;
    void save();
    [[nodiscard]] bool mayReplace(const std::u16string& fullName);
    [[nodiscard]] bool saveAs(const std::u16string& name, const std::u16string& fullName);
    void writeJpeg(const std::u16string& bitmapFile, const std::u16string& fullName) const;
    [[nodiscard]] bool writeSection(const cDIBSection& section, const std::u16string& fullName) const;

    const SaveDialogKind& kind_;
    std::u16string regKey_;
    FileBrowser browser_;
    Slider slider_;
    std::int32_t quality_ = 0;
    Anchors anchors_;
};

}  // namespace vrx
