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

ComPtr<IPicture> pictureIn(const VARIANT& value) {
    const Variant object = convert(value, VT_DISPATCH);
    return ComPtr<IDispatch>(V_DISPATCH(&object.get())).as<IPicture>();
}

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
            listener_->pictureRefreshed(pictureIn(arguments.rgvarg[0]));
        }
    }

    HdrListener* listener_;
};

HdrConnection::HdrConnection(HdrListener& listener) : listener_(listener) {}

HdrConnection::~HdrConnection() { connect({}); }

void HdrConnection::connect(ComPtr<_CVrxHDR> object) {
    ComPtr<HdrSink> sink;
    ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
    if (object) {
        sink = ComPtr<HdrSink>(new HdrSink(listener_));
        const auto container = object.as<IConnectionPointContainer>();
        HRESULT result =
            container ? container->FindConnectionPoint(DIID___CVrxHDR, point.put()) : E_NOINTERFACE;
        if (SUCCEEDED(result)) result = point->Advise(sink.get(), &cookie);
        if (FAILED(result)) {
            throw platformError(result == E_OUTOFMEMORY ? Platform::OutOfMemory : Platform::InvalidCall);
        }
    }
    // The old object hears of it last: what it does then may connect another one.
    const ComPtr<HdrSink> oldSink = std::exchange(sink_, std::move(sink));
    const ComPtr<IConnectionPoint> oldPoint = std::exchange(point_, std::move(point));
    const DWORD oldCookie = std::exchange(cookie_, cookie);
    const ComPtr<_CVrxHDR> oldObject = std::exchange(object_, std::move(object));
    if (oldSink) oldSink->forget();
    if (oldPoint) oldPoint->Unadvise(oldCookie);
}

void HdrConnection::preview(const std::u16string& file) {
    if (!object_) throw platformError(Platform::ObjectNotSet);
    // What happens meanwhile may connect another one.
    const Held<ComPtr<_CVrxHDR>> object(object_);
    const Held<Bstr> name(toBstr(file));
    if (isLoading()) {
        if (const auto running = object->as<IHdrFriend>())
            return checkCall(running->setFileName(name->get()));
    }
    const Held<PreviewCount> count(previews_);
    checkCall((*object)->Get_Preview(name->get()));
}

bool HdrConnection::isLoading() const {
    VARIANT_BOOL loading = VARIANT_FALSE;
    return object_ && SUCCEEDED(object_->get_HDRLoading(&loading)) && loading != VARIANT_FALSE;
}

void HdrConnection::endLoad() const {
    if (!isLoading()) return;
    object_->EndHDR();
    // A load that is to end still takes the wish to begin again; after this it does not.
    object_->Init();
}

}  // namespace vrx
