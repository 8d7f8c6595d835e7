// The dialog of CVrxHDR.Load with pictures of one colour, for its tests.
#pragma once

#include "hdr_host.h"
#include "load_dialog_driver.h"

namespace host {

inline constexpr wchar_t kLoadHdr[] = L"Load HDR Picture";

// With the sliders as they are designed: exposure 16, gamma 2.
inline constexpr Rgbe kOrange{128, 64, 16, 126};
inline constexpr Rgbe kBlue{16, 64, 128, 126};

inline FileBytes colorOf(Rgbe pixel, float exposure = 16, float gamma = 2) {
    FileBytes bytes = RgbePicture(8, 8).fill(pixel).bitmap(exposure, gamma);
    bytes.resize(3);
    return bytes;
}

class LoadHdr : public LoadDialogTest {
  protected:
    Hdr hdr_;
    const std::wstring orange_ = folder_.write(L"orange.hdr", RgbePicture(40, 20).fill(kOrange).file());
    const std::wstring blue_ = folder_.write(L"blue.hdr", RgbePicture(20, 40).fill(kBlue).file());

    void SetUp() override {
        LoadDialogTest::SetUp();
        ASSERT_EQ(hdr_->put_REGKEY(vrx::Bstr(SysAllocString(kKey)).get()), S_OK);
    }
    [[nodiscard]] std::wstring loadFrom(const std::wstring& suggestion, std::function<void(HWND)> act) {
        return load(hdr_, kLoadHdr, suggestion, std::move(act));
    }
    /// In the folder of the pictures.
    [[nodiscard]] std::wstring load(std::function<void(HWND)> act) {
        return loadFrom(folder_ / L"any.hdr", std::move(act));
    }
    using LoadDialogTest::load;

    [[nodiscard]] float exposure() const {
        float value = 0;
        hdr_->get_Exposure(&value);
        return value;
    }
    [[nodiscard]] float gamma() const {
        float value = 0;
        hdr_->get_Gamma(&value);
        return value;
    }
};

inline void moveSlider(HWND dialog, int slider, int position, int code) {
    SendMessageW(item(dialog, slider), TBM_SETPOS, TRUE, position);
    PostMessageW(dialog, WM_HSCROLL, MAKEWPARAM(code, position),
                 reinterpret_cast<LPARAM>(item(dialog, slider)));
}

}  // namespace host
