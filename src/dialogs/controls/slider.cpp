#include "dialogs/controls/slider.h"

#include <commctrl.h>

namespace vrx {

void Slider::attach(HWND trackbar, const SliderScale& scale) {
    window_ = trackbar;
    SendMessageW(window_, TBM_SETRANGEMIN, FALSE, scale.lowest);
    SendMessageW(window_, TBM_SETRANGEMAX, FALSE, scale.highest);
    SendMessageW(window_, TBM_SETTICFREQ, static_cast<WPARAM>(scale.tick), 0);
    SendMessageW(window_, TBM_SETLINESIZE, 0, 1);
    SendMessageW(window_, TBM_SETPAGESIZE, 0, scale.tick > 1 ? scale.tick : 2);
    setPosition(scale.designed);
}

int Slider::position() const { return static_cast<int>(SendMessageW(window_, TBM_GETPOS, 0, 0)); }

void Slider::setPosition(int position) {
    SendMessageW(window_, TBM_SETPOS, TRUE, position);
    static_cast<void>(take());
}

int Slider::take() {
    known_ = position();
    return known_;
}

}  // namespace vrx
