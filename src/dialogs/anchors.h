// Moves and stretches the controls of a resizable form with its edges.
#pragma once

#include <windows.h>

#include <vector>

namespace vrx {

/// The edges that a control keeps its distance from; from two opposite ones it is stretched.
enum Anchor : unsigned { kLeft = 1, kTop = 2, kRight = 4, kBottom = 8 };

class Anchors {
  public:
    /// Remembers the form's present size, the smallest that it may have.
    void attach(HWND form);
    /// Remembers the control's present place.
    void add(HWND control, unsigned edges);
    /// Places the controls for the form's inner size now.
    void arrange() const;
    /// For WM_GETMINMAXINFO.
    void limit(MINMAXINFO& limits) const;

  private:
    struct Place {
        HWND control;
        unsigned edges;
        RECT designed;
    };

    HWND form_ = nullptr;
    SIZE designed_{};
    SIZE smallest_{};
    std::vector<Place> places_;
};

}  // namespace vrx
