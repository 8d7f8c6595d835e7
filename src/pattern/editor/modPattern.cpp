#include "pattern/editor/modPattern.h"

#include "com/win_resource.h"
#include "common/device_context.h"

namespace vrx {
namespace {

/// From one point to a second and a third one, which is not drawn itself.
void drawCorner(HDC dc, COLORREF color, POINT from, POINT corner, POINT to) {
    const Pen pen(CreatePen(PS_SOLID, 1, color));
    if (!pen) return;
    const Selection selected(dc, pen.get());
    MoveToEx(dc, from.x, from.y, nullptr);
    LineTo(dc, corner.x, corner.y);
    LineTo(dc, to.x, to.y);
}

struct FrameColors {
    COLORREF first;
    COLORREF second;
    COLORREF third;
    COLORREF fourth;
};

constexpr FrameColors kHighlighted{RGB(197, 197, 95), RGB(255, 255, 127), RGB(64, 64, 32), RGB(127, 127, 64)};
constexpr FrameColors kPlain{RGB(64, 64, 64), RGB(127, 127, 127), RGB(197, 197, 197), RGB(255, 255, 255)};

}  // namespace

void Draw_FlagFrame(HDC dc, int left, int top, int right, int bottom, bool highlighted) {
    const FrameColors& colors = highlighted ? kHighlighted : kPlain;
    drawCorner(dc, colors.first, {left, bottom - 1}, {right - 1, bottom - 1}, {right - 1, top - 1});
    drawCorner(dc, colors.second, {left + 1, bottom - 2}, {right - 2, bottom - 2}, {right - 2, top});
    drawCorner(dc, colors.third, {left, bottom - 2}, {left, top}, {right - 1, top});
    drawCorner(dc, colors.fourth, {left + 1, bottom - 3}, {left + 1, top + 1}, {right - 2, top + 1});
}

}  // namespace vrx
