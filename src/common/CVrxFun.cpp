#include "common/CVrxFun.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"CVrxFun", CLSID_CVrxFun, IID__CVrxFun};

}  // namespace

CVrxFun::CVrxFun() : ObjectBase(kIdentity) {}

STDMETHODIMP CVrxFun::Get_XPathStep(VARIANT*, short, BSTR* value) { return refuse(value); }

STDMETHODIMP CVrxFun::Get_Key(VARIANT*, short, BSTR* value) { return refuse(value); }

STDMETHODIMP CVrxFun::Get_AbsolutePath(BSTR, BSTR, BSTR* value) { return refuse(value); }

STDMETHODIMP CVrxFun::Get_RelativePath(BSTR, BSTR, BSTR* value) { return refuse(value); }

STDMETHODIMP CVrxFun::Get_PathShortFormat(BSTR, BSTR* value) { return refuse(value); }

STDMETHODIMP CVrxFun::Get_AppName(VARIANT*, VARIANT_BOOL, BSTR* value) { return refuse(value); }

STDMETHODIMP CVrxFun::Get_Path(BSTR, BSTR* value) { return refuse(value); }

STDMETHODIMP CVrxFun::VrxMsgBox(BSTR, long, BSTR, long* value) { return refuse(value); }

STDMETHODIMP CVrxFun::Show_ShortMessage(BSTR) { return refuse(); }

STDMETHODIMP CVrxFun::Hide_ShortMessage(VARIANT_BOOL* value) { return refuse(value); }

}  // namespace vrx
