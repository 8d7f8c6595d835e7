#include "common/message_box.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <cwchar>
#include <utility>
#include <vector>

#include "com/entry.h"
#include "com/variant_convert.h"
#include "common/host_program.h"
#include "common/interactive.h"
#include "common/modal_scope.h"
#include "common/owner_window.h"

namespace vrx {
namespace {

std::wstring baseName(const std::wstring& path) {
    const std::wstring name = path.substr(path.find_last_of(L"\\/") + 1);
    return name.substr(0, name.find_last_of(L'.'));
}

std::vector<std::byte> versionInfo(const std::wstring& path) {
    DWORD ignored = 0;
    std::vector<std::byte> info(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    if (!info.empty() &&
        !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(info.size()), info.data())) {
        info.clear();
    }
    return info;
}

std::wstring versionText(const std::vector<std::byte>& info, WORD language, WORD codePage,
                         const wchar_t* name) {
    std::array<wchar_t, 64> query{};
    std::swprintf(query.data(), query.size(), L"\\StringFileInfo\\%04x%04x\\%ls", language, codePage, name);
    void* text = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(info.data(), query.data(), &text, &length) || length == 0) return {};
    const std::wstring value(static_cast<const wchar_t*>(text), length);
    return value.substr(0, value.find(L'\0'));
}

std::wstring versionTitle(const std::wstring& path) {
    const std::vector<std::byte> info = versionInfo(path);
    struct Translation {
        WORD language;
        WORD codePage;
    };
    void* translations = nullptr;
    UINT size = 0;
    if (info.empty() || !VerQueryValueW(info.data(), L"\\VarFileInfo\\Translation", &translations, &size) ||
        size < sizeof(Translation)) {
        return {};
    }
    const auto& first = *static_cast<const Translation*>(translations);
    std::wstring title = versionText(info, first.language, first.codePage, L"FileDescription");
    if (title.empty()) title = versionText(info, first.language, first.codePage, L"ProductName");
    return title;
}

/// The buttons of each kind of message box, from the first to the last.
constexpr std::array<std::array<int, 3>, 7> kButtons = {{
    {IDOK},
    {IDOK, IDCANCEL},
    {IDABORT, IDRETRY, IDIGNORE},
    {IDYES, IDNO, IDCANCEL},
    {IDYES, IDNO},
    {IDRETRY, IDCANCEL},
    {IDCANCEL, IDTRYAGAIN, IDCONTINUE},
}};

/// What Enter would answer. As in a box that is shown, the first button is the default where the style asks
/// for one that the box does not have; a kind of box that there is not gives no answer.
int defaultAnswer(unsigned style) {
    const std::size_t kind = style & MB_TYPEMASK;
    if (kind >= kButtons.size()) return 0;
    const std::size_t index = (style & MB_DEFMASK) / MB_DEFBUTTON2;
    const auto& buttons = kButtons[kind];
    return index < buttons.size() && buttons[index] != 0 ? buttons[index] : buttons[0];
}

}  // namespace

std::u16string hostTitle() {
    const std::wstring path = toWide(hostPath());
    const std::wstring title = versionTitle(path);
    return fromWide(title.empty() ? baseName(path) : title);
}

int showMessage(std::u16string message, unsigned style, std::u16string title) {
    if (!isInteractive()) return defaultAnswer(style);
    const Held<std::u16string> text(std::move(message));
    const Held<std::u16string> caption(title.empty() ? hostTitle() : std::move(title));
    const HWND owner = ownerWindow();
    const HeldModality modality(owner);
    const HostCall host;
    return MessageBoxW(owner, asWide(text->c_str()), asWide(caption->c_str()), style);
}

}  // namespace vrx
