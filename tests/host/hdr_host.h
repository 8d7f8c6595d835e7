// CVrxHDR as a compiled host uses it: early-bound calls, and a listener to its events.
#pragma once

#include <functional>
#include <string>

#include "VrxCommon.h"
#include "host.h"
#include "rgbe_picture.h"
#include "sink.h"

namespace host {

class Hdr {
  public:
    Hdr();

    _CVrxHDR* operator->() const { return object_.get(); }
    [[nodiscard]] IDispatch& late() const { return *object_; }

    [[nodiscard]] HRESULT load(const std::wstring& file, bool invert = false) const;
    [[nodiscard]] HRESULT preview(const std::wstring& file) const;
    /// Save_HDR; the path that it returns goes to `written`.
    HRESULT save(const std::wstring& file, std::wstring* written = nullptr) const;
    [[nodiscard]] HRESULT convert(const std::wstring& file, float exposure = -1, float gamma = -1) const;
    HRESULT set(const RgbePicture& picture) const;
    void view(float exposure, float gamma) const;

    [[nodiscard]] long dimX() const;
    [[nodiscard]] long dimY() const;
    [[nodiscard]] bool loading() const;
    /// What Get_HDR hands out; nothing when that is Empty.
    [[nodiscard]] FileBytes store() const;
    [[nodiscard]] float compo(long x, long y, long component) const;

    /// Gives back the host's reference.
    void release() { object_ = {}; }

  private:
    vrx::ComPtr<_CVrxHDR> object_;
};

/// A byte array with these bounds, filled from its first element on.
vrx::SafeArray byteArray(std::initializer_list<vrx::Bounds> bounds, const FileBytes& bytes = {});

/// Notes the events of an object in their order and lets a test act inside them. Holds the object's
/// connection point, and so the object, until it is told not to.
class Listener {
  public:
    explicit Listener(const Hdr& hdr);
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() { disconnect(); }

    std::string log;  ///< like "header(640,480) refresh finish "
    int headers = 0;  ///< how many so far, the current one included
    int refreshes = 0;
    int finishes = 0;
    std::function<void()> onHeader;
    std::function<void(IDispatch& picture)> onRefresh;
    std::function<void()> onFinish;
    HRESULT answer = S_OK;

    void disconnect();
    /// Keeps listening without holding the object.
    void holdNothing() { point_ = {}; }

  private:
    void header(const DISPPARAMS& arguments);
    void refresh(const DISPPARAMS& arguments);
    HRESULT receive(DISPID event, const DISPPARAMS& arguments);

    vrx::ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

}  // namespace host
