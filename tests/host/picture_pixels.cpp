#include "picture_pixels.h"

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <ostream>

#include "com/com_ptr.h"
#include "com/handle_number.h"
#include "com/win_resource.h"

namespace host {
namespace {

HBITMAP bitmapOf(IDispatch& picture) {
    const auto inner = vrx::ComPtr<IDispatch>(&picture).as<IPicture>();
    OLE_HANDLE handle = 0;
    SHORT type = PICTYPE_NONE;
    if (!inner || FAILED(inner->get_Type(&type)) || type != PICTYPE_BITMAP) return nullptr;
    inner->get_Handle(&handle);
    return vrx::handleOf<HBITMAP>(static_cast<LONG>(handle));
}

}  // namespace

Pixels pixelsOf(IDispatch& picture) {
    const HBITMAP handle = bitmapOf(picture);
    BITMAP bitmap{};
    if (!handle || GetObjectW(handle, sizeof bitmap, &bitmap) == 0) return {};
    BITMAPINFO info{};
    info.bmiHeader = {
        sizeof(BITMAPINFOHEADER), bitmap.bmWidth, bitmap.bmHeight, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    const std::size_t stride = (static_cast<std::size_t>(bitmap.bmWidth) * 3 + 3) & ~std::size_t{3};
    FileBytes bytes(stride * static_cast<std::size_t>(bitmap.bmHeight));
    const vrx::MemoryDc dc(CreateCompatibleDC(nullptr));
    GetDIBits(dc.get(), handle, 0, static_cast<UINT>(bitmap.bmHeight), bytes.data(), &info, DIB_RGB_COLORS);
    return {bitmap.bmWidth, bitmap.bmHeight, bitmap.bmBitsPixel, std::move(bytes)};
}

Pixels pixels24(int width, int height, FileBytes bytes) { return {width, height, 24, std::move(bytes)}; }

void PrintTo(const Pixels& pixels, std::ostream* out) {
    *out << pixels.width << " x " << pixels.height << ", " << pixels.depth << " bits:";
    for (std::size_t i = 0; i < pixels.bytes.size() && i < 48; ++i) *out << ' ' << int{pixels.bytes[i]};
}

}  // namespace host
