// The control as its container manages it: site, size, verbs, and the end.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include "com/part.h"
#include "dialogs/control/container.h"
#include "dialogs/control/control_body.h"
#include "dialogs/control/designed_extent.h"
#include "dialogs/control/in_place.h"

namespace vrx {

class OleObjectPart final : public Part<IOleObject> {
  public:
    OleObjectPart(IUnknown& object, const CLSID& classId, ControlBody& body, Container& container,
                  DesignedExtent& extent, InPlace& inPlace)
        : Part(object),
          object_(object),
          classId_(classId),
          body_(body),
          container_(container),
          extent_(extent),
          inPlace_(inPlace) {}

    STDMETHODIMP SetClientSite(IOleClientSite* site) override;
    STDMETHODIMP GetClientSite(IOleClientSite** site) override;
    STDMETHODIMP SetHostNames(LPCOLESTR program, LPCOLESTR document) override;
    STDMETHODIMP Close(DWORD saving) override;
    STDMETHODIMP SetMoniker(DWORD which, IMoniker* moniker) override;
    STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
    STDMETHODIMP InitFromData(IDataObject* data, BOOL creation, DWORD reserved) override;
    STDMETHODIMP GetClipboardData(DWORD reserved, IDataObject** data) override;
    STDMETHODIMP DoVerb(LONG verb, LPMSG message, IOleClientSite* site, LONG index, HWND parent,
                        LPCRECT place) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
    STDMETHODIMP Update() override;
    STDMETHODIMP IsUpToDate() override;
    STDMETHODIMP GetUserClassID(CLSID* classId) override;
    STDMETHODIMP GetUserType(DWORD form, LPOLESTR* type) override;
    STDMETHODIMP SetExtent(DWORD aspect, SIZEL* size) override;
    STDMETHODIMP GetExtent(DWORD aspect, SIZEL* size) override;
    STDMETHODIMP Advise(IAdviseSink* sink, DWORD* cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumAdvise(IEnumSTATDATA** connections) override;
    STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
    STDMETHODIMP SetColorScheme(LOGPALETTE* colors) override;

  private:
    HRESULT perform(LONG verb, const PlaceHint& hint);
    HRESULT showProperties(HWND parent);
    void saveIfChanged();

    IUnknown& object_;
    const CLSID& classId_;
    ControlBody& body_;
    Container& container_;
    DesignedExtent& extent_;
    InPlace& inPlace_;
    ComPtr<IOleAdviseHolder> listeners_;
};

}  // namespace vrx
