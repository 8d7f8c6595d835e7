#include "dialogs/visual_styles.h"

#include <commctrl.h>

#include "com/module.h"

namespace vrx {

VisualStyles::VisualStyles() {
    const std::wstring path = modulePath();
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
    description.lpSource = path.c_str();
    description.hModule = moduleInstance();
    description.lpResourceName = MAKEINTRESOURCEW(2);  // where a DLL's manifest stands
    context_ = CreateActCtxW(&description);
    if (context_ != INVALID_HANDLE_VALUE) active_ = ActivateActCtx(context_, &cookie_) != FALSE;

    INITCOMMONCONTROLSEX classes{sizeof classes,
                                 ICC_STANDARD_CLASSES | ICC_BAR_CLASSES | ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
}

VisualStyles::~VisualStyles() {
    // Others may have been activated meanwhile, where the host's code has left.
    if (active_) DeactivateActCtx(DEACTIVATE_ACTCTX_FLAG_FORCE_EARLY_DEACTIVATION, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace vrx
