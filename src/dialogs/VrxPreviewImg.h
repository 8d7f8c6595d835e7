// The preview of the library's dialogs: a picture fitted into its area, of a picture file or of a CVrxHDR
// object as that loads. The object is the automation of one child window.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <string>

#include "VrxCommon.h"
#include "com/connection_point.h"
#include "com/object_base.h"
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
    STDMETHODIMP InitNew() override { return S_OK; }

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

class VrxPreviewImg final : public ObjectBase<_VrxPreviewImg, EventSource, BagPersistence>,
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
    [[nodiscard]] HWND window() const { return view_.window(); }
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

    STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override;
    STDMETHODIMP Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) override;

  private:
    ~VrxPreviewImg() override;

    // The view's messages.
    void viewResized() override;
    void viewClicked() override;

    // The HDR object's events.
    void headerLoaded(std::int32_t dimX, std::int32_t dimY) override;
    void pictureRefreshed(ComPtr<IPicture> picture) override;

    void showFile(BSTR name);
    void fitPicture();
    void frameFor(std::int32_t width, std::int32_t height);
    void place(std::int32_t boxWidth, std::int32_t boxHeight, std::int32_t width, std::int32_t height);

    PreviewOwner* owner_ = nullptr;
    std::u16string file_;
    bool hdrFile_ = false;
    bool pointerChanged_ = false;
    bool iconChanged_ = false;
    PictureView view_;
    HdrConnection hdr_;
};

}  // namespace vrx
