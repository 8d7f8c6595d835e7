// The picture of a pattern: one column for each colour, as a host would get them.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "VrxCommon.h"

namespace vrx {

class PatternRamp {
  public:
    /// Lets the pattern object expand the pattern to columns 0 to `width`.
    void expand(_CVrxPattern& object, const std::u16string& pattern, std::int32_t width);
    /// All columns at once, each from the top to the bottom. Where the system cannot draw, the window's
    /// background is left until the next painting.
    void paint(HDC dc, const RECT& area) const;

  private:
    std::vector<std::uint32_t> columns_;  // blue in the lowest byte, as bitmaps have it
};

}  // namespace vrx
