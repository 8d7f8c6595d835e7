// An image object of a test, and short ways to use it.
#pragma once

#include <gtest/gtest.h>

#include "VrxCommon.h"
#include "host.h"
#include "picture_pixels.h"
#include "throwaway_folder.h"

namespace host {

inline BmpInfo info24(long width, long height) {
    BmpInfo info{};
    info.biSize = 40;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    return info;
}

inline const FileBytes kBits = {1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0};  // 2 x 2

class ImageFixture : public testing::Test {
  protected:
    const ThrowawayFolder folder_;
    const std::wstring temporary_ = programFolder() + L"\\ImageTemp.bmp";
    HMODULE const library_ = GetModuleHandleW(component().path().c_str());
    const vrx::ComPtr<_CVrxImage> image_ = create(L"VrxCommon.CVrxImage").as<_CVrxImage>();

    void SetUp() override { ASSERT_TRUE(image_); }

    HRESULT set(const FileBytes& bits, BmpInfo info) const {
        vrx::SafeArray array = vrx::makeByteArray(bits);
        SAFEARRAY* typed = array.get();
        return image_->Set_BMP(&typed, &info);
    }
    /// The bits that Get_BMP hands out, and its record.
    FileBytes get(BmpInfo* info = nullptr) const {
        BmpInfo record{};
        SAFEARRAY* typed = nullptr;
        EXPECT_EQ(image_->Get_BMP(&typed, info ? info : &record), S_OK);
        const vrx::SafeArray owned(typed);
        const vrx::ByteArrayView view(typed);
        EXPECT_EQ(view.rank(), 1u);
        return {view.bytes().begin(), view.bytes().end()};
    }
    [[nodiscard]] long dim(bool x) const {
        long value = -1;
        EXPECT_EQ(x ? image_->get_DimX(&value) : image_->get_DimY(&value), S_OK);
        return value;
    }
    HRESULT load(const std::wstring& path) const {
        return image_->Load_BMP(vrx::Bstr(SysAllocString(path.c_str())).get());
    }
    [[nodiscard]] Pixels picture(float srcX, long srcY, float srcWidth, long srcHeight, float x, long y,
                                 float width, long height) const {
        vrx::ComPtr<IPictureDisp> made;
        EXPECT_EQ(image_->Get_Picture(srcX, srcY, srcWidth, srcHeight, x, y, width, height, made.put()),
                  S_OK);
        return pixelsOf(*made);
    }
    HRESULT save(const std::wstring& path, std::wstring* written = nullptr) const {
        vrx::Bstr name(SysAllocString(path.c_str()));
        BSTR argument = name.release();
        vrx::Bstr result;
        const HRESULT saved = image_->Save_BMP(&argument, result.put());
        EXPECT_EQ(std::wstring(argument), path) << "the argument stays";
        SysFreeString(argument);
        if (written) *written = result ? result.get() : L"";
        return saved;
    }
    /// Pixels of a file written, without its 54 bytes of headers.
    [[nodiscard]] static FileBytes pixelsIn(const std::wstring& path) {
        const FileBytes bytes = readBytes(path);
        return bytes.size() < 54 ? FileBytes{} : FileBytes(bytes.begin() + 54, bytes.end());
    }
};

}  // namespace host
