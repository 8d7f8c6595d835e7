#include "pattern/editor/modal_editor.h"

#include <atomic>
#include <utility>

#include "com/com_ptr.h"
#include "com/entry.h"
#include "com/variant_convert.h"
#include "ground/error.h"
#include "pattern/editor/frmPattern.h"

namespace vrx {
namespace {

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

class ModalPatternDialog final : public PatternDialog {
  public:
    std::u16string edit(_CVrxPattern& object, const std::u16string& regKey, BSTR pattern) const override {
        const Held<EditorUse> use;
        const Held<frmPattern> editor;
        editor->setREGKEY(regKey);
        editor->setObjPattern(ComPtr<_CVrxPattern>(&object));
        editor->prepare(toText(pattern));
        editor->showModal();
        editor->setObjPattern({});
        const Held<std::u16string> edited(editor->cancelled() ? std::u16string() : editor->pattern());
        editor->unload();
        return std::move(*edited);
    }
};

constexpr ModalPatternDialog kPatternDialog;

}  // namespace

const PatternDialog& modalPatternDialog() { return kPatternDialog; }

}  // namespace vrx
