#include "dialogs/VrxPreviewImg.h"

#include <utility>

#include "com/hresult_failure.h"
#include "common/message_loop.h"
#include "dialogs/control/property_bag.h"
#include "dialogs/dpi.h"
#include "dialogs/engine/preview_frame.h"
#include "dialogs/picture_size.h"
#include "dialogs/window_place.h"
#include "ground/error.h"
#include "raster/picture_file.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"VrxPreviewImg", CLSID_VrxPreviewImg, IID__VrxPreviewImg,
                                 &DIID___VrxPreviewImg};

constexpr DISPID kClick = 1;
constexpr DISPID kMousePointer = 8;
constexpr DISPID kMouseIcon = 9;

// What screen readers call a preview that its container gives no name.
constexpr wchar_t kName[] = L"Preview";

/// Of a container whose texts are read from right to left.
bool isRightToLeft(LCID locale) {
    const WORD language = PRIMARYLANGID(LANGIDFROMLCID(locale));
    return language == LANG_ARABIC || language == LANG_HEBREW || language == LANG_FARSI ||
           language == LANG_URDU;
}

}  // namespace

VrxPreviewImg::VrxPreviewImg()
    : ObjectBase(kIdentity),
      ole_(kIdentity, static_cast<_VrxPreviewImg&>(*this), *this, *this),
      view_(*this),
      hdr_(*this) {
    view_.setSize(ole_.designedSize());
}

void VrxPreviewImg::letGo() noexcept {
    if (hdr_) {
        callHost([&] { return hdr_.object()->EndHDR(); });
        static_cast<void>(doEvents());
    }
    hdr_.end();
    view_.destroy();
}

void VrxPreviewImg::createInPlaceOf(HWND control) {
    const HWND dialog = GetParent(control);
    const HWND before = GetWindow(control, GW_HWNDPREV);
    const int id = GetDlgCtrlID(control);
    const RECT place = placeInParent(control);
    DestroyWindow(control);
    create(dialog, id, place);
    SetWindowTextW(window(), kName);
    if (owner_) SetWindowLongW(window(), GWL_STYLE, GetWindowLongW(window(), GWL_STYLE) | WS_TABSTOP);
    SetWindowPos(window(), before, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

STDMETHODIMP VrxPreviewImg::get_Picture(IPictureDisp** value) {
    return answer(value, [&] { return interfaceOf<IPictureDisp>(view_.picture().get()); });
}

STDMETHODIMP VrxPreviewImg::put_Picture(IPictureDisp* value) {
    return run([&] { view_.setPicture(interfaceOf<IPicture>(value)); });
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
    return answer(value, [&] { return static_cast<short>(kept_.pointer); });
}

STDMETHODIMP VrxPreviewImg::put_MousePointer(short value) {
    return change(kMousePointer, pointerChanged_, [&] { kept_.pointer = static_cast<MousePointer>(value); });
}

STDMETHODIMP VrxPreviewImg::get_MouseIcon(IPictureDisp** value) {
    return answer(value, [&] { return interfaceOf<IPictureDisp>(kept_.icon.get()); });
}

STDMETHODIMP VrxPreviewImg::putref_MouseIcon(IPictureDisp* value) {
    return change(kMouseIcon, iconChanged_, [&] { kept_.icon = interfaceOf<IPicture>(value); });
}

/// S_FALSE where a receiver of property changes refuses it.
template <class Assign>
HRESULT VrxPreviewImg::change(DISPID property, bool& changed, Assign assign) {
    bool allowed = false;
    const HRESULT result = run([&] {
        allowed = mayChange(property);
        if (!allowed) return;
        assign();
        changed = true;
        showProperties();
        tellChanged(property);
    });
    return result == S_OK && !allowed ? S_FALSE : result;
}

STDMETHODIMP VrxPreviewImg::FitPicture() {
    return run([&] { fitPicture(); });
}

STDMETHODIMP VrxPreviewImg::Get_Proportion(long* BoxWidth, long* BoxHeight, long* PictureWidth,
                                           long* PictureHeight) {
    if (!BoxWidth || !BoxHeight || !PictureWidth || !PictureHeight) return E_POINTER;
    return run([&] { place(*BoxWidth, *BoxHeight, *PictureWidth, *PictureHeight); });
}

STDMETHODIMP VrxPreviewImg::InitNew() {
    return run([&] { setKeptProperties({}); });
}

STDMETHODIMP VrxPreviewImg::Load(IPropertyBag* bag, IErrorLog* log) {
    if (!bag) return E_POINTER;
    HRESULT refused = S_OK;
    const HRESULT result = run([&] {
        try {
            setKeptProperties(readProperties(*bag, log));
        } catch (const HresultFailure& failure) {
            refused = failure.code;
        }
    });
    return FAILED(result) ? result : refused;
}

STDMETHODIMP VrxPreviewImg::Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) {
    if (!bag) return E_POINTER;
    HRESULT written = S_OK;
    const HRESULT result = run([&] {
        if (saveAll || pointerChanged_) written = writePointer(*bag, kept_.pointer);
        if (SUCCEEDED(written) && (saveAll || iconChanged_)) written = writeIcon(*bag, kept_.icon);
        if (clearDirty && SUCCEEDED(written)) markSaved();
    });
    return FAILED(result) ? result : written;
}

void VrxPreviewImg::setKeptProperties(KeptProperties properties) {
    std::swap(kept_, properties);
    markSaved();
    showProperties();
}

void VrxPreviewImg::showProperties() {
    view_.setPointer(kept_.pointer);
    view_.setIcon(kept_.icon);
}

void VrxPreviewImg::createWindow(HWND parent, const RECT& place) {
    view_.create(parent, 0, place, WS_TABSTOP | PictureView::kEnterClicks);
    if (window()) SetWindowTextW(window(), name().c_str());
}

std::wstring VrxPreviewImg::name() const {
    const std::wstring& told = ole_.container().ambient().displayName;
    return told.empty() ? kName : told;
}

/// What a designer sees: the control's name and, below it, its size in the units of the form.
std::wstring VrxPreviewImg::label() const {
    const std::wstring size = ole_.container().sizeText(ole_.extent());
    return size.empty() ? name() : name() + L'\n' + size;
}

void VrxPreviewImg::ambientChanged() {
    const Ambient& ambient = ole_.container().ambient();
    const COLORREF background = ambient.backColor.value_or(GetSysColor(COLOR_APPWORKSPACE));
    const COLORREF foreground = ambient.foreColor.value_or(GetSysColor(COLOR_WINDOWTEXT));
    view_.setLook(background, foreground, ambient.userMode ? std::wstring() : label(),
                  isRightToLeft(ambient.locale));
    if (window()) SetWindowTextW(window(), name().c_str());
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
        if (!ole_.takesEvents()) return;
        fire(kClick);
        if (owner_) owner_->previewClicked();
    });
}

/// On a form that is being used the control takes the keyboard as others do.
void VrxPreviewImg::viewPressed() {
    if (ole_.container().site() && ole_.container().ambient().userMode && window()) SetFocus(window());
}

/// Who draws the control himself wants to know; a window is drawn by itself.
void VrxPreviewImg::viewChanged() {
    if (!window()) ole_.viewChanged();
}

/// The container may give back the control when it hears of the new picture.
void VrxPreviewImg::headerLoaded(std::int32_t dimX, std::int32_t dimY) {
    run([&] {
        view_.setPicture({});
        if (dimX > 0 && dimY > 0) return frameFor(dimX, dimY);
        view_.setFrame({});
    });
}

void VrxPreviewImg::pictureRefreshed(ComPtr<IPicture> picture) {
    run([&] { view_.setPicture(std::move(picture)); });
}

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
