// The floating-point mode: ours inside the library, the host's own everywhere else.

#include <gtest/gtest.h>

#include "host.h"
#include "host_mode.h"
#include "probes.h"
#include "sink.h"

using host::currentMode;
using host::HostMode;
using host::Mode;
using host::setMode;
using vrx::ComPtr;

namespace {

const Mode kOurs = {0x037F, 0x1F80};

// 53-bit precision, rounding up, zero division and invalid operation unmasked; denormals flushed to zero.
const Mode kHosts = {0x0A7A, 0xD900};

/// Another mode that an event sink leaves behind: rounding down, everything masked.
const Mode kSinks = {0x077F, 0x3F80};

TEST(FloatingPointMode, IsOursInsideAndTheHostsAfterwards) {
    const auto effects = probe::make<probe::Effects>();
    Mode inside;
    effects->onScale = [&](float) { return inside = currentMode(), short{1}; };
    short result = 0;
    Mode after;
    {
        const HostMode host(kHosts);
        effects->ScaleX(1, &result);
        after = currentMode();
    }
    EXPECT_EQ(inside.x87, kOurs.x87);
    EXPECT_EQ(inside.mxcsr, kOurs.mxcsr);
    EXPECT_EQ(after, kHosts);
}

TEST(FloatingPointMode, ComesBackFromALateBoundCallAndAFailure) {
    const auto effects = probe::make<probe::Effects>();
    effects->onScale = [&](float) -> short { throw vrx::platformError(vrx::Platform::Overflow); };
    VARIANT width = host::number(1);
    DISPPARAMS arguments{&width, nullptr, 1, 0};
    Mode after;
    {
        const HostMode host(kHosts);
        effects->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr);
        after = currentMode();
    }
    EXPECT_EQ(after, kHosts);
}

TEST(FloatingPointMode, LetsFaultyArithmeticPassInAHostThatForbidsIt) {
    const auto effects = probe::make<probe::Effects>();
    bool infinite = false;
    effects->onScale = [&](float width) {
        volatile long double zero = 0;
        infinite = width / static_cast<float>(zero) > 1e30f && 1.0L / zero > 1e30L;
        return short{1};
    };
    short result = 0;
    {
        const HostMode host(kHosts);
        effects->ScaleX(1, &result);
        // A fault that was still pending would be raised by the next instruction of the host's coprocessor.
        __asm__ __volatile__("fwait");
    }
    EXPECT_TRUE(infinite);
    EXPECT_EQ(result, 1);
}

TEST(FloatingPointMode, IsTheHostsInsideEvents) {
    const auto source = probe::make<probe::Events>();
    Mode inside;
    Mode resumed;
    const auto sink = host::Sink::make(
        DIID___CVrxHDR, [&](DISPID, const DISPPARAMS&) { return inside = currentMode(), S_OK; });
    DWORD cookie = 0;
    host::connectionPoint(*source.as<IDispatch>(), DIID___CVrxHDR)->Advise(sink.get(), &cookie);
    source->onLoad = [&] {
        source->fire(3);
        resumed = currentMode();
    };
    BSTR text = nullptr;
    Mode after;
    {
        const HostMode host(kHosts);
        source->Load(&text);
        after = currentMode();
    }
    EXPECT_EQ(inside, kHosts);
    EXPECT_EQ(resumed, kOurs);
    EXPECT_EQ(after, kHosts);
}

TEST(FloatingPointMode, ThatASinkSetsHoldsAfterwards) {
    const auto source = probe::make<probe::Events>();
    const auto sink =
        host::Sink::make(DIID___CVrxHDR, [](DISPID, const DISPPARAMS&) { return setMode(kSinks), S_OK; });
    DWORD cookie = 0;
    host::connectionPoint(*source.as<IDispatch>(), DIID___CVrxHDR)->Advise(sink.get(), &cookie);
    source->onLoad = [&] { source->fire(3); };
    BSTR text = nullptr;
    Mode after;
    {
        const HostMode host(kHosts);
        source->Load(&text);
        after = currentMode();
    }
    EXPECT_EQ(after, kSinks);
}

TEST(FloatingPointMode, IsTheHostsAfterEveryEntryOfTheComponent) {
    const ComPtr<IDispatch> pattern = host::create(L"VrxCommon.CVrxPattern");
    ASSERT_TRUE(pattern);
    const DISPID id = host::idOf(*pattern, L"REGKEY");
    DISPPARAMS none{};
    vrx::Variant result;
    Mode afterCall;
    Mode afterCreation;
    {
        const HostMode host(kHosts);
        pattern->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result.get(), nullptr, nullptr);
        afterCall = currentMode();
        const ComPtr<IDispatch> created = host::createDirectly(CLSID_CVrxHDR);
        afterCreation = currentMode();
    }
    EXPECT_EQ(afterCall, kHosts);
    EXPECT_EQ(afterCreation, kHosts);
}

}  // namespace
