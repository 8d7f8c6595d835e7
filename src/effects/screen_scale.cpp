#include "effects/screen_scale.h"

#include <windows.h>

#include "common/win_resource.h"
#include "effects/engine/himetric.h"

namespace vrx {
namespace {

void releaseScreen(HDC dc) { ReleaseDC(nullptr, dc); }

std::int16_t scale(float himetric, int resolution) {
    const Resource<HDC, releaseScreen> screen(GetDC(nullptr));
    if (!screen) throw platformError(Platform::OutOfMemory);
    return pixelsOfHimetric(himetric, GetDeviceCaps(screen.get(), resolution));
}

}  // namespace

std::int16_t scaleX(float himetric) { return scale(himetric, LOGPIXELSX); }

std::int16_t scaleY(float himetric) { return scale(himetric, LOGPIXELSY); }

}  // namespace vrx
