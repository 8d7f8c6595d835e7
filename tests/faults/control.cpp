#include <windows.h>

#include <olectl.h>

#include "control_container.h"
#include "scenarios.h"

using host::integer;
using host::Text;
using host::truth;

namespace faults {
namespace {

/// A form with the stage's control on it, which is gone from there in the end, whatever happens before.
class FormWithControl {
  public:
    explicit FormWithControl(Stage& stage) : stage_(stage) {
        ole_ = stage.object.as<IOleObject>();
        stage.note(ole_ ? ole_->SetClientSite(container_.site()) : E_NOINTERFACE);
    }
    FormWithControl(const FormWithControl&) = delete;
    FormWithControl& operator=(const FormWithControl&) = delete;
    ~FormWithControl() {
        if (ole_) {
            ole_->Close(OLECLOSE_NOSAVE);
            ole_->SetClientSite(nullptr);
        }
        DestroyWindow(form_);
        if (container_.references() != 0) stage_.answer.value += "references held";
        if (!container_.isBalanced()) stage_.answer.value += "unbalanced";
        stage_.answer.value += container_.mistake;
    }

    void verb(LONG number) {
        if (ole_) stage_.note(ole_->DoVerb(number, nullptr, container_.site(), 0, form_, &container_.place));
    }

    static void pump() {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }

  private:
    Stage& stage_;
    const HWND form_ = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 400, 300,
                                       nullptr, nullptr, nullptr, nullptr);
    host::ControlContainer container_{form_};
    vrx::ComPtr<IOleObject> ole_;
};

/// A picture is loaded while the control is active, and it gets the keyboard.
template <bool ofHdr>
void activate(Stage& stage) {
    FormWithControl form(stage);
    form.verb(OLEIVERB_INPLACEACTIVATE);
    stage.put(L"HDRFile", truth(ofHdr));
    stage.put(L"File", Text((ofHdr ? stage.hdrFile : stage.bmpFile).c_str()));
    stage.call(L"FitPicture");
    form.pump();
    form.verb(OLEIVERB_UIACTIVATE);
    form.pump();
    form.verb(OLEIVERB_HIDE);
    stage.get(L"ImageWidth");
}

void draw(Stage& stage) {
    const FormWithControl form(stage);
    stage.put(L"File", Text(stage.bmpFile.c_str()));
    const auto view = stage.object.as<IViewObject>();
    if (!view) return stage.note(E_NOINTERFACE);
    const HDC target = CreateCompatibleDC(nullptr);
    const RECTL bounds{0, 0, 40, 30};
    stage.note(
        view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, target, &bounds, nullptr, nullptr, 0));
    DeleteDC(target);
}

/// Saved in a stream, and loaded from it by the control itself.
void keep(Stage& stage) {
    const auto persistence = stage.object.as<IPersistStreamInit>();
    vrx::ComPtr<IStream> stream;
    if (!persistence) return stage.note(E_NOINTERFACE);
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()))) return stage.note(E_FAIL);
    stage.put(L"MousePointer", integer(2));
    stage.note(persistence->Save(stream.get(), TRUE));
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    stage.note(persistence->Load(stream.get()));
    stage.get(L"MousePointer");
}

void askForParts(Stage& stage) {
    const auto ole = stage.object.as<IOleObject>();
    if (!ole) return stage.note(E_NOINTERFACE);
    vrx::ComPtr<IEnumOLEVERB> verbs;
    stage.note(ole->EnumVerbs(verbs.put()));
    LPOLESTR name = nullptr;
    stage.note(ole->GetUserType(USERCLASSTYPE_FULL, &name));
    CoTaskMemFree(name);
    CAUUID pages{};
    if (const auto provider = stage.object.as<ISpecifyPropertyPages>())
        stage.note(provider->GetPages(&pages));
    CoTaskMemFree(pages.pElems);
}

}  // namespace

const std::vector<Scenario>& controls() {
    static const std::vector<Scenario> all = {
        {"Control_OnForm", &CLSID_VrxPreviewImg, nothing, activate<false>, true},
        {"Control_OnFormWithHdr", &CLSID_VrxPreviewImg, nothing, activate<true>, true},
        {"Control_Drawn", &CLSID_VrxPreviewImg, nothing, draw, true},
        {"Control_Kept", &CLSID_VrxPreviewImg, nothing, keep},
        {"Control_Parts", &CLSID_VrxPreviewImg, nothing, askForParts},
    };
    return all;
}

}  // namespace faults
