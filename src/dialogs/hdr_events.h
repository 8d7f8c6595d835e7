// The events of a CVrxHDR object for one of the library's own windows.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <cstdint>
#include <string>

#include "VrxCommon.h"
#include "com/com_ptr.h"

namespace vrx {

/// What a window wants to know of a load.
class HdrListener {
  public:
    virtual void headerLoaded(std::int32_t dimX, std::int32_t dimY) = 0;
    virtual void pictureRefreshed(ComPtr<IPicture> picture) = 0;

  protected:
    ~HdrListener() = default;
};

class HdrSink;

/// A window's object: holds it, and hands its events to the listener.
class HdrConnection {
  public:
    explicit HdrConnection(HdrListener& listener);
    HdrConnection(const HdrConnection&) = delete;
    HdrConnection& operator=(const HdrConnection&) = delete;
    ~HdrConnection() { end(); }

    /// Follows this object from now on; none when it is empty. Error 5 for an object without such events: the
    /// one before then stays.
    void connect(ComPtr<_CVrxHDR> object);
    [[nodiscard]] const ComPtr<_CVrxHDR>& object() const { return followed_.object; }
    explicit operator bool() const { return static_cast<bool>(followed_.object); }
    /// Hears of the object no more, which it may still hold. Needs no memory.
    void end() noexcept { followed_.end(); }

    /// Loads a file with preview; a load that runs begins again with this file instead. Throws the object's
    /// failure, number, source and description; error 91 without an object.
    void preview(const std::u16string& file);
    /// Whether a load that preview() has begun still runs.
    [[nodiscard]] bool previews() const { return previews_ > 0; }
    /// Ends the object's load, where it has one, for good: it does not begin again, whatever was asked of it
    /// or is asked of it until it has ended.
    void endLoad() const;

  private:
    /// An object, and what connects it with the listener. Its class may be the host's.
    struct Followed {
        ComPtr<_CVrxHDR> object;
        ComPtr<IConnectionPoint> point;
        ComPtr<HdrSink> sink;
        DWORD cookie = 0;

        Followed() = default;
        Followed(Followed&&) noexcept = default;
        Followed& operator=(Followed&&) noexcept = default;
        ~Followed();

        HRESULT begin(HdrListener& listener);
        /// Once; nothing where it has not begun.
        void end() noexcept;
    };

    [[nodiscard]] bool isLoading() const;

    HdrListener& listener_;
    Followed followed_;
    int previews_ = 0;  // that are being loaded, one within the other
};

}  // namespace vrx
