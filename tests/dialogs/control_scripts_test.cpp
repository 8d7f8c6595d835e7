// Ten thousand containers that behave as badly as containers may: calls in any order, failures at random, and
// whatever else they like to do while the control calls them.

#include <array>
#include <random>

#include "control_fixture.h"
#include "leaks.h"

using host::ControlContainer;
using vrx::ComPtr;

namespace {

constexpr int kScripts = 10000;
constexpr int kParts = 10;
constexpr int kSteps = 12;

/// A container and what it does in one life of a control.
class Script {
  public:
    Script(unsigned seed, HWND form, const std::wstring& picture)
        : random_(seed), container_(form), form_(form), picture_(picture) {}

    /// What is wrong afterwards; empty for nothing.
    std::string run() {
        container_.onCall = [this](const char* call) { return answer(call); };
        container_.offersControlSite = !oneIn(8);
        container_.offersAmbient = !oneIn(8);
        container_.offersInPlace = !oneIn(16);
        if (oneIn(3)) container_.ambient[DISPID_AMBIENT_USERMODE] = host::truthAmbient(oneIn(2));
        control_ = host::createDirectly(CLSID_VrxPreviewImg).as<_VrxPreviewImg>();
        if (!control_) return "not created";
        listen();
        begin();
        for (int i = 0; i < kSteps && control_; ++i) step();
        return end();
    }

  private:
    bool oneIn(unsigned count) { return random_() % count == 0; }

    template <class Interface>
    ComPtr<Interface> as() const {
        return control_ ? control_.as<Interface>() : ComPtr<Interface>();
    }

    HRESULT answer(const char* call) {
        if (oneIn(12) && depth_ < 3) {
            ++depth_;
            step();
            --depth_;
        }
        const bool mayFail = std::string_view(call).find("Deactivate") == std::string_view::npos;
        return mayFail && oneIn(10) ? E_FAIL : S_OK;
    }

    void listen() {
        sink_ = host::Sink::make(DIID___VrxPreviewImg, [this](DISPID, const DISPPARAMS&) {
            answer("Click");
            return S_OK;
        });
    }

    /// As forms of Visual Basic, of Access, of .NET and of MFC begin.
    void begin() {
        const auto ole = as<IOleObject>();
        SIZEL size{static_cast<LONG>(random_() % 8000), static_cast<LONG>(random_() % 8000)};
        switch (random_() % 4) {
            case 0: {
                quickActivate();
                if (const auto kept = as<IPersistPropertyBag>()) kept->InitNew();
                ole->SetExtent(DVASPECT_CONTENT, &size);
                verb(OLEIVERB_INPLACEACTIVATE);
                break;
            }
            case 1:
                ole->SetClientSite(container_.site());
                saveAndLoadStorage();
                ole->SetHostNames(L"host", nullptr);
                ole->Advise(static_cast<IAdviseSink*>(&container_), &advice_);
                verb(OLEIVERB_SHOW);
                break;
            case 2:
                ole->SetClientSite(container_.site());
                if (const auto kept = as<IPersistStreamInit>()) kept->InitNew();
                ole->SetExtent(DVASPECT_CONTENT, &size);
                draw();
                verb(OLEIVERB_INPLACEACTIVATE);
                break;
            default:
                draw();
                ole->SetClientSite(container_.site());
                saveAndLoadStream();
                verb(OLEIVERB_UIACTIVATE);
        }
    }

    void step() {
        using Step = void (Script::*)();
        static constexpr std::array<Step, 22> kAll = {&Script::activate,
                                                      &Script::activate,
                                                      &Script::takeKeyboard,
                                                      &Script::hide,
                                                      &Script::loseKeyboard,
                                                      &Script::deactivate,
                                                      &Script::close,
                                                      &Script::dropSite,
                                                      &Script::setSite,
                                                      &Script::move,
                                                      &Script::resize,
                                                      &Script::draw,
                                                      &Script::showPicture,
                                                      &Script::click,
                                                      &Script::pressKey,
                                                      &Script::saveAndLoadStream,
                                                      &Script::saveAndLoadBag,
                                                      &Script::endWindow,
                                                      &Script::saveAndLoadStorage,
                                                      &Script::changeAmbient,
                                                      &Script::freeze,
                                                      &Script::release};
        if (control_) (this->*kAll[random_() % kAll.size()])();
    }

    void verb(LONG number) {
        if (const auto ole = as<IOleObject>())
            ole->DoVerb(number, nullptr, oneIn(3) ? nullptr : container_.site(), oneIn(4) ? -1 : 0,
                        oneIn(3) ? nullptr : form_, oneIn(3) ? nullptr : &container_.place);
    }
    void activate() { verb(oneIn(2) ? OLEIVERB_SHOW : OLEIVERB_INPLACEACTIVATE); }
    void takeKeyboard() { verb(oneIn(2) ? OLEIVERB_UIACTIVATE : OLEIVERB_PRIMARY); }
    void hide() { verb(OLEIVERB_HIDE); }
    void loseKeyboard() {
        if (const auto place = as<IOleInPlaceObject>()) place->UIDeactivate();
    }
    void deactivate() {
        if (const auto place = as<IOleInPlaceObject>()) place->InPlaceDeactivate();
    }
    void close() {
        if (const auto ole = as<IOleObject>()) ole->Close(random_() % 4);
    }
    void dropSite() {
        if (const auto ole = as<IOleObject>()) ole->SetClientSite(nullptr);
    }
    void setSite() {
        if (const auto ole = as<IOleObject>()) ole->SetClientSite(container_.site());
    }
    void move() {
        const RECT place{static_cast<LONG>(random_() % 100), static_cast<LONG>(random_() % 100),
                         static_cast<LONG>(random_() % 300), static_cast<LONG>(random_() % 300)};
        const RECT clip{0, 0, 150, 150};
        if (const auto object = as<IOleInPlaceObject>())
            object->SetObjectRects(&place, oneIn(2) ? &clip : nullptr);
    }
    void resize() {
        SIZEL size{static_cast<LONG>(random_() % 9000) - 500, static_cast<LONG>(random_() % 9000) - 500};
        if (const auto ole = as<IOleObject>()) ole->SetExtent(DVASPECT_CONTENT, &size);
    }
    void draw() {
        const vrx::MemoryDc dc(CreateCompatibleDC(nullptr));
        const RECTL bounds{0, 0, 50, 50};
        if (const auto view = as<IViewObject2>())
            view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc.get(),
                       oneIn(9) ? nullptr : &bounds, nullptr, nullptr, 0);
    }
    void showPicture() {
        const ComPtr<_VrxPreviewImg> control = control_;
        control->put_File(vrx::Bstr(SysAllocString(picture_.c_str())).get());
    }
    void quickActivate() {
        QACONTAINER container{};
        container.cbSize = sizeof container;
        container.pClientSite = container_.site();
        container.pAdviseSink = oneIn(2) ? static_cast<IAdviseSinkEx*>(&container_) : nullptr;
        container.pUnkEventSink = sink_.get();
        container.pPropertyNotifySink = oneIn(2) ? static_cast<IPropertyNotifySink*>(&container_) : nullptr;
        QACONTROL answer{};
        answer.cbSize = sizeof answer;
        if (const auto quick = as<IQuickActivate>()) quick->QuickActivate(&container, &answer);
    }
    HWND window() const {
        HWND found = nullptr;
        if (const auto place = as<IOleInPlaceObject>()) place->GetWindow(&found);
        return found;
    }
    void click() {
        const HWND found = window();
        if (!found) return;
        SendMessageW(found, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 20));
        if (IsWindow(found)) SendMessageW(found, WM_LBUTTONUP, 0, MAKELPARAM(20, 20));
    }
    void pressKey() {
        MSG key{window(), WM_KEYDOWN, static_cast<WPARAM>(oneIn(2) ? VK_RETURN : VK_TAB), 0, 0, {}};
        if (const auto active = as<IOleInPlaceActiveObject>()) active->TranslateAccelerator(&key);
    }
    void endWindow() {
        if (const HWND found = window()) DestroyWindow(found);
    }
    void changeAmbient() {
        container_.ambient[DISPID_AMBIENT_USERMODE] = host::truthAmbient(!oneIn(3));
        if (const auto control = as<IOleControl>()) control->OnAmbientPropertyChange(DISPID_UNKNOWN);
    }
    void freeze() {
        if (const auto control = as<IOleControl>()) control->FreezeEvents(oneIn(2));
    }
    void saveAndLoadStream() {
        ComPtr<IStream> stream;
        CreateStreamOnHGlobal(nullptr, TRUE, stream.put());
        const auto kept = as<IPersistStreamInit>();
        if (!kept || FAILED(kept->Save(stream.get(), oneIn(2)))) return;
        LARGE_INTEGER start{};
        if (oneIn(4)) start.QuadPart = random_() % 14;
        stream->Seek(start, STREAM_SEEK_SET, nullptr);
        kept->Load(stream.get());
    }
    void saveAndLoadStorage() {
        ComPtr<ILockBytes> bytes;
        ComPtr<IStorage> storage;
        CreateILockBytesOnHGlobal(nullptr, TRUE, bytes.put());
        if (FAILED(StgCreateDocfileOnILockBytes(
                bytes.get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, storage.put())))
            return;
        const auto kept = as<IPersistStorage>();
        if (!kept) return;
        if (oneIn(2)) kept->InitNew(storage.get());
        kept->Save(storage.get(), oneIn(2));
        if (oneIn(3)) kept->HandsOffStorage();
        kept->SaveCompleted(oneIn(2) ? storage.get() : nullptr);
        kept->Load(storage.get());
    }
    void saveAndLoadBag() {
        /// Holds one number, and fails at times.
        class Bag final : public IPropertyBag {
          public:
            explicit Bag(Script& script) : script_(script) {}
            STDMETHODIMP QueryInterface(REFIID, void** object) override {
                *object = nullptr;
                return E_NOINTERFACE;
            }
            STDMETHODIMP_(ULONG) AddRef() override { return 1; }
            STDMETHODIMP_(ULONG) Release() override { return 1; }
            STDMETHODIMP Read(LPCOLESTR, VARIANT* value, IErrorLog*) override {
                const HRESULT result = script_.answer("Read");
                if (FAILED(result)) return result;
                *value = host::integer(script_.oneIn(9) ? 100000 : 2);
                return S_OK;
            }
            STDMETHODIMP Write(LPCOLESTR, VARIANT*) override { return script_.answer("Write"); }

          private:
            Script& script_;
        };
        Bag bag(*this);
        const auto kept = as<IPersistPropertyBag>();
        if (!kept) return;
        kept->Save(&bag, oneIn(2), oneIn(2));
        kept->Load(&bag, nullptr);
    }
    /// Early: with everything as it is. Not every time, or most scripts would be short.
    void release() {
        if (!oneIn(4)) return;
        container_.forgetActive();
        control_ = {};
    }

    std::string end() {
        const bool polite = control_ && !oneIn(3);
        container_.onCall = nullptr;
        if (polite) {
            const auto ole = as<IOleObject>();
            ole->Close(OLECLOSE_NOSAVE);
            ole->SetClientSite(nullptr);
        }
        container_.forgetActive();
        if (IUnknown* last = control_.detach()) {
            if (last->Release() != 0) return "references to the control are left";
        }
        if (container_.references() != 0) return "references to the container are left";
        if (polite && !container_.isBalanced()) return "not balanced";
        if (sink_->references() != 1) return "references to the sink are left";
        if (GetWindow(form_, GW_CHILD)) return "a window is left";
        return container_.mistake;
    }

    std::mt19937 random_;
    ControlContainer container_;
    HWND form_;
    const std::wstring& picture_;
    ComPtr<_VrxPreviewImg> control_;
    ComPtr<host::Sink> sink_;
    DWORD advice_ = 0;
    int depth_ = 0;
};

class Scripts : public testing::TestWithParam<int> {
  protected:
    const host::ThrowawayFolder folder_;
    const std::wstring picture_ = folder_.write(L"wide.bmp", host::bmpFile(4, 2, RGB(1, 2, 3)));
    const HWND form_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 400, 300, nullptr,
                                       nullptr, nullptr, nullptr);

    void TearDown() override { DestroyWindow(form_); }
};

TEST_P(Scripts, OfAnyContainerLeaveNoReferenceAndNoWindow) {
    const unsigned first = static_cast<unsigned>(GetParam()) * (kScripts / kParts);
    for (unsigned seed = first; seed < first + kScripts / kParts; ++seed) {
        ASSERT_EQ(Script(seed, form_, picture_).run(), "") << "seed " << seed;
        host::pumpMessages();
    }
}

INSTANTIATE_TEST_SUITE_P(TenThousand, Scripts, testing::Range(0, kParts));

class ScriptsOverAndOver : public Scripts {};

TEST_P(ScriptsOverAndOver, LeakNothing) {
    unsigned seed = 0;
    host::expectNothingLeft([&] {
        static_cast<void>(Script(seed++ % 20, form_, picture_).run());
        host::pumpMessages();
    });
}

INSTANTIATE_TEST_SUITE_P(TheSame, ScriptsOverAndOver, testing::Values(0));

}  // namespace
