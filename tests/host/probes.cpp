#include "probes.h"

#include <algorithm>

namespace probe {
namespace {

using vrx::ClassIdentity;

const ClassIdentity kEffects = {u"Effects", CLSID_ImageFX, IID__ImageFX};
const ClassIdentity kImage = {u"Image", CLSID_CVrxImage, IID__CVrxImage};
const ClassIdentity kPreview = {u"Preview", CLSID_VrxPreviewImg, IID__VrxPreviewImg};
const ClassIdentity kEvents = {u"Events", CLSID_CVrxPattern, IID__CVrxPattern, &DIID___CVrxHDR};

}  // namespace

Effects::Effects() : ObjectBase(kEffects) {}

STDMETHODIMP Effects::ScaleX(float Width, short* value) {
    return answer(value, [&] { return onScale(Width); });
}

STDMETHODIMP Effects::ScaleY(float Height, short* value) { return ScaleX(Height, value); }

STDMETHODIMP Effects::Blur_Buffer(VARIANT* Buffer, long, long) {
    return run([&] { onBuffer(*Buffer); });
}

STDMETHODIMP Effects::MedianCut_Buffer(VARIANT*, long, long) { return E_NOTIMPL; }

STDMETHODIMP Effects::ColorToBN(BSTR FileName, long PictureHDC, long ImageHandle, VARIANT_BOOL* TwoColor,
                                unsigned char* Threshold, VARIANT_BOOL* HoldProportion, long* Width,
                                long* Height, VARIANT_BOOL* value) {
    return answer(value, [&] {
        received = {vrx::toText(FileName),
                    PictureHDC,
                    ImageHandle,
                    *TwoColor != VARIANT_FALSE,
                    *Threshold,
                    *HoldProportion != VARIANT_FALSE,
                    *Width,
                    *Height};
        *TwoColor = *HoldProportion = VARIANT_TRUE;
        *Threshold = 7;
        *Width = 640;
        *Height = 480;
        if (failure) throw vrx::Error(*failure);
        return true;
    });
}

Image::Image() : ObjectBase(kImage) {}

STDMETHODIMP Image::Set_BMP(SAFEARRAY** r_arBMP, BmpInfo* r_BmpInfo) {
    return run([&] {
        arrayPlace = r_arBMP;
        recordPlace = r_BmpInfo;
        width = r_BmpInfo->biWidth;
        const vrx::ByteArrayView view(*r_arBMP);
        bytes.assign(view.bytes().begin(), view.bytes().end());
    });
}

STDMETHODIMP Image::Get_BMP(SAFEARRAY** r_arBMP, BmpInfo* r_BmpInfo) {
    return run([&] {
        arrayPlace = r_arBMP;
        recordPlace = r_BmpInfo;
        r_BmpInfo->biWidth = 77;
        const std::uint8_t left[] = {5, 6, 7};
        vrx::replaceArray(r_arBMP, vrx::makeByteArray(left));
    });
}

STDMETHODIMP Image::Save_BMP(BSTR* strOutPutFile, BSTR* value) {
    return answer(value, [&] {
        path = vrx::toText(*strOutPutFile);
        if (leavesPath) return std::u16string_view(u"saved");
        SysFreeString(*strOutPutFile);
        *strOutPutFile = SysAllocString(L"changed");
        return std::u16string_view(u"saved");
    });
}

Preview::Preview() : ObjectBase(kPreview) {}

STDMETHODIMP Preview::get_Picture(IPictureDisp** value) {
    return answer(value, [&] { return picture; });
}

STDMETHODIMP Preview::put_Picture(IPictureDisp* value) {
    return run([&] { picture = vrx::ComPtr<IPictureDisp>(value); });
}

STDMETHODIMP Preview::get_objHDR(_CVrxHDR** value) {
    return answer(value, [&] { return hdr; });
}

STDMETHODIMP Preview::putref_objHDR(_CVrxHDR* value) {
    return run([&] { hdr = vrx::ComPtr<_CVrxHDR>(value); });
}

STDMETHODIMP Preview::get_MousePointer(short* value) {
    return answer(value, [&] { return mousePointer; });
}

STDMETHODIMP Preview::put_MousePointer(short value) {
    return run([&] { mousePointer = value; });
}

Events::Events() : ObjectBase(kEvents) {}

Events::~Events() {
    if (onEnd) onEnd();
}

STDMETHODIMP Events::Load(BSTR*) {
    return run([&] { onLoad(); });
}

}  // namespace probe
