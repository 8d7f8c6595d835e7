// The control's picture of itself on any device, with or without a window.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include <optional>

#include "com/part.h"
#include "dialogs/control/container.h"
#include "dialogs/control/control_body.h"
#include "dialogs/control/designed_extent.h"

namespace vrx {

class ViewObjectPart final : public Part<IViewObject2> {
  public:
    ViewObjectPart(IUnknown& object, ControlBody& body, Container& container, const DesignedExtent& extent)
        : Part(object), body_(body), container_(container), extent_(extent) {}

    STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device, HDC deviceDc,
                      HDC dc, LPCRECTL bounds, LPCRECTL windowBounds,
                      BOOL(STDMETHODCALLTYPE* goOn)(ULONG_PTR), ULONG_PTR goOnValue) override;
    STDMETHODIMP GetColorSet(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device, HDC deviceDc,
                             LOGPALETTE** colors) override;
    STDMETHODIMP Freeze(DWORD aspect, LONG index, void* aspectInfo, DWORD* cookie) override;
    STDMETHODIMP Unfreeze(DWORD cookie) override;
    STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
    STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
    STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, LPSIZEL size) override;

    /// Tells who draws the control that it looks different now.
    void tellChanged();

  private:
    ControlBody& body_;
    Container& container_;
    const DesignedExtent& extent_;
    ComPtr<IAdviseSink> sink_;
    DWORD aspects_ = 0;
    DWORD flags_ = 0;
    std::optional<PictureScene> frozen_;
};

}  // namespace vrx
