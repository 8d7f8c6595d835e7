#include "hdr/CVrxHDR.h"

#include <array>
#include <new>

#include "common/clipboard.h"
#include "common/file_io.h"
#include "common/message_box.h"
#include "common/modStartUp.h"
#include "common/reentry_guard.h"
#include "ground/blanks.h"
#include "hdr/engine/hdr_error.h"
#include "raster/raster_image.h"

namespace vrx {
namespace {

constexpr char16_t kClassName[] = u"CVrxHDR";
const ClassIdentity kIdentity = {kClassName, CLSID_CVrxHDR, IID__CVrxHDR, &DIID___CVrxHDR};

/// The shape of a pixel store as a host's array.
std::array<Bounds, 3> boundsOf(std::int32_t dimX, std::int32_t dimY) {
    return {{{0, dimX}, {0, dimY}, {0, kRgbeComponents - 1}}};
}

std::int32_t oneMore(std::int32_t size) {
    if (size == INT32_MAX) throw platformError(Platform::OutOfMemory);
    return size + 1;
}

/// Why a picture was not written, for the user.
std::u16string reasonOf(const Error& error) {
    if (error.number == fileError().number) return u"The picture does not fit the file format";
    return error.description;
}

}  // namespace

CVrxHDR::CVrxHDR(const HdrDialogs& dialogs)
    : ObjectBase(kIdentity), dialogs_(dialogs), loader_(picture_, *this) {}

STDMETHODIMP CVrxHDR::get_REGKEY(BSTR* value) {
    return answer(value, [&] { return std::u16string_view(regKey_); });
}

STDMETHODIMP CVrxHDR::put_REGKEY(BSTR value) {
    return run([&] { regKey_ = toText(value); });
}

STDMETHODIMP CVrxHDR::get_HDRLoading(VARIANT_BOOL* value) {
    return answer(value, [&] { return loader_.loading(); });
}

STDMETHODIMP CVrxHDR::get_Gamma(float* value) {
    return answer(value, [&] { return picture_.gamma(); });
}

STDMETHODIMP CVrxHDR::put_Gamma(float value) {
    return run([&] { picture_.setGamma(value); });
}

STDMETHODIMP CVrxHDR::get_Exposure(float* value) {
    return answer(value, [&] { return picture_.exposure(); });
}

STDMETHODIMP CVrxHDR::put_Exposure(float value) {
    return run([&] { setExposure(value); });
}

STDMETHODIMP CVrxHDR::get_AutoExposition(VARIANT_BOOL* value) {
    return answer(value, [&] { return picture_.autoExposition(); });
}

STDMETHODIMP CVrxHDR::put_AutoExposition(VARIANT_BOOL value) {
    return run([&] {
        picture_.setAutoExposition(value != VARIANT_FALSE);
        loader_.parameterChanged();
    });
}

STDMETHODIMP CVrxHDR::get_AutoExpositionType(Enum_AutoExpositionType* value) {
    return answer(value, [&] { return picture_.expositionType(); });
}

STDMETHODIMP CVrxHDR::put_AutoExpositionType(Enum_AutoExpositionType value) {
    return run([&] {
        picture_.setExpositionType(static_cast<ExpositionType>(numberOf(value)));
        loader_.parameterChanged();
    });
}

STDMETHODIMP CVrxHDR::get_DimX(long* value) {
    return answer(value, [&] { return picture_.dimX(); });
}

STDMETHODIMP CVrxHDR::get_DimY(long* value) {
    return answer(value, [&] { return picture_.dimY(); });
}

STDMETHODIMP CVrxHDR::Get_Picture(float srcPX, long srcPY, float srcDX, long srcDY, float destPX, long destPY,
                                  float destDX, long destDY, IPictureDisp** value) {
    return answer(value, [&] {
        const auto part = rectanglesOf(srcPX, srcPY, srcDX, srcDY, destPX, destPY, destDX, destDY);
        return part ? pictureOf(*part) : wholePicture();
    });
}

STDMETHODIMP CVrxHDR::Set_HDR(VARIANT* r_arHDR) {
    if (!r_arHDR) return E_POINTER;
    return run([&] {
        if (holdsArray(*r_arHDR)) takePixels(*r_arHDR);
    });
}

STDMETHODIMP CVrxHDR::Get_HDR(VARIANT* r_arHDR) {
    if (!r_arHDR) return E_POINTER;
    return run(
        [&] { putVariant(*r_arHDR, picture_.store().empty() ? nothingFor(*r_arHDR) : copyOfPixels()); });
}

STDMETHODIMP CVrxHDR::Load(BSTR strPath, BSTR* value) {
    return answer(value, [&] { return chooseFile(strPath); });
}

STDMETHODIMP CVrxHDR::See(BSTR v_strFileName, float v_Exposure, float v_Gamma) {
    return run([&] {
        recordErrors(kClassName, [&] {
            setExposure(v_Exposure);
            picture_.setGamma(v_Gamma);
            dialogs_.see(*this, v_strFileName);
        });
    });
}

STDMETHODIMP CVrxHDR::Save(BSTR) {
    return run([&] { recordErrors(kClassName, [&] { save(); }); });
}

STDMETHODIMP CVrxHDR::Convert_HDR_to_BMP(BSTR strOutPutFile, float Exposure, float Gamma) {
    return run([&] { convertToBmp(toText(strOutPutFile), Exposure, Gamma); });
}

STDMETHODIMP CVrxHDR::Load_HDR(BSTR strFileName, VARIANT_BOOL* bInvert) {
    const bool invert = !bInvert || *bInvert != VARIANT_FALSE;
    return run([&] {
        recordErrors(kClassName, [&] {
            const Held<HdrLoad> load(loader_, toText(strFileName));
            load->load(invert);
        });
    });
}

STDMETHODIMP CVrxHDR::Save_HDR(BSTR strOutFileName, BSTR* value) {
    return answer(value, [&] {
        const Held<std::u16string> path(toText(strOutFileName));
        recordErrors(kClassName, [&] {
            loader_.cancel();
            if (!isBlank(*path)) saveFile(*path);
        });
        return isBlank(*path) ? std::u16string() : *path;
    });
}

STDMETHODIMP CVrxHDR::Get_Preview(BSTR strFileName) {
    return run([&] {
        recordErrors(kClassName, [&] {
            breaks_ = {};
            const Held<HdrLoad> load(loader_, toText(strFileName));
            load->preview();
        });
    });
}

STDMETHODIMP CVrxHDR::Get_BMP() {
    return run([&] {
        picture_.paint();
        refresh();
    });
}

STDMETHODIMP CVrxHDR::Get_Compo(long X, long Y, long ICompo, float* value) {
    return answer(value, [&] { return picture_.component(X, Y, ICompo); });
}

STDMETHODIMP CVrxHDR::EndHDR() {
    return run([&] { loader_.end(); });
}

STDMETHODIMP CVrxHDR::Get_Pixel(long X, long Y, VARIANT* sRed, VARIANT* sGreen, VARIANT* sBlu) {
    if (!sRed || !sGreen || !sBlu) return E_POINTER;
    return run([&] { readPixel(X, Y, *sRed, *sGreen, *sBlu); });
}

STDMETHODIMP CVrxHDR::Cls() {
    return run([&] { picture_.clear(); });
}

STDMETHODIMP CVrxHDR::Init() {
    return run([&] { loader_.cancel(); });
}

STDMETHODIMP CVrxHDR::setFileName(BSTR name) {
    return run([&] { loader_.setFileName(toText(name)); });
}

Bytes CVrxHDR::readFile(const std::u16string& name) { return readFileAndZero(name); }

void CVrxHDR::headerLoaded(std::int32_t dimX, std::int32_t dimY) {
    fire(kOnHeaderLoaded, std::array{makeLong(dimX).release(), makeLong(dimY).release()});
    endIfAbandoned();
}

/// The preview bitmap onto the surface, and the surface's picture to the host.
void CVrxHDR::refresh() {
    if (!isHeard()) return endIfAbandoned();
    surface_.show(picture_.preview(), picture_.painting());
    const Held<ComPtr<IPictureDisp>> picture(surface_.picture());
    VARIANT argument{};
    V_VT(&argument) = VT_DISPATCH;
    V_DISPATCH(&argument) = picture->get();
    fire(kOnRefresh, std::array{argument});
    endIfAbandoned();
}

void CVrxHDR::finished() {
    fire(kOnFinish);
    endIfAbandoned();
}

void CVrxHDR::yield() {
    if (!breaks_.doEvents()) loader_.cancel();
    endIfAbandoned();
}

/// A host that has given back its last reference wants nothing more of a load.
void CVrxHDR::endIfAbandoned() {
    if (isAbandoned()) loader_.cancel();
}

void CVrxHDR::setExposure(float exposure) {
    picture_.setExposure(exposure);
    loader_.parameterChanged();
}

std::u16string CVrxHDR::chooseFile(BSTR suggestion) {
    const ReentryGuard open(loadDialogOpen_);
    return dialogs_.load(*this, regKey_, suggestion);
}

void CVrxHDR::save() {
    const ReentryGuard open(saveDialogOpen_);
    clearClipboard();
    dialogs_.save(*this, regKey_);
}

void CVrxHDR::takePixels(const VARIANT& pixels) {
    const ByteArrayView array(pixels);
    const auto shape = [&](unsigned dimension) { return array.bounds(dimension); };
    if (array.rank() != 3 || shape(0).lower != 0 || shape(1).lower != 0 || shape(2).lower != 0 ||
        shape(0).upper < 0 || shape(1).upper < 0 || shape(2).upper != kRgbeComponents - 1) {
        throw platformError(Platform::SubscriptOutOfRange);
    }
    picture_.setStore(RgbeStore(shape(0).upper, shape(1).upper, array.bytes()));
}

Variant CVrxHDR::copyOfPixels() const {
    const RgbeStore& store = picture_.store();
    return makeArray(copyOfBytes(boundsOf(store.dimX(), store.dimY()), store.data()));
}

void CVrxHDR::convertToBmp(const std::u16string& path, float exposure, float gamma) {
    const BitmapRows rows = picture_.convert(exposure, gamma);
    recordErrors(RasterImage::kClassName, [&] { RasterImage::saveRows(path, rows); });
}

/// Every failure of writing is the same error to the host; the user is told the reason.
void CVrxHDR::saveFile(const std::u16string& path) const {
    std::u16string message = failureOfWriting(path);
    if (message.empty()) return;
    message.insert(0, u"Cannot write " + path + u": ");
    showMessage(std::move(message), MB_ICONEXCLAMATION);
    throw fileError();
}

/// Empty when the file is written.
std::u16string CVrxHDR::failureOfWriting(const std::u16string& path) const {
    try {
        writeFile(path);
        return {};
    } catch (const Error& error) {
        return reasonOf(error);
    } catch (const std::bad_alloc&) {
        return platformError(Platform::OutOfMemory).description;
    }
}

void CVrxHDR::writeFile(const std::u16string& path) const {
    FileReplacement file(path);
    picture_.encode(file);
    file.commit();
}

/// The whole preview bitmap in its own size.
ComPtr<IPictureDisp> CVrxHDR::wholePicture() {
    surface_.show(picture_.preview(), picture_.painting(), oneMore(picture_.dimX()),
                  oneMore(picture_.dimY()));
    return surface_.picture();
}

ComPtr<IPictureDisp> CVrxHDR::pictureOf(const PictureRectangles& part) {
    const Bitmap24& preview = picture_.preview();
    surface_.resize(part.target.width, part.target.height);
    if (!preview.empty()) {
        BITMAPINFO info{};
        info.bmiHeader =
            header24(static_cast<std::int32_t>(preview.width()), static_cast<std::int32_t>(preview.height()));
        surface_.stretch(part.target, part.source, info, preview.data());
    }
    return surface_.picture();
}

void CVrxHDR::readPixel(std::int32_t x, std::int32_t y, VARIANT& red, VARIANT& green, VARIANT& blue) const {
    const std::array<VARIANT*, 3> targets{&red, &green, &blue};
    const auto percent = picture_.percentAt(x, y);
    // The host's code may run below, when a variable gives an object of its back.
    const bool built = picture_.tablesBuilt();
    if (built && !percent) return;
    for (std::size_t c = 0; c < targets.size(); ++c) {
        try {
            putVariant(*targets[c], built ? makeDouble((*percent)[c]) : makeInteger(-1));
        } catch (const Error&) {
            // A variable that cannot take the value keeps its own; the next one still gets its value.
        }
    }
}

}  // namespace vrx
