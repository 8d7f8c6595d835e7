#include "gdi_handles.h"

#include <windows.h>

#include <vector>

namespace host {

std::size_t freeGdiHandles() {
    std::vector<HPEN> pens;
    while (const HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3))) pens.push_back(pen);
    for (const HPEN pen : pens) DeleteObject(pen);
    return pens.size();
}

std::size_t freeUserHandles() {
    std::vector<HMENU> menus;
    while (const HMENU menu = CreatePopupMenu()) menus.push_back(menu);
    for (const HMENU menu : menus) DestroyMenu(menu);
    return menus.size();
}

}  // namespace host
