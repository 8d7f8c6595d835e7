// General functions: the published class around paths, keys and messages.
#pragma once

#include "VrxCommon.h"
#include "com/object_base.h"

namespace vrx {

class CVrxFun final : public ObjectBase<_CVrxFun> {
  public:
    CVrxFun();

    STDMETHODIMP Get_XPathStep(VARIANT* r_strKeyString, short v_intKeyPos, BSTR* value) override;
    STDMETHODIMP Get_Key(VARIANT* r_strKeyString, short v_intKeyPos, BSTR* value) override;
    STDMETHODIMP Get_AbsolutePath(BSTR strRelativeFile, BSTR strFatherPath, BSTR* value) override;
    STDMETHODIMP Get_RelativePath(BSTR strFile, BSTR strFatherPath, BSTR* value) override;
    STDMETHODIMP Get_PathShortFormat(BSTR v_strPath, BSTR* value) override;
    STDMETHODIMP Get_AppName(VARIANT* r_strFullPath, VARIANT_BOOL v_GetExtension, BSTR* value) override;
    STDMETHODIMP Get_Path(BSTR strFile, BSTR* value) override;
    STDMETHODIMP VrxMsgBox(BSTR v_strMessage, long v_mbsMode, BSTR v_strTitle, long* value) override;
    STDMETHODIMP Show_ShortMessage(BSTR strMessage) override;
    STDMETHODIMP Hide_ShortMessage(VARIANT_BOOL* value) override;

  private:
    ~CVrxFun() override = default;
};

}  // namespace vrx
