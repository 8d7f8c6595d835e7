// Single faults that once were told wrongly or ended the program.

#include <gtest/gtest.h>
#include <windows.h>

#include <oleidl.h>

#include <memory>

#include "com/win_resource.h"
#include "control_container.h"
#include "failure.h"
#include "faults.h"
#include "scenarios.h"

using faults::Injection;
using faults::Kind;
using host::Text;

namespace {

constexpr bool kLasting = true;

class OneFault : public testing::Test {
  protected:
    void SetUp() override { faults::install(); }

    template <class Call>
    static long numberOf(Kind kind, int nth, Call call) {
        const Injection injection(kind, nth, kLasting);
        return host::failureOf(call()).number;
    }
    static vrx::ComPtr<_VrxPreviewImg> makeControl() {
        return host::createDirectly(CLSID_VrxPreviewImg).as<_VrxPreviewImg>();
    }
};

TEST_F(OneFault, ADialogCanBeClosedWhenNoMemoryIsLeft) {
    const auto hdr = host::createDirectly(CLSID_CVrxHDR);
    const host::ThrowawayFolder folder;
    std::unique_ptr<Injection> noMemory;
    const auto closeWithoutMemory = [&](HWND dialog) {
        noMemory = std::make_unique<Injection>(Kind::Memory, 1, kLasting);
        PostMessageW(dialog, WM_CLOSE, 0, 0);
    };
    const faults::User user({closeWithoutMemory});
    const host::Outcome outcome = host::call(*hdr, L"Load", {Text((folder / L"no.hdr").c_str())});
    noMemory.reset();
    const long number = host::failureOf(outcome).number;
    EXPECT_TRUE(number == 0 || number == 7 || number == E_OUTOFMEMORY) << number;
}

TEST_F(OneFault, AnObjectWhoseEventsCannotBeConnectedForLackOfMemoryIsError7) {
    const auto control = makeControl();
    const vrx::ComPtr<_CVrxHDR> first = host::createDirectly(CLSID_CVrxHDR).as<_CVrxHDR>();
    const vrx::ComPtr<_CVrxHDR> second = host::createDirectly(CLSID_CVrxHDR).as<_CVrxHDR>();
    ASSERT_EQ(control->putref_objHDR(first.get()), S_OK);
    EXPECT_EQ(numberOf(Kind::Memory, 1, [&] { return control->putref_objHDR(second.get()); }), 7);
    vrx::ComPtr<_CVrxHDR> followed;
    EXPECT_EQ(control->get_objHDR(followed.put()), S_OK);
    EXPECT_EQ(followed.get(), first.get());
}

TEST_F(OneFault, ARegistrationThatRunsOutOfMemoryLeavesNothing) {
    // The first of all keys.
    constexpr wchar_t kTypeLib[] = L"Software\\Classes\\TypeLib\\{897F52C7-06C5-419E-8D75-FE91814045D8}";
    ASSERT_EQ(host::component().unregisterMachine(), S_OK);
    for (int nth = 1, faults = 1; faults != 0; nth += 1 + nth / 8) {
        Injection injection(Kind::Memory, nth, !kLasting);
        const HRESULT result = host::component().registerMachine();
        injection.end();
        faults = injection.count();
        vrx::RegistryKey key;
        const LSTATUS opened = RegOpenKeyExW(HKEY_LOCAL_MACHINE, kTypeLib, 0, KEY_READ, key.put());
        EXPECT_EQ(result, faults == 0 ? S_OK : E_OUTOFMEMORY) << "allocation " << nth;
        EXPECT_EQ(opened, faults == 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND) << "allocation " << nth;
    }
}

TEST_F(OneFault, SizesWithoutTheScreensContextAreError7) {
    const auto control = makeControl();
    EXPECT_EQ(numberOf(Kind::Drawing, 1, [&] { return control->Get_Prop(40, 20); }), 7);
    EXPECT_EQ(control->Get_Prop(40, 20), S_OK);
}

TEST_F(OneFault, AnActivationWithoutAWindowTellsTheReason) {
    const HWND form =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
    host::ControlContainer container(form);
    const auto ole = makeControl().as<IOleObject>();
    ASSERT_EQ(ole->SetClientSite(container.site()), S_OK);
    const auto activate = [&] {
        return ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, container.site(), 0, form, &container.place);
    };
    EXPECT_EQ(numberOf(Kind::Windows, 1, activate), 7);
    EXPECT_TRUE(container.isBalanced());
    EXPECT_EQ(activate(), S_OK);
    ole->Close(OLECLOSE_NOSAVE);
    ole->SetClientSite(nullptr);
    DestroyWindow(form);
}

}  // namespace
