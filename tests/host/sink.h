// A host's receiver of events.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <vector>

#include "com/com_ptr.h"

namespace host {

/// Answers to the event interface and to IDispatch; hands each event to a function of the test's own.
class Sink final : public IDispatch {
  public:
    using Handler = std::function<HRESULT(DISPID event, const DISPPARAMS& arguments)>;

    Sink(const IID& events, Handler handler) : events_(events), handler_(std::move(handler)) {}

    static vrx::ComPtr<Sink> make(const IID& events, Handler handler) {
        return vrx::ComPtr<Sink>(new Sink(events, std::move(handler)));
    }

    [[nodiscard]] ULONG references() const { return references_; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IDispatch || iid == events_ ? this : nullptr;
        if (*object) AddRef();
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*,
                        EXCEPINFO* exception, UINT*) override {
        const HRESULT result = handler_(event, *arguments);
        if (result == DISP_E_EXCEPTION && exception) {
            exception->bstrSource = SysAllocString(L"sink");
            exception->bstrDescription = SysAllocString(L"failed");
            exception->scode = E_FAIL;
        }
        return result;
    }

  private:
    virtual ~Sink() = default;

    const IID& events_;
    Handler handler_;
    ULONG references_ = 0;
};

/// The connection point of an object for its events; empty when it has none such.
inline vrx::ComPtr<IConnectionPoint> connectionPoint(IUnknown& object, const IID& events) {
    vrx::ComPtr<IConnectionPoint> point;
    if (const auto container = vrx::ComPtr<IUnknown>(&object).as<IConnectionPointContainer>()) {
        container->FindConnectionPoint(events, point.put());
    }
    return point;
}

}  // namespace host
