// Image effects: the published class around blur, smoothing and the black-and-white rendering.
#pragma once

#include "VrxCommon.h"
#include "com/object_base.h"

namespace vrx {

class ImageFX final : public ObjectBase<_ImageFX> {
  public:
    ImageFX();

    STDMETHODIMP ScaleX(float Width, short* value) override;
    STDMETHODIMP ScaleY(float Height, short* value) override;
    STDMETHODIMP Blur_Buffer(VARIANT* Buffer, long DimX, long DimY) override;
    STDMETHODIMP MedianCut_Buffer(VARIANT* Buffer, long DimX, long DimY) override;
    STDMETHODIMP ColorToBN(BSTR FileName, long PictureHDC, long ImageHandle, VARIANT_BOOL* TwoColor,
                           unsigned char* Threshold, VARIANT_BOOL* HoldProportion, long* Width, long* Height,
                           VARIANT_BOOL* value) override;

  private:
    ~ImageFX() override = default;
};

}  // namespace vrx
