#include "dialogs/VrxPreviewImg.h"

#include "common/engine/error.h"
#include "common/message_loop.h"
#include "dialogs/dpi.h"
#include "dialogs/engine/preview_frame.h"
#include "dialogs/picture_size.h"
#include "dialogs/window_place.h"
#include "raster/picture_file.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"VrxPreviewImg", CLSID_VrxPreviewImg, IID__VrxPreviewImg,
                                 &DIID___VrxPreviewImg};

constexpr DISPID kClick = 1;

constexpr wchar_t kMousePointer[] = L"MousePointer";
constexpr wchar_t kMouseIcon[] = L"MouseIcon";

ComPtr<IPicture> pictureOf(IPictureDisp* picture) { return ComPtr<IPictureDisp>(picture).as<IPicture>(); }

/// A property of a bag; Empty where the bag has none.
Variant readProperty(IPropertyBag& bag, const wchar_t* name, VARTYPE type, IErrorLog* log) {
    Variant value;
    V_VT(&value.get()) = type;
    if (FAILED(bag.Read(name, &value.get(), log))) return {};
    return value;
}

}  // namespace

VrxPreviewImg::VrxPreviewImg() : ObjectBase(kIdentity), view_(*this), hdr_(*this) {}

VrxPreviewImg::~VrxPreviewImg() {
    if (!hdr_) return;
    hdr_.object()->EndHDR();
    static_cast<void>(doEvents());
}

void VrxPreviewImg::createInPlaceOf(HWND control) {
    const HWND dialog = GetParent(control);
    const HWND before = GetWindow(control, GW_HWNDPREV);
    const int id = GetDlgCtrlID(control);
    const RECT place = placeInParent(control);
    DestroyWindow(control);
    create(dialog, id, place);
    SetWindowTextW(window(), L"Preview");  // what screen readers call it
    if (owner_) SetWindowLongW(window(), GWL_STYLE, GetWindowLongW(window(), GWL_STYLE) | WS_TABSTOP);
    SetWindowPos(window(), before, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

STDMETHODIMP VrxPreviewImg::get_Picture(IPictureDisp** value) {
    return answer(value, [&] { return view_.picture().as<IPictureDisp>(); });
}

STDMETHODIMP VrxPreviewImg::put_Picture(IPictureDisp* value) {
    return run([&] { view_.setPicture(pictureOf(value)); });
}

STDMETHODIMP VrxPreviewImg::get_objHDR(_CVrxHDR** value) {
    return answer(value, [&] { return hdr_.object(); });
}

STDMETHODIMP VrxPreviewImg::putref_objHDR(_CVrxHDR* value) {
    return run([&] { hdr_.connect(ComPtr<_CVrxHDR>(value)); });
}

STDMETHODIMP VrxPreviewImg::Get_Prop(long Width, long Height) {
    return run([&] { frameFor(Width, Height); });
}

STDMETHODIMP VrxPreviewImg::put_HDRFile(VARIANT_BOOL value) {
    return run([&] { hdrFile_ = value != VARIANT_FALSE; });
}

STDMETHODIMP VrxPreviewImg::get_HDRFile(VARIANT_BOOL* value) {
    return answer(value, [&] { return hdrFile_; });
}

STDMETHODIMP VrxPreviewImg::put_File(BSTR value) {
    return run([&] { showFile(value); });
}

STDMETHODIMP VrxPreviewImg::get_File(BSTR* value) {
    return answer(value, [&] { return std::u16string_view(file_); });
}

STDMETHODIMP VrxPreviewImg::get_ImageWidth(long* value) {
    return answer(value, [&] { return screenSizeOf(view_.picture()).width; });
}

STDMETHODIMP VrxPreviewImg::get_ImageHeight(long* value) {
    return answer(value, [&] { return screenSizeOf(view_.picture()).height; });
}

STDMETHODIMP VrxPreviewImg::get_MousePointer(short* value) {
    return answer(value, [&] { return static_cast<short>(view_.pointer()); });
}

STDMETHODIMP VrxPreviewImg::put_MousePointer(short value) {
    return run([&] {
        view_.setPointer(static_cast<MousePointer>(value));
        pointerChanged_ = true;
    });
}

STDMETHODIMP VrxPreviewImg::get_MouseIcon(IPictureDisp** value) {
    return answer(value, [&] { return view_.icon().as<IPictureDisp>(); });
}

STDMETHODIMP VrxPreviewImg::putref_MouseIcon(IPictureDisp* value) {
    return run([&] {
        view_.setIcon(pictureOf(value));
        iconChanged_ = true;
    });
}

STDMETHODIMP VrxPreviewImg::FitPicture() {
    return run([&] { fitPicture(); });
}

STDMETHODIMP VrxPreviewImg::Get_Proportion(long* BoxWidth, long* BoxHeight, long* PictureWidth,
                                           long* PictureHeight) {
    if (!BoxWidth || !BoxHeight || !PictureWidth || !PictureHeight) return E_POINTER;
    return run([&] { place(*BoxWidth, *BoxHeight, *PictureWidth, *PictureHeight); });
}

STDMETHODIMP VrxPreviewImg::Load(IPropertyBag* bag, IErrorLog* log) {
    if (!bag) return E_POINTER;
    return run([&] {
        const Variant pointer = convert(readProperty(*bag, kMousePointer, VT_I2, log).get(), VT_I2);
        const Variant icon = readProperty(*bag, kMouseIcon, VT_DISPATCH, log);
        view_.setPointer(static_cast<MousePointer>(V_I2(&pointer.get())));
        const bool isObject = V_VT(&icon.get()) == VT_DISPATCH || V_VT(&icon.get()) == VT_UNKNOWN;
        view_.setIcon(isObject ? ComPtr<IUnknown>(V_UNKNOWN(&icon.get())).as<IPicture>()
                               : ComPtr<IPicture>());
        pointerChanged_ = iconChanged_ = false;
    });
}

STDMETHODIMP VrxPreviewImg::Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) {
    if (!bag) return E_POINTER;
    HRESULT written = S_OK;
    const HRESULT result = run([&] {
        if (saveAll || pointerChanged_) {
            Variant pointer = makeInteger(static_cast<short>(view_.pointer()));
            written = bag->Write(kMousePointer, &pointer.get());
        }
        if (SUCCEEDED(written) && (saveAll || iconChanged_)) {
            Variant icon;
            V_VT(&icon.get()) = VT_DISPATCH;
            V_DISPATCH(&icon.get()) = view_.icon().as<IPictureDisp>().detach();
            written = bag->Write(kMouseIcon, &icon.get());
        }
        if (clearDirty && SUCCEEDED(written)) pointerChanged_ = iconChanged_ = false;
    });
    return FAILED(result) ? result : written;
}

void VrxPreviewImg::viewResized() {
    if (lengthsOf(view_.picture()).width != 0) {
        fitPicture();
        return;
    }
    const SIZE inner = view_.size();
    view_.setFrame({0, 0, inner.cx, inner.cy});
}

/// The click may come in the object's last moments: an event's receiver may give it back.
void VrxPreviewImg::viewClicked() {
    run([&] {
        fire(kClick);
        if (owner_) owner_->previewClicked();
    });
}

void VrxPreviewImg::headerLoaded(std::int32_t dimX, std::int32_t dimY) {
    view_.setPicture({});
    if (dimX > 0 && dimY > 0) return frameFor(dimX, dimY);
    view_.setFrame({});
}

void VrxPreviewImg::pictureRefreshed(ComPtr<IPicture> picture) { view_.setPicture(std::move(picture)); }

void VrxPreviewImg::showFile(BSTR name) {
    file_ = toText(name);
    if (file_.empty()) return;
    try {
        if (hdrFile_) {
            hdr_.preview(file_);
            return;
        }
        view_.setPicture(loadPicture(file_));
        fitPicture();
    } catch (...) {
        file_ = kErrorName;
    }
}

/// Nothing without a picture.
void VrxPreviewImg::fitPicture() {
    const PictureLengths lengths = lengthsOf(view_.picture());
    if (lengths.width == 0 || lengths.height == 0) return;
    const SIZE inner = view_.size();
    const ScreenDpi dpi = screenDpi();
    place(twipsOfPixels(inner.cx, twipsPerPixel(dpi.x)), twipsOfPixels(inner.cy, twipsPerPixel(dpi.y)),
          lengths.width, lengths.height);
}

/// For a picture of this size in pixels.
void VrxPreviewImg::frameFor(std::int32_t width, std::int32_t height) {
    const SIZE inner = view_.size();
    const ScreenDpi dpi = screenDpi();
    const double x = twipsPerPixel(dpi.x);
    const double y = twipsPerPixel(dpi.y);
    place(twipsOfPixels(inner.cx, x), twipsOfPixels(inner.cy, y), twipsOfPixels(width, x),
          twipsOfPixels(height, y));
}

void VrxPreviewImg::place(std::int32_t boxWidth, std::int32_t boxHeight, std::int32_t width,
                          std::int32_t height) {
    const PreviewFrame frame = proportionalFrame(boxWidth, boxHeight, width, height);
    const ScreenDpi dpi = screenDpi();
    const double x = twipsPerPixel(dpi.x);
    const double y = twipsPerPixel(dpi.y);
    const LONG left = pixelsOfTwips(frame.left, x);
    const LONG top = pixelsOfTwips(frame.top, y);
    view_.setFrame({left, top, left + pixelsOfTwips(frame.width, x), top + pixelsOfTwips(frame.height, y)});
}

}  // namespace vrx
