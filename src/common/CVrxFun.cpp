#include "common/CVrxFun.h"

#include "common/frmMessage.h"
#include "common/message_box.h"
#include "common/modStartUp.h"
#include "ground/keys.h"
#include "ground/paths.h"

namespace vrx {
namespace {

constexpr char16_t kClassName[] = u"CVrxFun";
const ClassIdentity kIdentity = {kClassName, CLSID_CVrxFun, IID__CVrxFun};

/// The text of a variant that a host passes by reference.
std::u16string textIn(VARIANT* variable) {
    if (!variable) throw platformError(Platform::InvalidCall);
    if (V_VT(&followReferences(*variable)) == VT_NULL) throw platformError(Platform::InvalidUseOfNull);
    return toText(*variable);
}

/// Text functions that report their errors through the error record.
template <class Function>
std::u16string recorded(Function function) {
    std::u16string text;
    recordErrors(kClassName, [&] { text = function(); });
    return text;
}

std::u16string takeAppName(VARIANT* variable, bool withExtension) {
    std::u16string path = textIn(variable);
    const std::size_t length = path.size();
    std::u16string name = getAppName(path, withExtension);
    if (path.size() != length) putVariant(*variable, makeText(path));
    return name;
}

}  // namespace

CVrxFun::CVrxFun() : ObjectBase(kIdentity) {}

STDMETHODIMP CVrxFun::Get_XPathStep(VARIANT* r_strKeyString, short v_intKeyPos, BSTR* value) {
    return answer(value, [&] { return getXPathStep(textIn(r_strKeyString), v_intKeyPos); });
}

STDMETHODIMP CVrxFun::Get_Key(VARIANT* r_strKeyString, short v_intKeyPos, BSTR* value) {
    return answer(value, [&] { return getKey(textIn(r_strKeyString), v_intKeyPos); });
}

STDMETHODIMP CVrxFun::Get_AbsolutePath(BSTR strRelativeFile, BSTR strFatherPath, BSTR* value) {
    return answer(value, [&] {
        return recorded([&] { return getAbsolutePath(toText(strRelativeFile), toText(strFatherPath)); });
    });
}

STDMETHODIMP CVrxFun::Get_RelativePath(BSTR strFile, BSTR strFatherPath, BSTR* value) {
    return answer(value, [&] {
        return recorded([&] { return getRelativePath(toText(strFile), toText(strFatherPath)); });
    });
}

STDMETHODIMP CVrxFun::Get_PathShortFormat(BSTR v_strPath, BSTR* value) {
    return answer(value, [&] {
        const std::u16string path = toText(v_strPath);
        try {
            return getPathShortFormat(path);
        } catch (...) {
            return path;
        }
    });
}

STDMETHODIMP CVrxFun::Get_AppName(VARIANT* r_strFullPath, VARIANT_BOOL v_GetExtension, BSTR* value) {
    return answer(value, [&] {
        try {
            return takeAppName(r_strFullPath, v_GetExtension != VARIANT_FALSE);
        } catch (...) {
            return std::u16string();
        }
    });
}

STDMETHODIMP CVrxFun::Get_Path(BSTR strFile, BSTR* value) {
    return answer(value, [&] { return recorded([&] { return getPath(toText(strFile)); }); });
}

STDMETHODIMP CVrxFun::VrxMsgBox(BSTR v_strMessage, long v_mbsMode, BSTR v_strTitle, long* value) {
    return answer(value, [&] {
        return showMessage(toText(v_strMessage), static_cast<unsigned>(v_mbsMode), toText(v_strTitle));
    });
}

STDMETHODIMP CVrxFun::Show_ShortMessage(BSTR strMessage) {
    return run([&] {
        const Held<std::u16string> message(toText(strMessage));
        frmMessage::show(*message);
    });
}

STDMETHODIMP CVrxFun::Hide_ShortMessage(VARIANT_BOOL* value) {
    return answer(value, [&] { return frmMessage::hide(); });
}

}  // namespace vrx
