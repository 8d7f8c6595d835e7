#include "pattern/editor/pattern_dialogs.h"

#include <commdlg.h>

#include <vector>

#include "com/entry.h"
#include "com/variant_convert.h"
#include "common/modal_scope.h"

namespace vrx {
namespace {

constexpr std::size_t kLongestPath = 32768;
constexpr COLORREF kColorBits = 0x00FFFFFF;

std::wstring currentFolder() {
    std::vector<wchar_t> folder(kLongestPath);
    const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data());
    return length < folder.size() ? std::wstring(folder.data(), length) : std::wstring();
}

/// Up to Windows XP the dialog that opens a file leaves the process in the folder that the user went to,
/// whatever it is asked for.
class KeptFolder {
  public:
    KeptFolder() {
        if (LOBYTE(LOWORD(GetVersion())) < kMajorOfVista) folder_ = currentFolder();
    }
    KeptFolder(const KeptFolder&) = delete;
    KeptFolder& operator=(const KeptFolder&) = delete;
    ~KeptFolder() {
        if (!folder_.empty()) SetCurrentDirectoryW(folder_.c_str());
    }

  private:
    static constexpr BYTE kMajorOfVista = 6;

    std::wstring folder_;
};

}  // namespace

std::optional<std::int32_t> chooseColor(HWND owner, std::int32_t color, CustomColors& custom) {
    CHOOSECOLORW choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.rgbResult = static_cast<COLORREF>(color) & kColorBits;
    choice.lpCustColors = custom.data();
    choice.Flags = CC_RGBINIT;
    const HeldModality modality(owner);
    const HostCall host;
    if (!ChooseColorW(&choice)) return std::nullopt;
    return static_cast<std::int32_t>(choice.rgbResult);
}

ChosenFile choosePatternFile(HWND owner, PatternFileUse use, const std::u16string& folder,
                             const std::u16string& fileName) {
    const Held<std::vector<wchar_t>> path(kLongestPath);
    const Held<std::wstring> initialFolder(toWide(folder));
    if (fileName.size() < path->size()) toWide(fileName).copy(path->data(), fileName.size());

    OPENFILENAMEW choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.lpstrFilter = L"Pattern (VGR)\0*.VGR\0";
    choice.lpstrFile = path->data();
    choice.nMaxFile = static_cast<DWORD>(path->size());
    choice.lpstrInitialDir = initialFolder->c_str();
    choice.lpstrTitle = use == PatternFileUse::Load ? L"Load Pattern" : L"Save Pattern";
    choice.lpstrDefExt = L"VGR";
    choice.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;

    const Held<KeptFolder> kept;
    const HeldModality modality(owner);
    const HostCall host;
    const BOOL chosen = use == PatternFileUse::Load ? GetOpenFileNameW(&choice) : GetSaveFileNameW(&choice);
    if (!chosen) return std::nullopt;
    return fromWide(path->data());
}

}  // namespace vrx
