#include "pattern/CVrxPattern.h"

#include <atomic>
#include <utility>

#include "pattern/editor/frmPattern.h"
#include "pattern/engine/pattern_expansion.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"CVrxPattern", CLSID_CVrxPattern, IID__CVrxPattern};

/// There is one editor for the whole library.
std::atomic<bool> editorOpen = false;

/// Has the editor as long as it exists. Error 5 while someone else has it.
class EditorUse {
  public:
    EditorUse() {
        if (editorOpen.exchange(true)) throw platformError(Platform::InvalidCall);
    }
    EditorUse(const EditorUse&) = delete;
    EditorUse& operator=(const EditorUse&) = delete;
    ~EditorUse() { editorOpen = false; }
};

}  // namespace

CVrxPattern::CVrxPattern() : ObjectBase(kIdentity) {}

STDMETHODIMP CVrxPattern::get_REGKEY(BSTR* value) {
    return answer(value, [&] { return std::u16string_view(regKey_); });
}

STDMETHODIMP CVrxPattern::put_REGKEY(BSTR value) {
    return run([&] { regKey_ = toText(value); });
}

STDMETHODIMP CVrxPattern::Load(BSTR* Default) {
    if (!Default) return E_POINTER;
    return run([&] {
        Bstr edited = toBstr(edit(*Default));
        const Bstr previous(std::exchange(*Default, edited.release()));
    });
}

/// The edited pattern string; empty when the user cancels.
std::u16string CVrxPattern::edit(BSTR pattern) {
    const Held<EditorUse> use;
    const Held<frmPattern> editor;
    editor->setREGKEY(regKey_);
    editor->setObjPattern(ComPtr<_CVrxPattern>(this));
    editor->prepare(toText(pattern));
    editor->showModal();
    editor->setObjPattern({});
    const Held<std::u16string> edited(editor->cancelled() ? std::u16string() : editor->pattern());
    editor->unload();
    return std::move(*edited);
}

STDMETHODIMP CVrxPattern::Get_PatternFromString(BSTR strPattern, long NumItem, VARIANT* arPattern) {
    if (!arPattern) return E_POINTER;
    return run([&] {
        if (NumItem < 0) throw platformError(Platform::SubscriptOutOfRange);
        // The text may be in the array that makes way for the new one.
        const std::u16string pattern = toText(strPattern);
        SafeArray made = makeVariantArray(static_cast<std::size_t>(NumItem) + 1);
        SAFEARRAY& table = *made.get();
        putVariant(*arPattern, makeArray(std::move(made)));
        fillVariantArray(table, vrx::Get_PatternFromString(pattern, NumItem));
    });
}

}  // namespace vrx
