// The dialog of CVrxHDR.Save over a picture, for tests.
#pragma once

#include <algorithm>

#include "hdr_host.h"
#include "save_dialog_test.h"

/// Rows of the list of types.
enum SaveHdrType { kHdr, kJpg, kBmp };

/// Sixteen stops darker, so that the exposure that the dialog begins with shows it.
inline host::RgbePicture darkPicture(int width, int height) {
    host::RgbePicture picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            picture.at(x, y).e = static_cast<std::uint8_t>(picture.at(x, y).e - 16);
    }
    return picture;
}

class SaveHdr : public SaveDialogTest {
  protected:
    SaveHdr() : SaveDialogTest(L"Save HDR", L"\\HDRSaver") {}

    void SetUp() override {
        SaveDialogTest::SetUp();
        EXPECT_EQ(hdr_->put_REGKEY(vrx::Bstr(SysAllocString(key_.c_str())).get()), S_OK);
        EXPECT_EQ(hdr_.set(picture_), S_OK);
    }
    [[nodiscard]] HRESULT save() const override { return hdr_->Save(nullptr); }

    /// What Save_HDR writes.
    [[nodiscard]] host::FileBytes radianceFile() const {
        const host::ThrowawayFolder folder;
        EXPECT_EQ(hdr_.save(folder / L"expected.hdr"), S_OK);
        return host::readBytes(folder / L"expected.hdr");
    }
    /// What Convert_HDR_to_BMP writes.
    [[nodiscard]] host::FileBytes bitmapFile() const {
        const host::ThrowawayFolder folder;
        EXPECT_EQ(hdr_.convert(folder / L"expected.bmp"), S_OK);
        return host::readBytes(folder / L"expected.bmp");
    }
    [[nodiscard]] host::FileBytes bytes(const std::wstring& name) const {
        return host::readBytes(folder_ / name);
    }
    [[nodiscard]] float exposure() const {
        float value = -1;
        hdr_->get_Exposure(&value);
        return value;
    }
    [[nodiscard]] float gamma() const {
        float value = -1;
        hdr_->get_Gamma(&value);
        return value;
    }
    /// A picture of one colour fills the preview's width; its colour is that of the middle.
    static bool previewShows(const OpenSaveDialog& dialog, const host::FileBytes& bitmap) {
        return host::eventually([&] {
            const host::Pixels shown = host::shownIn(dialog.control(IDC_VRXPREVIMG));
            const host::Pixels middle = host::partOf(shown, shown.width / 2, shown.height / 2, 1, 1);
            return std::equal(bitmap.begin(), bitmap.begin() + 3, middle.bytes.begin());
        });
    }

    host::Hdr hdr_;
    const host::RgbePicture picture_ = darkPicture(40, 30);
};
