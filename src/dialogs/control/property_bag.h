// The kept properties in a property bag.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "dialogs/control/control_body.h"

namespace vrx {

inline constexpr wchar_t kMousePointerName[] = L"MousePointer";
inline constexpr wchar_t kMouseIconName[] = L"MouseIcon";

/// Defaults for what the bag does not have. Throws vrx::Error (13, 6) for a value of a wrong type or size,
/// and HresultFailure where the bag itself tells so.
[[nodiscard]] KeptProperties readProperties(IPropertyBag& bag, IErrorLog* log);

[[nodiscard]] HRESULT writePointer(IPropertyBag& bag, MousePointer pointer);
[[nodiscard]] HRESULT writeIcon(IPropertyBag& bag, const ComPtr<IPicture>& icon);

}  // namespace vrx
