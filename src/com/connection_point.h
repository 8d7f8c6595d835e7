// The events of an object: the connection points of its event interface and, for a control, of those who want
// to know of its properties, and the container that publishes them.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <map>
#include <span>
#include <vector>

#include "com/class_identity.h"
#include "com/com_ptr.h"
#include "com/entry.h"

namespace vrx {

/// Keeps the sinks; shares the life of the container that it belongs to.
class ConnectionPoint final : public IConnectionPoint {
  public:
    /// `sinks` is the interface that sinks implement.
    ConnectionPoint(IConnectionPointContainer& owner, const IID& sinks) : owner_(owner), iid_(sinks) {}
    ConnectionPoint(const ConnectionPoint&) = delete;
    ConnectionPoint& operator=(const ConnectionPoint&) = delete;

    /// Calls an event on all sinks with its arguments in their order. Sinks may do to the object whatever
    /// they like, and those that fail are passed over. Throws vrx::Error when events are nested too deeply.
    void fire(DISPID event, std::span<const VARIANT> arguments);
    /// Tells all sinks, one after the other, until one gives another answer than S_OK; returns the last
    /// one's. `Sink` is the interface that sinks implement.
    template <class Sink, class Call>
    HRESULT tell(Call call);

    [[nodiscard]] bool hasSinks() const { return !sinks_.empty(); }
    [[nodiscard]] const IID& sinkInterface() const { return iid_; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetConnectionInterface(IID* iid) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

  private:
    /// Each under the pointer to the interface that sinks implement.
    using Sinks = std::map<DWORD, ComPtr<IUnknown>>;

    IConnectionPointContainer& owner_;
    const IID& iid_;
    Sinks sinks_;
    DWORD lastCookie_ = 0;
    unsigned depth_ = 0;
};

/// Makes an object a source of events; for the list of an ObjectBase.
class EventSource : public IConnectionPointContainer {
  public:
    using Published = IConnectionPointContainer;

    explicit EventSource(const ClassIdentity& identity)
        : point_(*this, *identity.eventsId), points_{&point_} {}

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

  protected:
    virtual ~EventSource() = default;

    void fire(DISPID event, std::span<const VARIANT> arguments = {}) { point_.fire(event, arguments); }
    /// Whether somebody listens now.
    [[nodiscard]] bool isHeard() const { return point_.hasSinks(); }
    void addPoint(ConnectionPoint& point) { points_.push_back(&point); }

  private:
    ConnectionPoint point_;
    std::vector<ConnectionPoint*> points_;
};

/// The same for an object with bindable properties.
class BindableEventSource : public EventSource {
  public:
    explicit BindableEventSource(const ClassIdentity& identity);

  protected:
    /// False where a receiver refuses the change.
    [[nodiscard]] bool mayChange(DISPID property);
    void tellChanged(DISPID property);

  private:
    ConnectionPoint properties_;
};

template <class Sink, class Call>
HRESULT ConnectionPoint::tell(Call call) {
    HRESULT answer = S_OK;
    const Held<Sinks> sinks(sinks_);
    for (const auto& [cookie, sink] : *sinks) {
        if (answer != S_OK) break;
        if (!sinks_.contains(cookie)) continue;
        answer = callHost([&] { return call(static_cast<Sink&>(*sink.get())); });
    }
    return answer;
}

}  // namespace vrx
