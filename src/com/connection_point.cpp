#include "com/connection_point.h"

#include <olectl.h>

#include <new>
#include <utility>
#include <vector>

#include "com/entry.h"
#include "com/enumerator.h"
#include "com/variant_convert.h"
#include "ground/error.h"

namespace vrx {
namespace {

constexpr unsigned kDeepestNesting = 32;

struct Connection {
    DWORD cookie;
    ComPtr<IUnknown> sink;

    [[nodiscard]] CONNECTDATA item() const {
        sink->AddRef();
        return {sink.get(), cookie};
    }
};

struct Point {
    ComPtr<IConnectionPoint> point;

    [[nodiscard]] IConnectionPoint* item() const {
        point->AddRef();
        return point.get();
    }
};

std::vector<Connection> connectionsTo(const std::map<DWORD, ComPtr<IUnknown>>& sinks) {
    std::vector<Connection> connections;
    for (const auto& [cookie, sink] : sinks) connections.push_back({cookie, sink});
    return connections;
}

/// An event on its way to the sinks of that moment.
class Firing {
  public:
    Firing(unsigned& depth, std::vector<Connection> sinks, std::span<const VARIANT> arguments)
        : depth_(depth), sinks_(std::move(sinks)) {
        if (depth_ == kDeepestNesting) throw platformError(Platform::OutOfStackSpace);
        for (const VARIANT& argument : arguments) arguments_.emplace_back(argument);
        ++depth_;
    }
    Firing(const Firing&) = delete;
    Firing& operator=(const Firing&) = delete;
    ~Firing() { --depth_; }

    [[nodiscard]] const std::vector<Connection>& sinks() const { return sinks_; }
    /// For each sink anew: a sink may change what it gets.
    [[nodiscard]] DISPPARAMS makeArguments() {
        passed_.clear();
        for (std::size_t i = arguments_.size(); i > 0; --i) passed_.push_back(arguments_[i - 1].get());
        return {passed_.data(), nullptr, static_cast<UINT>(passed_.size()), 0};
    }

  private:
    unsigned& depth_;
    std::vector<Connection> sinks_;
    std::vector<Variant> arguments_;
    std::vector<VARIANTARG> passed_;
};

/// Calls one sink. What it answers is its own affair; the texts of its failure are ours to free.
void callSink(IDispatch& sink, DISPID event, DISPPARAMS arguments) {
    const HostCall host;
    EXCEPINFO exception{};
    UINT badArgument = 0;
    sink.Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments, nullptr, &exception,
                &badArgument);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

}  // namespace

void ConnectionPoint::fire(DISPID event, std::span<const VARIANT> arguments) {
    const Held<Firing> firing(depth_, connectionsTo(sinks_), arguments);
    for (const Connection& connection : firing->sinks()) {
        if (!sinks_.contains(connection.cookie)) continue;
        callSink(static_cast<IDispatch&>(*connection.sink.get()), event, firing->makeArguments());
    }
}

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = iid == IID_IUnknown || iid == IID_IConnectionPoint ? this : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ConnectionPoint::AddRef() { return owner_.AddRef(); }
STDMETHODIMP_(ULONG) ConnectionPoint::Release() { return owner_.Release(); }

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* iid) {
    if (!iid) return E_POINTER;
    *iid = iid_;
    return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
    if (!container) return E_POINTER;
    *container = &owner_;
    owner_.AddRef();
    return S_OK;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
    if (!cookie) return E_POINTER;
    *cookie = 0;
    if (!sink) return E_POINTER;
    ComPtr<IUnknown> events;
    if (FAILED(sink->QueryInterface(iid_, reinterpret_cast<void**>(events.put()))))
        return CONNECT_E_CANNOTCONNECT;
    try {
        sinks_.emplace(lastCookie_ + 1, std::move(events));
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    *cookie = ++lastCookie_;
    return S_OK;
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) {
    // The node dies after the map has let go of it: releasing the sink may come back here.
    const auto node = sinks_.extract(cookie);
    return node ? S_OK : CONNECT_E_NOCONNECTION;
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** connections) {
    if (!connections) return E_POINTER;
    *connections = nullptr;
    try {
        return Enumerator<IEnumConnections, CONNECTDATA, Connection>::create(connectionsTo(sinks_), 0,
                                                                             connections);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

STDMETHODIMP EventSource::EnumConnectionPoints(IEnumConnectionPoints** points) {
    if (!points) return E_POINTER;
    *points = nullptr;
    try {
        std::vector<Point> list;
        for (ConnectionPoint* point : points_) list.push_back(Point{ComPtr<IConnectionPoint>(point)});
        return Enumerator<IEnumConnectionPoints, IConnectionPoint*, Point>::create(std::move(list), 0,
                                                                                   points);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

STDMETHODIMP EventSource::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    if (!point) return E_POINTER;
    *point = nullptr;
    for (ConnectionPoint* candidate : points_) {
        if (iid != candidate->sinkInterface()) continue;
        *point = candidate;
        candidate->AddRef();
        return S_OK;
    }
    return CONNECT_E_NOCONNECTION;
}

BindableEventSource::BindableEventSource(const ClassIdentity& identity)
    : EventSource(identity), properties_(*this, IID_IPropertyNotifySink) {
    addPoint(properties_);
}

bool BindableEventSource::mayChange(DISPID property) {
    return properties_.tell<IPropertyNotifySink>([&](IPropertyNotifySink& sink) {
        return sink.OnRequestEdit(property) == S_FALSE ? S_FALSE : S_OK;
    }) == S_OK;
}

void BindableEventSource::tellChanged(DISPID property) {
    properties_.tell<IPropertyNotifySink>([&](IPropertyNotifySink& sink) {
        sink.OnChanged(property);
        return S_OK;
    });
}

}  // namespace vrx
