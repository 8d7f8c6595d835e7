#include "dialogs/hdr_events.h"

#include <utility>

#include "com/counted.h"
#include "com/entry.h"
#include "com/error_info.h"
#include "com/variant_convert.h"
#include "ground/error.h"
#include "hdr/hdr_friend.h"

namespace vrx {
namespace {

/// Counts a preview while it runs.
class PreviewCount {
  public:
    explicit PreviewCount(int& count) : count_(count) { ++count_; }
    PreviewCount(const PreviewCount&) = delete;
    PreviewCount& operator=(const PreviewCount&) = delete;
    ~PreviewCount() { --count_; }

  private:
    int& count_;
};

}  // namespace

/// Lives as long as the object that holds it; forgets its listener when that is done.
class HdrSink final : public Counted<IDispatch, __CVrxHDR> {
  public:
    explicit HdrSink(HdrListener& listener) : listener_(&listener) {}

    void forget() { listener_ = nullptr; }

    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        const Entry entry;
        try {
            const HeldReference self{ComPtr<HdrSink>(this)};
            if (listener_ && arguments) receive(event, *arguments);
            return S_OK;
        } catch (...) {
            return E_FAIL;
        }
    }

  private:
    ~HdrSink() override = default;

    /// Arguments stand in reverse order.
    void receive(DISPID event, const DISPPARAMS& arguments) {
        if (event == kOnHeaderLoaded && arguments.cArgs == 2) {
            const Variant dimX = convert(arguments.rgvarg[1], VT_I4);
            const Variant dimY = convert(arguments.rgvarg[0], VT_I4);
            listener_->headerLoaded(V_I4(&dimX.get()), V_I4(&dimY.get()));
        } else if (event == kOnRefresh && arguments.cArgs == 1) {
            listener_->pictureRefreshed(interfaceOf<IPicture>(objectIn(arguments.rgvarg[0])));
        }
    }

    HdrListener* listener_;
};

HdrConnection::HdrConnection(HdrListener& listener) : listener_(listener) {}

/// The object may keep the sink beyond this.
HdrConnection::Followed::~Followed() {
    if (sink) sink->forget();
}

HRESULT HdrConnection::Followed::begin(HdrListener& listener) {
    sink = ComPtr<HdrSink>(new HdrSink(listener));
    const HeldReference container(interfaceOf<IConnectionPointContainer>(object.get()));
    if (!container) return E_NOINTERFACE;
    return callHost([&] {
        const HRESULT found = container->FindConnectionPoint(DIID___CVrxHDR, point.put());
        return SUCCEEDED(found) ? point->Advise(sink.get(), &cookie) : found;
    });
}

void HdrConnection::Followed::end() noexcept {
    if (sink) sink->forget();
    if (cookie == 0) return;
    const DWORD ended = std::exchange(cookie, 0);
    callHost([&] { return point->Unadvise(ended); });
}

void HdrConnection::connect(ComPtr<_CVrxHDR> object) {
    const Held<Followed> next;
    next->object = std::move(object);
    const HRESULT begun = next->object ? next->begin(listener_) : S_OK;
    if (FAILED(begun)) {
        throw platformError(begun == E_OUTOFMEMORY ? Platform::OutOfMemory : Platform::InvalidCall);
    }
    // The old object hears of it last: what it does then may connect another one.
    std::swap(followed_, *next);
    next->end();
}

void HdrConnection::preview(const std::u16string& file) {
    if (!object()) throw platformError(Platform::ObjectNotSet);
    // What happens meanwhile may connect another one.
    const HeldReference current{ComPtr<_CVrxHDR>(object())};
    const Held<Bstr> name(toBstr(file));
    if (isLoading()) {
        if (const auto running = interfaceOf<IHdrFriend>(current.get()))
            return checkCall(running->setFileName(name->get()));
    }
    const Held<PreviewCount> count(previews_);
    checkCall(callHost([&] { return current->Get_Preview(name->get()); }));
}

bool HdrConnection::isLoading() const {
    VARIANT_BOOL loading = VARIANT_FALSE;
    return object() && SUCCEEDED(callHost([&] { return object()->get_HDRLoading(&loading); })) &&
           loading != VARIANT_FALSE;
}

void HdrConnection::endLoad() const {
    if (!isLoading()) return;
    const HeldReference current{ComPtr<_CVrxHDR>(object())};
    callHost([&] {
        current->EndHDR();
        // A load that is to end still takes the wish to begin again; after this it does not.
        return current->Init();
    });
}

}  // namespace vrx
