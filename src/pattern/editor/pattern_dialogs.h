// The system's dialogs that the pattern editor opens. The process's current folder is the same afterwards.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace vrx {

/// Boxes that the user can fill with colours of his own.
using CustomColors = std::array<COLORREF, 16>;

/// Opens with a colour chosen; nothing when it is cancelled.
[[nodiscard]] std::optional<std::int32_t> chooseColor(HWND owner, std::int32_t color, CustomColors& custom);

enum class PatternFileUse { Load, Save };

/// The full path that the user chose; nothing when it is cancelled.
using ChosenFile = std::optional<std::u16string>;
[[nodiscard]] ChosenFile choosePatternFile(HWND owner, PatternFileUse use, const std::u16string& folder,
                                           const std::u16string& fileName);

}  // namespace vrx
