#include "raster/CVrxImage.h"

#include "common/clipboard.h"
#include "common/modStartUp.h"
#include "common/reentry_guard.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {RasterImage::kClassName, CLSID_CVrxImage, IID__CVrxImage};

}  // namespace

CVrxImage::CVrxImage(const ImageDialogs& dialogs) : ObjectBase(kIdentity), dialogs_(dialogs) {}

STDMETHODIMP CVrxImage::get_REGKEY(BSTR* value) {
    return answer(value, [&] { return std::u16string_view(regKey_); });
}

STDMETHODIMP CVrxImage::put_REGKEY(BSTR value) {
    return run([&] { regKey_ = toText(value); });
}

STDMETHODIMP CVrxImage::get_DimX(long* value) {
    return answer(value, [&] { return image_.dimX(); });
}

STDMETHODIMP CVrxImage::get_DimY(long* value) {
    return answer(value, [&] { return image_.dimY(); });
}

STDMETHODIMP CVrxImage::Load(BSTR strPath, BSTR* value) {
    return answer(value, [&] { return chooseFile(strPath); });
}

STDMETHODIMP CVrxImage::Get_Picture(float srcPX, long srcPY, float srcDX, long srcDY, float destPX,
                                    long destPY, float destDX, long destDY, IPictureDisp** value) {
    return answer(value, [&] {
        try {
            return image_.picture(rectanglesOf(srcPX, srcPY, srcDX, srcDY, destPX, destPY, destDX, destDY));
        } catch (const Error&) {
            return image_.lastPicture();
        }
    });
}

STDMETHODIMP CVrxImage::See(BSTR strFileName) {
    return run([&] { recordErrors(RasterImage::kClassName, [&] { dialogs_.see(strFileName); }); });
}

STDMETHODIMP CVrxImage::Set_BMP(SAFEARRAY** r_arBMP, BmpInfo* r_BmpInfo) {
    if (!r_arBMP || !r_BmpInfo) return E_POINTER;
    return run([&] {
        const ByteArrayView bits(*r_arBMP);
        if (bits.rank() > 1) throw platformError(Platform::TypeMismatch);
        image_.set(bits.bytes(), *r_BmpInfo);
    });
}

STDMETHODIMP CVrxImage::Get_BMP(SAFEARRAY** r_arBMP, BmpInfo* r_BmpInfo) {
    if (!r_arBMP || !r_BmpInfo) return E_POINTER;
    return run([&] {
        replaceArray(r_arBMP, makeByteArray(image_.bits()));
        *r_BmpInfo = image_.info();
    });
}

STDMETHODIMP CVrxImage::Cls() {
    return run([&] { image_.clear(); });
}

STDMETHODIMP CVrxImage::Save(BSTR strInputFile) {
    return run([&] { recordErrors(RasterImage::kClassName, [&] { save(strInputFile); }); });
}

STDMETHODIMP CVrxImage::Convert_BMP_to_JPG(BSTR strOutPutFile, long lQuality, BSTR strInputFile) {
    return run([&] {
        recordErrors(RasterImage::kClassName, [&] {
            const Held<std::u16string> output(toText(strOutPutFile));
            const Held<std::u16string> input(toText(strInputFile));
            image_.convertToJpg(*output, lQuality, *input);
        });
    });
}

STDMETHODIMP CVrxImage::Save_BMP(BSTR* strOutPutFile, BSTR* value) {
    return answer(value, [&] {
        std::u16string written;
        recordErrors(RasterImage::kClassName, [&] {
            written = image_.saveBmp(strOutPutFile ? toText(*strOutPutFile) : std::u16string());
        });
        return written;
    });
}

STDMETHODIMP CVrxImage::Load_BMP(BSTR strFileName) {
    return run([&] { recordErrors(RasterImage::kClassName, [&] { image_.load(toText(strFileName)); }); });
}

std::u16string CVrxImage::chooseFile(BSTR suggestion) {
    const ReentryGuard open(loadDialogOpen_);
    return dialogs_.load(regKey_, suggestion);
}

/// Without a file the image itself, by way of its temporary one.
void CVrxImage::save(BSTR inputFile) {
    const ReentryGuard open(saveDialogOpen_);
    clearClipboard();
    dialogs_.save(regKey_, SysStringLen(inputFile) == 0 ? image_.saveBmp({}) : toText(inputFile));
}

}  // namespace vrx
