// The zoom window without the window: its size and place on the screen, its scroll bars, the picture's place
// in it, and which pixel the mouse points at. Lengths are in pixels of the screen.
#pragma once

#include <cstdint>
#include <string>

namespace vrx {

struct Extent {
    int width;
    int height;

    bool operator==(const Extent&) const = default;
};

struct WindowPlace {
    int left;
    int top;
    int width;
    int height;

    bool operator==(const WindowPlace&) const = default;
};

/// The scroll bars that a view of a larger content needs, and what they leave of it.
struct ScrolledView {
    bool horizontalBar;
    bool verticalBar;
    Extent view;

    bool operator==(const ScrolledView&) const = default;
};

/// `bars` is the width of a vertical and the height of a horizontal scroll bar.
[[nodiscard]] ScrolledView scrolledView(Extent area, Extent content, Extent bars);

/// The window that shows a picture whole, with its borders around, as far as the screen allows; centred.
/// Where one side has to scroll, the other one has room for the scroll bar.
[[nodiscard]] WindowPlace zoomWindowPlace(Extent picture, Extent borders, Extent bars, Extent screen);

/// Where the content begins along one side: scrolled when it is longer than the view, otherwise centred.
[[nodiscard]] int contentStart(int view, int content, int scrolled);
/// A scroll position held to what there is to scroll.
[[nodiscard]] int heldPosition(int view, int content, int position);

/// The column or row of a picture under the pointer, which is in twips from the picture's edge. Halves to
/// even at each step.
[[nodiscard]] std::int32_t pixelUnderPointer(double pointer, double pictureTwips, double displayedTwips,
                                             double twipsInPixel);

/// Four decimals and at least one digit before them, halves away from zero in the 15 digits that count.
[[nodiscard]] std::u16string readoutText(double value);

}  // namespace vrx
