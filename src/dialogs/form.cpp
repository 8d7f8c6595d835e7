#include "dialogs/form.h"

#include <utility>
#include <vector>

#include "com/entry.h"
#include "com/system_function.h"
#include "com/variant_convert.h"
#include "common/interactive.h"
#include "common/message_loop.h"
#include "common/owner_window.h"
#include "dialogs/dpi.h"
#include "dialogs/visual_styles.h"
#include "ground/error.h"

namespace vrx {
namespace {

/// The messages whose answer a dialog procedure returns itself.
bool isAnsweredDirectly(UINT message) {
    return message == WM_INITDIALOG || message == WM_CTLCOLORSTATIC || message == WM_CTLCOLORDLG ||
           message == WM_VKEYTOITEM;
}

using SetDialogDpiChangeBehavior = BOOL(WINAPI*)(HWND, int, int);

/// On a screen of another resolution the system would lay out the controls of its own accord, against the
/// form's layout. There since Windows 10.
void keepSizeOnEveryScreen(HWND dialog) {
    constexpr int kDisableAll = 1;
    const auto set = systemFunction<SetDialogDpiChangeBehavior>(L"user32.dll", "SetDialogDpiChangeBehavior");
    if (set) set(dialog, kDisableAll, kDisableAll);
}

}  // namespace

/// Disables the other windows while a form is shown modally, and gives the activation back afterwards.
class Form::ModalLoop {
  public:
    explicit ModalLoop(Form& form)
        : form_(form), active_(GetActiveWindow()), owner_(GetWindow(form.window_, GW_OWNER)) {}
    ModalLoop(const ModalLoop&) = delete;
    ModalLoop& operator=(const ModalLoop&) = delete;
    ~ModalLoop() {
        // The others first: hiding the active window would otherwise activate another program's.
        form_.endModality();
        form_.modality_.reset();
        if (!form_.window_) return;
        // A user who is in another window by now stays there.
        if (GetActiveWindow() == form_.window_ && !activate(active_)) activate(owner_);
        ShowWindow(form_.window_, SW_HIDE);
    }

    void run() {
        form_.modality_.emplace().begin(form_.window_);
        form_.shown_ = true;
        form_.makeVisible();
        MSG message;
        while (form_.shown_ && form_.window_) {
            const BOOL got = GetMessageW(&message, nullptr, 0, 0);
            if (got <= 0) {
                // The request to quit is for the host's own loop.
                if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            if (form_.takesEnter(message)) continue;
            const HostCall host;
            if (IsDialogMessageW(form_.window_, &message)) continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

  private:
    /// False for a window that the user cannot work in.
    static bool activate(HWND window) {
        if (!window || !IsWindowVisible(window) || !IsWindowEnabled(window)) return false;
        return SetActiveWindow(window) != nullptr;
    }

    Form& form_;
    HWND active_;
    HWND owner_;
};

Form::~Form() {
    if (!window_) return;
    // A derived form is gone by now: nothing of it may be called any more.
    SetWindowLongPtrW(window_, DWLP_USER, 0);
    DestroyWindow(window_);
}

void Form::load(HWND owner) {
    if (window_) return;
    const Held<VisualStyles> styles;
    const HWND window = CreateDialogParamW(moduleInstance(), MAKEINTRESOURCEW(templateId_), owner, procedure,
                                           reinterpret_cast<LPARAM>(this));
    rethrowFailure();
    if (!window) throw platformError(Platform::OutOfMemory);
    mustUnload_ = true;
    keepSizeOnEveryScreen(window);
}

void Form::showModal() {
    if (!isInteractive()) throw platformError(Platform::InvalidCall);
    load(ownerWindow());
    {
        const Held<ModalLoop> loop(*this);
        loop->run();
        shown_ = false;
    }
    rethrowFailure();
}

void Form::show(HWND owner) {
    load(owner);
    shown_ = true;
    makeVisible();
}

/// A process's first window obeys the program that started the process, which may want it hidden.
void Form::makeVisible() {
    ShowWindow(window_, SW_SHOW);
    if (!IsWindowVisible(window_) || IsIconic(window_)) ShowWindow(window_, SW_SHOWNORMAL);
}

void Form::hide() {
    shown_ = false;
    // A modal loop may wait for a message, and hides the window itself when it ends.
    if (window_) PostMessageW(window_, WM_NULL, 0, 0);
}

/// Whoever hides or destroys the window: the system then looks for another one to activate.
void Form::onHidden() {
    if (!modality_ || goesWithOwner_) return;
    endModality();
    hide();
}

void Form::endModality() {
    if (modality_) modality_->end();
}

void Form::unload() {
    if (!window_) return;
    DestroyWindow(window_);
    rethrowFailure();
}

void Form::forgetWindow() {
    window_ = nullptr;
    shown_ = false;
    endModality();
    // Without the window no message may come that ends a modal loop.
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

/// The window goes while the form is whole: what waits in the queue would reach parts of it that are gone.
void Form::rethrowFailure() {
    if (!failure_) return;
    if (window_) DestroyWindow(window_);
    std::rethrow_exception(std::exchange(failure_, nullptr));
}

INT_PTR CALLBACK Form::procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    const Entry entry;
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, longer);
        reinterpret_cast<Form*>(longer)->window_ = window;
    }
    auto* form = reinterpret_cast<Form*>(GetWindowLongPtrW(window, DWLP_USER));
    return form ? form->route(message, wide, longer) : FALSE;
}

INT_PTR Form::route(UINT message, WPARAM wide, LPARAM longer) noexcept {
    const HWND window = window_;
    try {
        LRESULT answer = 0;
        if (!dispatch(message, wide, longer, answer)) return FALSE;
        if (isAnsweredDirectly(message)) return answer;
        SetWindowLongPtrW(window, DWLP_MSGRESULT, answer);
        return TRUE;
    } catch (...) {
        fail();
        return TRUE;
    }
}

/// A combo box with its list down closes the list on Enter.
bool Form::takesEnter(const MSG& message) noexcept {
    if (message.message != WM_KEYDOWN || message.wParam != VK_RETURN || !IsChild(window_, message.hwnd))
        return false;
    if (SendMessageW(message.hwnd, CB_GETDROPPEDSTATE, 0, 0)) return false;
    try {
        return onEnter();
    } catch (...) {
        fail();
        return true;
    }
}

/// Inside a handler of the exception.
void Form::fail() noexcept {
    if (!failure_) failure_ = std::current_exception();
    hide();
}

bool Form::dispatch(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer) {
    switch (message) {
        case WM_INITDIALOG:
            onLoad();
            answer = TRUE;
            return true;
        case WM_CLOSE:
            onClose();
            return true;
        case WM_COMMAND:
            if (LOWORD(wide) == IDCANCEL && !longer) {
                onEscape();
                return true;
            }
            onCommand(LOWORD(wide), HIWORD(wide), reinterpret_cast<HWND>(longer));
            return true;
        case WM_HSCROLL:
        case WM_VSCROLL:
            onScroll(reinterpret_cast<HWND>(longer), LOWORD(wide));
            return true;
        case kEnterPressed:
            answer = takesEnter({reinterpret_cast<HWND>(longer), WM_KEYDOWN, VK_RETURN, 0, 0, {}});
            return true;
        default:
            return !followWindow(message, wide, longer) && onMessage(message, wide, longer, answer);
    }
}

/// What happens to the window, which the system is to deal with as well; false for other messages.
bool Form::followWindow(UINT message, WPARAM wide, LPARAM longer) {
    switch (message) {
        case WM_SHOWWINDOW:
            // With an owner that is minimised and restored the form goes and comes, and stays modal
            // meanwhile.
            goesWithOwner_ = !wide && (goesWithOwner_ || longer == SW_PARENTCLOSING);
            return true;
        case WM_WINDOWPOSCHANGING:
            if (reinterpret_cast<const WINDOWPOS*>(longer)->flags & SWP_HIDEWINDOW) onHidden();
            return true;
        case WM_ACTIVATE:
            onActivate(LOWORD(wide) != WA_INACTIVE);
            return true;
        case WM_SIZE:
            onResize(LOWORD(longer), HIWORD(longer));
            return true;
        case WM_DESTROY:
            if (std::exchange(mustUnload_, false)) onUnload();
            return true;
        case WM_NCDESTROY:
            forgetWindow();
            return true;
        default:
            return false;
    }
}

std::u16string Form::text(int id) const {
    const HWND window = control(id);
    std::vector<wchar_t> buffer(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1);
    const int length = GetWindowTextW(window, buffer.data(), static_cast<int>(buffer.size()));
    return fromWide({buffer.data(), static_cast<std::size_t>(length)});
}

void Form::setText(int id, const std::u16string& text) { SetDlgItemTextW(window_, id, toWide(text).c_str()); }

int Form::scaled(int pixels) const { return MulDiv(pixels, dpiOf(window_), kDesignDpi); }

}  // namespace vrx
