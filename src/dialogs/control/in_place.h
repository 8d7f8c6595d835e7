// In-place activation: when the control has its window in the container's, and when it has the keyboard.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include "com/part.h"
#include "dialogs/control/container.h"
#include "dialogs/control/control_body.h"
#include "dialogs/control/designed_extent.h"

namespace vrx {

/// What a verb brings along for containers that tell no better place.
struct PlaceHint {
    HWND parent;
    const RECT* place;  ///< null for none
};

/// Where the window stands in its parent, and how much of the parent it may cover.
struct PlaceAndClip {
    RECT place;
    RECT clip;
};

/// The container may do anything in each call that it gets: deactivate, take the site away, end the window.
class InPlace {
  public:
    InPlace(IUnknown& object, ControlBody& body, Container& container, const DesignedExtent& extent)
        : object_(object), body_(body), container_(container), extent_(extent) {}
    InPlace(const InPlace&) = delete;
    InPlace& operator=(const InPlace&) = delete;

    /// With its window in the container; with the keyboard too if wanted.
    HRESULT activate(bool withKeyboard, const PlaceHint& hint);
    void hide();
    void deactivateKeyboard();
    void deactivate();

    /// The window's place in its parent, of which the clip shows a part; null for the whole.
    void setRects(const RECT& place, const RECT* clip);
    /// Tells the container the place that the new extent needs.
    void extentChanged();
    void focusChanged(bool gained);
    /// S_OK for a key that is used.
    HRESULT translateKey(MSG& key);

  private:
    /// Whether the control still is in the activation of that number.
    [[nodiscard]] bool isCurrent(unsigned activation) const { return site_ && activation_ == activation; }

    HRESULT enter(const PlaceHint& hint);
    HRESULT tryOpen(unsigned activation, const PlaceHint& hint) noexcept;
    HRESULT open(unsigned activation, const PlaceHint& hint);
    [[nodiscard]] HWND parentFor(const PlaceHint& hint) const;
    [[nodiscard]] PlaceAndClip askForPlace(unsigned activation, const PlaceHint& hint);
    HRESULT activateKeyboard();
    [[nodiscard]] bool mayHaveKeyboard(IOleInPlaceSite& site) const;
    void leave();
    HRESULT takeKeyboard();
    void setActiveObject(IOleInPlaceActiveObject* active, unsigned turn);
    [[nodiscard]] RECT placeWithExtent() const;

    IUnknown& object_;
    ControlBody& body_;
    Container& container_;
    const DesignedExtent& extent_;
    ComPtr<IOleInPlaceSite> site_;  // empty while inactive
    ComPtr<IOleInPlaceFrame> frame_;
    ComPtr<IOleInPlaceUIWindow> document_;
    unsigned activation_ = 0;
    unsigned keyboardTurn_ = 0;  // of taking it and giving it back
    bool opening_ = false;
    bool leaving_ = false;
    bool yielding_ = false;
    bool hasKeyboard_ = false;
    bool hasFocus_ = false;
    bool clipped_ = false;
};

class InPlaceObjectPart final : public Part<IOleInPlaceObject> {
  public:
    InPlaceObjectPart(IUnknown& object, ControlBody& body, InPlace& inPlace)
        : Part(object), body_(body), inPlace_(inPlace) {}

    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP SetObjectRects(LPCRECT place, LPCRECT clip) override;
    STDMETHODIMP ReactivateAndUndo() override;

  private:
    ControlBody& body_;
    InPlace& inPlace_;
};

class InPlaceActiveObjectPart final : public Part<IOleInPlaceActiveObject> {
  public:
    InPlaceActiveObjectPart(IUnknown& object, ControlBody& body, InPlace& inPlace)
        : Part(object), body_(body), inPlace_(inPlace) {}

    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;
    STDMETHODIMP TranslateAccelerator(LPMSG key) override;
    STDMETHODIMP OnFrameWindowActivate(BOOL activate) override;
    STDMETHODIMP OnDocWindowActivate(BOOL activate) override;
    STDMETHODIMP ResizeBorder(LPCRECT border, IOleInPlaceUIWindow* window, BOOL frame) override;
    STDMETHODIMP EnableModeless(BOOL enable) override;

  private:
    ControlBody& body_;
    InPlace& inPlace_;
};

}  // namespace vrx
