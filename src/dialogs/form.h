// The base of every dialog: a window made from a dialog template, its messages as named virtuals, modal and
// modeless. A form that fails in a message closes; the failure leaves showModal() for the method that opened
// the form.
#pragma once

#include <windows.h>

#include <exception>
#include <optional>
#include <string>

#include "com/module.h"
#include "common/modal_scope.h"

namespace vrx {

class Form {
  public:
    explicit Form(int templateId) : templateId_(templateId) {}
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    virtual ~Form();

    [[nodiscard]] HWND window() const { return window_; }
    [[nodiscard]] bool isLoaded() const { return window_ != nullptr; }

    /// Makes the window, hidden, and calls onLoad. Does nothing for a form that is loaded.
    void load(HWND owner);
    /// Loads and shows the form, and returns when it is hidden or closed. Meanwhile the thread's other
    /// windows are disabled; afterwards the one that was active is active again. Throws what a message
    /// handler threw.
    void showModal();
    /// Loads and shows the form, and returns.
    void show(HWND owner);
    /// Hides the form, which ends showModal().
    void hide();
    /// Destroys the window. Does nothing for a form that is not loaded.
    void unload();

  protected:
    virtual void onLoad() {}
    /// Before the window goes, with its owner too; not where onLoad failed.
    virtual void onUnload() {}
    /// The frame's close button, Alt+F4 and Esc on a form without a cancel button.
    virtual void onClose() { hide(); }
    /// Esc, where it means something else than the frame's close button.
    virtual void onEscape() { onClose(); }
    virtual void onCommand(int /*id*/, int /*notification*/, HWND /*control*/) {}
    virtual void onScroll(HWND /*control*/, int /*code*/) {}
    /// Enter in one of a modal form's controls, before it means the default button; false leaves it to that.
    virtual bool onEnter() { return false; }
    virtual void onActivate(bool /*active*/) {}
    virtual void onResize(int /*width*/, int /*height*/) {}
    /// Everything else; false leaves the message to the system.
    virtual bool onMessage(UINT /*message*/, WPARAM /*wide*/, LPARAM /*longer*/, LRESULT& /*answer*/) {
        return false;
    }

    [[nodiscard]] HWND control(int id) const { return GetDlgItem(window_, id); }
    [[nodiscard]] std::u16string text(int id) const;
    void setText(int id, const std::u16string& text);
    void enable(int id, bool enabled) { EnableWindow(control(id), enabled); }
    [[nodiscard]] bool isChecked(int id) const { return IsDlgButtonChecked(window_, id) == BST_CHECKED; }
    void setChecked(int id, bool checked) {
        CheckDlgButton(window_, id, checked ? BST_CHECKED : BST_UNCHECKED);
    }

    /// Pixels for a length at 96 dots per inch, at the resolution that this window is drawn in.
    [[nodiscard]] int scaled(int pixels) const;

  private:
    class ModalLoop;

    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer);
    [[nodiscard]] INT_PTR route(UINT message, WPARAM wide, LPARAM longer) noexcept;
    [[nodiscard]] bool dispatch(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer);
    [[nodiscard]] bool followWindow(UINT message, WPARAM wide, LPARAM longer);
    [[nodiscard]] bool takesEnter(const MSG& message) noexcept;
    void fail() noexcept;
    void makeVisible();
    void onHidden();
    void endModality();
    void forgetWindow();
    void rethrowFailure();

    const int templateId_;
    HWND window_ = nullptr;
    bool shown_ = false;
    bool mustUnload_ = false;
    bool goesWithOwner_ = false;
    std::optional<ModalScope> modality_;
    std::exception_ptr failure_;
    ModuleLock lock_;
};

}  // namespace vrx
