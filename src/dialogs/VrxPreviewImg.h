// The preview: a picture fitted into its area, of a picture file or of a CVrxHDR object as that loads. On the
// library's own dialogs the object is the automation of one child window; on a host's form it is a control as
// well, with that same window.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <string>

#include "VrxCommon.h"
#include "com/connection_point.h"
#include "com/object_base.h"
#include "dialogs/control/ole_parts.h"
#include "dialogs/controls/picture_view.h"
#include "dialogs/hdr_events.h"

namespace vrx {

/// Makes an object keep its properties in a property bag; for the list of an ObjectBase.
class BagPersistence : public IPersistPropertyBag {
  public:
    using Published = IPersistPropertyBag;

    explicit BagPersistence(const ClassIdentity& identity) : classId_(identity.classId) {}

    STDMETHODIMP GetClassID(CLSID* classId) override {
        if (!classId) return E_POINTER;
        *classId = classId_;
        return S_OK;
    }

  protected:
    virtual ~BagPersistence() = default;

  private:
    const CLSID& classId_;
};

/// The dialog that a preview stands on.
class PreviewOwner {
  public:
    virtual void previewClicked() = 0;

  protected:
    ~PreviewOwner() = default;
};

class VrxPreviewImg final : public ObjectBase<_VrxPreviewImg, BindableEventSource, BagPersistence>,
                            private ControlBody,
                            private PictureViewOwner,
                            private HdrListener {
  public:
    VrxPreviewImg();

    /// Makes the control's window in a dialog.
    void create(HWND parent, int id, const RECT& place) { view_.create(parent, id, place); }
    /// The same with the place, the number and the turn of a dialog's control, which goes. The keyboard
    /// reaches it where an owner is told of clicks.
    void createInPlaceOf(HWND control);
    /// Is told beside the receivers of the control's events; null for none.
    void setOwner(PreviewOwner* owner) { owner_ = owner; }
    [[nodiscard]] HWND window() const override { return view_.window(); }
    [[nodiscard]] const ComPtr<IPicture>& picture() const { return view_.picture(); }
    /// Whether an HDR file that `File` has named is still being loaded.
    [[nodiscard]] bool loadsFile() const { return hdr_.previews(); }

    /// Whoever asks for persistence without telling which means that of a property bag.
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        return ObjectBase::QueryInterface(iid == __uuidof(IPersist) ? __uuidof(IPersistPropertyBag) : iid,
                                          object);
    }

    STDMETHODIMP get_Picture(IPictureDisp** value) override;
    STDMETHODIMP put_Picture(IPictureDisp* value) override;
    STDMETHODIMP get_objHDR(_CVrxHDR** value) override;
    STDMETHODIMP putref_objHDR(_CVrxHDR* value) override;
    STDMETHODIMP Get_Prop(long Width, long Height) override;
    STDMETHODIMP put_HDRFile(VARIANT_BOOL value) override;
    STDMETHODIMP get_HDRFile(VARIANT_BOOL* value) override;
    STDMETHODIMP put_File(BSTR value) override;
    STDMETHODIMP get_File(BSTR* value) override;
    STDMETHODIMP get_ImageWidth(long* value) override;
    STDMETHODIMP get_ImageHeight(long* value) override;
    STDMETHODIMP get_MousePointer(short* value) override;
    STDMETHODIMP put_MousePointer(short value) override;
    STDMETHODIMP get_MouseIcon(IPictureDisp** value) override;
    STDMETHODIMP putref_MouseIcon(IPictureDisp* value) override;
    STDMETHODIMP FitPicture() override;
    STDMETHODIMP Get_Proportion(long* BoxWidth, long* BoxHeight, long* PictureWidth,
                                long* PictureHeight) override;

    STDMETHODIMP InitNew() override;
    STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override;
    STDMETHODIMP Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) override;

  private:
    ~VrxPreviewImg() override = default;
    void letGo() noexcept override;

    void* findPart(REFIID iid) override { return ole_.find(iid); }

    // What a container does with the control.
    void createWindow(HWND parent, const RECT& place) override;
    void destroyWindow() override { view_.destroy(); }
    void setDesignedSize(SIZE size) override { view_.setSize(size); }
    void ambientChanged() override;
    [[nodiscard]] PictureScene scene() const override { return view_.scene(); }
    [[nodiscard]] const KeptProperties& keptProperties() const override { return kept_; }
    void setKeptProperties(KeptProperties properties) override;
    [[nodiscard]] bool isChanged() const override { return pointerChanged_ || iconChanged_; }
    void markSaved() override { pointerChanged_ = iconChanged_ = false; }

    // The view's messages.
    void viewResized() override;
    void viewClicked() override;
    void viewPressed() override;
    void viewFocused(bool gained) override { ole_.focusChanged(gained); }
    void viewChanged() override;
    ComPtr<IUnknown> viewKeeper() override { return ComPtr<IUnknown>(static_cast<_VrxPreviewImg*>(this)); }

    // The HDR object's events.
    void headerLoaded(std::int32_t dimX, std::int32_t dimY) override;
    void pictureRefreshed(ComPtr<IPicture> picture) override;

    [[nodiscard]] std::wstring name() const;
    [[nodiscard]] std::wstring label() const;
    template <class Assign>
    HRESULT change(DISPID property, bool& changed, Assign assign);
    void showProperties();
    void showFile(BSTR name);
    void fitPicture();
    void frameFor(std::int32_t width, std::int32_t height);
    void place(std::int32_t boxWidth, std::int32_t boxHeight, std::int32_t width, std::int32_t height);

    PreviewOwner* owner_ = nullptr;
    std::u16string file_;
    bool hdrFile_ = false;
    bool pointerChanged_ = false;
    bool iconChanged_ = false;
    KeptProperties kept_;
    OleParts ole_;
    PictureView view_;
    HdrConnection hdr_;
};

}  // namespace vrx
