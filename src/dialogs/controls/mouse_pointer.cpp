#include "dialogs/controls/mouse_pointer.h"

#include <olectl.h>

#include "com/entry.h"
#include "com/handle_number.h"

namespace vrx {

LPCWSTR cursorOf(MousePointer pointer) {
    switch (static_cast<int>(pointer)) {
        case 2:
            return IDC_CROSS;
        case 3:
            return IDC_IBEAM;
        case 5:
        case 15:
            return IDC_SIZEALL;
        case 6:
            return IDC_SIZENESW;
        case 7:
            return IDC_SIZENS;
        case 8:
            return IDC_SIZENWSE;
        case 9:
            return IDC_SIZEWE;
        case 10:
            return IDC_UPARROW;
        case 11:
            return IDC_WAIT;
        case 12:
            return IDC_NO;
        case 13:
            return IDC_APPSTARTING;
        case 14:
            return IDC_HELP;
        default:
            return IDC_ARROW;
    }
}

HCURSOR iconCursor(IPicture* icon) {
    SHORT type = PICTYPE_NONE;
    OLE_HANDLE handle = 0;
    if (!icon) return nullptr;
    const HeldReference kept{ComPtr<IPicture>(icon)};
    const bool isIcon = callHost([&] {
        return SUCCEEDED(kept->get_Type(&type)) && type == PICTYPE_ICON &&
               SUCCEEDED(kept->get_Handle(&handle));
    });
    if (!isIcon) return nullptr;
    return handleOf<HCURSOR>(static_cast<LONG>(handle));
}

}  // namespace vrx
