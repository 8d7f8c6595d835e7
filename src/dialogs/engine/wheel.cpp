#include "dialogs/engine/wheel.h"

#include <algorithm>

namespace vrx {

int pixelsOfNotch(std::uint32_t lines, int line, int page) {
    return static_cast<int>(std::min(std::uint64_t{lines} * static_cast<std::uint64_t>(line),
                                     static_cast<std::uint64_t>(std::max(page, 0))));
}

int WheelTurns::pixels(int turn, int notch) {
    const std::int64_t more = std::int64_t{turn} * notch;
    if ((more < 0) != (left_ < 0)) left_ = 0;
    left_ += more;
    const std::int64_t whole = left_ / kWheelNotch;
    left_ -= whole * kWheelNotch;
    return static_cast<int>(whole);
}

}  // namespace vrx
