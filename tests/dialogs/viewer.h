// What tests of the zoom window share: pictures, calls that open it, and what it shows.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "VrxCommon.h"
#include "dialogs/resource.h"
#include "hdr_host.h"
#include "window_driver.h"

namespace host {

inline constexpr wchar_t kViewer[] = L"Viewer";

inline HWND viewOf(HWND viewer) { return GetDlgItem(viewer, IDC_IMGPREVIEW); }

inline RECT outerOf(HWND window) {
    RECT outer{};
    GetWindowRect(window, &outer);
    return outer;
}

inline SIZE innerOf(HWND window) {
    RECT inner{};
    GetClientRect(window, &inner);
    return {inner.right, inner.bottom};
}

/// Where a picture that fits begins in the view.
inline POINT startOf(HWND viewer, int width, int height) {
    const SIZE inner = innerOf(viewOf(viewer));
    return {(inner.cx - width) / 2, (inner.cy - height) / 2};
}

inline bool eventuallyShows(HWND viewer, const Pixels& picture) {
    return eventually([&] {
        const POINT start = startOf(viewer, picture.width, picture.height);
        const Pixels shown = shownIn(viewOf(viewer));
        return partOf(shown, start.x, start.y, picture.width, picture.height) == picture;
    });
}

inline constexpr std::array kLabels{IDC_LBLCOMP0, IDC_LBLCOMP1, IDC_LBLCOMP2};
inline constexpr wchar_t kNoReadout[] = L"00000.0000 00000.0000 00000.0000 ";

inline std::wstring labelsOf(HWND viewer) {
    std::wstring texts;
    for (const int label : kLabels) texts += captionOf(GetDlgItem(viewer, label)) + L" ";
    return texts;
}

/// A move of the mouse over the picture, which begins here.
inline void pointAt(HWND viewer, POINT start, int x, int y) {
    SendMessageW(viewOf(viewer), WM_MOUSEMOVE, 0, MAKELPARAM(start.x + x, start.y + y));
}

class Viewer : public testing::Test {
  protected:
    const ThrowawayFolder folder_;
    const vrx::ComPtr<_CVrxImage> image_ = create(L"VrxCommon.CVrxImage").as<_CVrxImage>();
    const Hdr hdr_;
    const RgbePicture picture_{40, 30};
    const FileBytes bits_ = picture_.bitmap(0, 1);
    const std::wstring bmp_ = folder_.write(L"picture.bmp", bmpFile(40, 30, bits_));
    const std::wstring rgbe_ = folder_.write(L"picture.hdr", picture_.file());

    [[nodiscard]] HRESULT see(const std::wstring& file) const {
        return image_->See(vrx::Bstr(SysAllocString(file.c_str())).get());
    }
    [[nodiscard]] HRESULT seeHdr(const std::wstring& file, float exposure = 0, float gamma = 1) const {
        return hdr_->See(vrx::Bstr(SysAllocString(file.c_str())).get(), exposure, gamma);
    }
    static void expectNoWindow() { EXPECT_EQ(windowOf(GetCurrentThreadId(), kViewer), nullptr); }
};

}  // namespace host
