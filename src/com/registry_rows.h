// The rows that registration writes, as data: from the class table and from the type libraries.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vrx {

/// One value of a key, both created when missing. The name is empty for the key's own value; without `text`
/// the key alone is made.
struct RegistryRow {
    std::wstring key;
    std::wstring name;
    std::optional<std::wstring> text;
    /// For a row that the 32-bit and the 64-bit library share: a key of the other one, which keeps the row.
    std::wstring keptBy;
};

/// All rows, relative to Software\Classes, for the library at `path`. Throws HresultFailure.
[[nodiscard]] std::vector<RegistryRow> registryRows(const std::wstring& path);

}  // namespace vrx
