#include "dialogs/controls/accessible_view.h"

#include <oleacc.h>

#include <utility>

#include "com/com_ptr.h"
#include "com/counted.h"
#include "com/module.h"

namespace vrx {
namespace {

constexpr wchar_t kAction[] = L"Click";

/// The system's own object for a window, but for what it cannot know. Outlives the window, as the system's
/// does.
class AccessibleView final : public Counted<IAccessible, IDispatch> {
  public:
    AccessibleView(HWND view, ComPtr<IAccessible> standard) : view_(view), standard_(std::move(standard)) {}

    STDMETHODIMP get_accRole(VARIANT child, VARIANT* role) override {
        if (!role) return E_POINTER;
        if (!isView(child)) return standard_->get_accRole(child, role);
        VariantInit(role);
        V_VT(role) = VT_I4;
        V_I4(role) = ROLE_SYSTEM_GRAPHIC;
        return S_OK;
    }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* action) override {
        if (!action) return E_POINTER;
        if (!isView(child)) return standard_->get_accDefaultAction(child, action);
        *action = SysAllocString(kAction);
        return *action ? S_OK : E_OUTOFMEMORY;
    }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override {
        if (!isView(child)) return standard_->accDoDefaultAction(child);
        // What the click does may last: whoever asked does not wait for its end.
        return PostMessageW(view_, BM_CLICK, 0, 0) ? S_OK : CO_E_OBJNOTCONNECTED;
    }

    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return standard_->GetTypeInfoCount(count); }
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        return standard_->GetTypeInfo(index, locale, info);
    }
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override {
        return standard_->GetIDsOfNames(iid, names, count, locale, ids);
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* badArgument) override {
        ComPtr<ITypeInfo> info;
        const HRESULT found = standard_->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put());
        if (FAILED(found)) return found;
        return info->Invoke(static_cast<IAccessible*>(this), id, flags, arguments, result, exception,
                            badArgument);
    }

    STDMETHODIMP get_accParent(IDispatch** parent) override { return standard_->get_accParent(parent); }
    STDMETHODIMP get_accChildCount(long* count) override { return standard_->get_accChildCount(count); }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** object) override {
        return standard_->get_accChild(child, object);
    }
    STDMETHODIMP get_accName(VARIANT child, BSTR* name) override {
        return standard_->get_accName(child, name);
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR* value) override {
        return standard_->get_accValue(child, value);
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* text) override {
        return standard_->get_accDescription(child, text);
    }
    STDMETHODIMP get_accState(VARIANT child, VARIANT* state) override {
        return standard_->get_accState(child, state);
    }
    STDMETHODIMP get_accHelp(VARIANT child, BSTR* help) override {
        return standard_->get_accHelp(child, help);
    }
    STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT child, long* topic) override {
        return standard_->get_accHelpTopic(file, child, topic);
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* key) override {
        return standard_->get_accKeyboardShortcut(child, key);
    }
    STDMETHODIMP get_accFocus(VARIANT* child) override { return standard_->get_accFocus(child); }
    STDMETHODIMP get_accSelection(VARIANT* children) override {
        return standard_->get_accSelection(children);
    }
    STDMETHODIMP accSelect(long flags, VARIANT child) override { return standard_->accSelect(flags, child); }
    STDMETHODIMP accLocation(long* left, long* top, long* width, long* height, VARIANT child) override {
        return standard_->accLocation(left, top, width, height, child);
    }
    STDMETHODIMP accNavigate(long direction, VARIANT from, VARIANT* end) override {
        return standard_->accNavigate(direction, from, end);
    }
    STDMETHODIMP accHitTest(long left, long top, VARIANT* child) override {
        return standard_->accHitTest(left, top, child);
    }
    STDMETHODIMP put_accName(VARIANT child, BSTR name) override {
        return standard_->put_accName(child, name);
    }
    STDMETHODIMP put_accValue(VARIANT child, BSTR value) override {
        return standard_->put_accValue(child, value);
    }

  private:
    ~AccessibleView() override = default;

    static bool isView(const VARIANT& child) { return V_VT(&child) == VT_I4 && V_I4(&child) == CHILDID_SELF; }

    const HWND view_;
    const ComPtr<IAccessible> standard_;
    ModuleLock lock_;
};

}  // namespace

LRESULT accessibleView(HWND view, WPARAM wide, LPARAM longer) {
    if (static_cast<DWORD>(longer) != static_cast<DWORD>(OBJID_CLIENT)) return 0;
    ComPtr<IAccessible> standard;
    if (FAILED(CreateStdAccessibleObject(view, OBJID_CLIENT, __uuidof(IAccessible),
                                         reinterpret_cast<void**>(standard.put()))) ||
        !standard)
        return 0;
    const ComPtr<AccessibleView> own(new AccessibleView(view, std::move(standard)));
    return LresultFromObject(__uuidof(IAccessible), wide, own.get());
}

}  // namespace vrx
