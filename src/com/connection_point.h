// The events of an object: the connection point of its one event interface, and the container that publishes
// it.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <map>
#include <span>

#include "com/class_identity.h"
#include "com/com_ptr.h"

namespace vrx {

class EventSource;

/// Keeps the sinks; shares the life of its event source.
class ConnectionPoint final : public IConnectionPoint {
  public:
    ConnectionPoint(EventSource& owner, const IID& events) : owner_(owner), events_(events) {}
    ConnectionPoint(const ConnectionPoint&) = delete;
    ConnectionPoint& operator=(const ConnectionPoint&) = delete;

    /// Calls an event on all sinks with its arguments in their order. Sinks may do to the object whatever
    /// they like, and those that fail are passed over. Throws vrx::Error when events are nested too deeply.
    void fire(DISPID event, std::span<const VARIANT> arguments);

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetConnectionInterface(IID* iid) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

  private:
    EventSource& owner_;
    const IID& events_;
    std::map<DWORD, ComPtr<IDispatch>> sinks_;
    DWORD lastCookie_ = 0;
    unsigned depth_ = 0;
};

/// Makes an object a source of events; for the list of an ObjectBase.
class EventSource : public IConnectionPointContainer {
  public:
    using Published = IConnectionPointContainer;

    explicit EventSource(const ClassIdentity& identity)
        : point_(*this, *identity.eventsId), events_(*identity.eventsId) {}

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

  protected:
    virtual ~EventSource() = default;

    void fire(DISPID event, std::span<const VARIANT> arguments = {}) { point_.fire(event, arguments); }

  private:
    ConnectionPoint point_;
    const IID& events_;
};

}  // namespace vrx
