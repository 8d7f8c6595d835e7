// The dialogs as the classes ask for them.
#pragma once

#include "hdr/hdr_dialogs.h"
#include "raster/image_dialogs.h"

namespace vrx {

[[nodiscard]] const HdrDialogs& modalHdrDialogs();
[[nodiscard]] const ImageDialogs& modalImageDialogs();

}  // namespace vrx
