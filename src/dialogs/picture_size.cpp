#include "dialogs/picture_size.h"

#include "com/entry.h"
#include "dialogs/dpi.h"
#include "dialogs/engine/preview_frame.h"

namespace vrx {

PictureLengths lengthsOf(const ComPtr<IPicture>& picture) {
    PictureLengths lengths;
    if (!picture) return lengths;
    // The host's object may set another picture meanwhile.
    const HeldReference kept{ComPtr<IPicture>(picture)};
    callHost([&] {
        OLE_HANDLE handle = 0;
        if (FAILED(kept->get_Handle(&handle)) || handle == 0) return;
        kept->get_Width(&lengths.width);
        kept->get_Height(&lengths.height);
    });
    return lengths;
}

Extent screenSizeOf(const ComPtr<IPicture>& picture) {
    const PictureLengths lengths = lengthsOf(picture);
    const ScreenDpi dpi = screenDpi();
    return {pixelsOfPictureLength(lengths.width, dpi.x), pixelsOfPictureLength(lengths.height, dpi.y)};
}

}  // namespace vrx
