// The patterns of file names that the list of file types offers.
#pragma once

#include <string_view>

namespace vrx {

/// Whether a name fits one of the patterns, which ";" separates; capital and small letters are the same.
/// "*" stands for any characters or none, "?" for one; "*.*" is every name, even one without a dot.
[[nodiscard]] bool matchesPatterns(std::u16string_view name, std::u16string_view patterns);

}  // namespace vrx
