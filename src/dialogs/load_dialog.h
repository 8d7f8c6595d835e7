// The base of the dialogs that choose a picture file to load: the lists of drives, folders and files, the
// preview, and the settings that are kept.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "dialogs/VrxPreviewImg.h"
#include "dialogs/anchors.h"
#include "dialogs/engine/settings.h"
#include "dialogs/file_browser.h"
#include "dialogs/form.h"

namespace vrx {

/// What one dialog has of its own.
struct LoadDialogKind {
    int templateId;
    std::span<const std::u16string_view> types;
    FolderSetting path;
    NumberSetting preview;
    std::optional<NumberSetting> type;
};

class LoadDialog : public Form, private FileBrowserOwner, private PreviewOwner {
  public:
    ~LoadDialog() override;

    void setREGKEY(std::u16string root) { regKey_ = std::move(root); }
    /// A suggested file; only its folder is kept.
    void setInputFileName(const std::u16string& name);
    /// The chosen file's full name; empty unless the user has accepted it.
    [[nodiscard]] std::u16string GetDirAppo() const { return accepted_ ? chosen_ : std::u16string(); }
    /// The size in pixels of the picture that is being loaded.
    void SetImageSize(std::int32_t width, std::int32_t height);

  protected:
    LoadDialog(const LoadDialogKind& kind, VrxPreviewImg& preview);

    void onLoad() override;
    void onUnload() override;
    void onClose() override { cancel(); }
    bool onEnter() override { return !closing_ && browser_.handleEnter(); }
    void onCommand(int id, int notification, HWND control) override;
    void onResize(int /*width*/, int /*height*/) override { anchors_.arrange(); }
    bool onMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer) override;

    /// A file has been selected and its preview is wanted.
    virtual void showChosenFile() = 0;
    /// The dialog ends: whatever the preview does, ends.
    virtual void endPreview() {}
    /// Whose load a window that shows the preview's picture ends when it closes.
    [[nodiscard]] virtual ComPtr<_CVrxHDR> pictureSource() const { return {}; }

    [[nodiscard]] VrxPreviewImg& preview() { return preview_; }
    [[nodiscard]] std::u16string previewFile();
    void setPreviewFile(const std::u16string& name);
    [[nodiscard]] bool previewOn() const;
    void showSize(std::int32_t width, std::int32_t height);
    void anchor(int id, unsigned edges) { anchors_.add(control(id), edges); }

    [[nodiscard]] bool closing() const { return closing_; }
    [[nodiscard]] const std::u16string& chosen() const { return chosen_; }
    void setChosen(std::u16string name) { chosen_ = std::move(name); }

  private:
    void fileChosen() override;
    void fileOpened() override { accept(); }
    void previewClicked() override;

    void placeControls();
    void readSettings();
    void showFirstFolder(const std::u16string& stored);
    void accept();
    void cancel();
    void close();

    const LoadDialogKind& kind_;
    std::u16string regKey_;
    std::u16string inputFileName_;
    std::u16string chosen_;
    bool accepted_ = false;
    bool closing_ = false;
    SIZE picture_{};  // as the labels tell it
    FileBrowser browser_;
    VrxPreviewImg& preview_;
    Anchors anchors_;
};

}  // namespace vrx
