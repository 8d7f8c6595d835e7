#include "plain_windows.h"

#include <windows.h>

namespace faults {
namespace {

HMODULE component() { return GetModuleHandleW(L"VrxCommon.dll"); }

/// The common controls of the component's manifest.
class CommonControls {
  public:
    CommonControls() {
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(component(), path, MAX_PATH);
        ACTCTXW description{};
        description.cbSize = sizeof description;
        description.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
        description.lpSource = path;
        description.hModule = component();
        description.lpResourceName = MAKEINTRESOURCEW(2);  // where a DLL's manifest stands
        context_ = CreateActCtxW(&description);
        ActivateActCtx(context_, &cookie_);
    }
    CommonControls(const CommonControls&) = delete;
    CommonControls& operator=(const CommonControls&) = delete;
    ~CommonControls() {
        DeactivateActCtx(0, cookie_);
        ReleaseActCtx(context_);
    }

  private:
    HANDLE context_ = nullptr;
    ULONG_PTR cookie_ = 0;
};

INT_PTR CALLBACK doNothing(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

void addLabel(HWND dialog) {
    const HWND label =
        CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, dialog, nullptr, component(), nullptr);
    SendMessageW(label, WM_SETFONT, static_cast<WPARAM>(SendMessageW(dialog, WM_GETFONT, 0, 0)), FALSE);
}

}  // namespace

void makePlainWindows(std::initializer_list<int> templates, int labels) {
    const CommonControls controls;
    for (const int id : templates) {
        const HWND dialog = CreateDialogParamW(component(), MAKEINTRESOURCEW(id), nullptr, doNothing, 0);
        for (; labels > 0; --labels) addLabel(dialog);
        DestroyWindow(dialog);
    }
}

}  // namespace faults
