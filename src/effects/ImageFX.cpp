#include "effects/ImageFX.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"ImageFX", CLSID_ImageFX, IID__ImageFX};

}  // namespace

ImageFX::ImageFX() : ObjectBase(kIdentity) {}

STDMETHODIMP ImageFX::ScaleX(float, short* value) { return refuse(value); }

STDMETHODIMP ImageFX::ScaleY(float, short* value) { return refuse(value); }

STDMETHODIMP ImageFX::Blur_Buffer(VARIANT*, long, long) { return refuse(); }

STDMETHODIMP ImageFX::MedianCut_Buffer(VARIANT*, long, long) { return refuse(); }

STDMETHODIMP ImageFX::ColorToBN(BSTR, long, long, VARIANT_BOOL*, unsigned char*, VARIANT_BOOL*, long*, long*,
                                VARIANT_BOOL* value) {
    return refuse(value);
}

}  // namespace vrx
