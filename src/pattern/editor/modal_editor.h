// The editor as CVrxPattern asks for it.
#pragma once

#include "pattern/pattern_dialog.h"

namespace vrx {

[[nodiscard]] const PatternDialog& modalPatternDialog();

}  // namespace vrx
