#include "dialogs/picture_size.h"

#include "dialogs/dpi.h"
#include "dialogs/engine/preview_frame.h"

namespace vrx {

PictureLengths lengthsOf(const ComPtr<IPicture>& picture) {
    PictureLengths lengths;
    OLE_HANDLE handle = 0;
    if (!picture || FAILED(picture->get_Handle(&handle)) || handle == 0) return lengths;
    picture->get_Width(&lengths.width);
    picture->get_Height(&lengths.height);
    return lengths;
}

Extent screenSizeOf(const ComPtr<IPicture>& picture) {
    const PictureLengths lengths = lengthsOf(picture);
    const ScreenDpi dpi = screenDpi();
    return {pixelsOfPictureLength(lengths.width, dpi.x), pixelsOfPictureLength(lengths.height, dpi.y)};
}

}  // namespace vrx
