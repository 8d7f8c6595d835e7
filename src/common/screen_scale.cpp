#include "common/screen_scale.h"

#include "common/device_context.h"
#include "ground/himetric.h"

namespace vrx {
namespace {

std::int16_t scale(float himetric, int resolution) {
    const WindowDc screen(nullptr);
    if (!screen) throw platformError(Platform::OutOfMemory);
    return pixelsOfHimetric(himetric, GetDeviceCaps(screen.get(), resolution));
}

}  // namespace

std::int16_t scaleX(float himetric) { return scale(himetric, LOGPIXELSX); }

std::int16_t scaleY(float himetric) { return scale(himetric, LOGPIXELSY); }

}  // namespace vrx
