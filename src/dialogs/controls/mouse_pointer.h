// The mouse pointers of a form, by the numbers that forms give them.
#pragma once

#include <windows.h>

#include <ocidl.h>

namespace vrx {

enum class MousePointer : short { Default = 0, Arrow = 1, Cross = 2, Custom = 99 };

/// The system's cursor for a pointer; the arrow for numbers that mean none.
[[nodiscard]] LPCWSTR cursorOf(MousePointer pointer);
/// The cursor that a picture is; null for a picture that is none.
[[nodiscard]] HCURSOR iconCursor(IPicture* icon);

}  // namespace vrx
