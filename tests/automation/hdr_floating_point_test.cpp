// CVrxHDR in hosts that run with unmasked floating-point exceptions and another rounding mode.

#include <gtest/gtest.h>

#include "failure.h"
#include "hdr_host.h"
#include "host_mode.h"
#include "picture_pixels.h"

using host::currentMode;
using host::Hdr;
using host::HostMode;
using host::Listener;
using host::Mode;
using host::RgbePicture;
using host::setMode;

namespace {

// Invalid operation, division by zero and overflow raise exceptions; rounding goes towards zero.
const Mode kHosts{0x0F72, 0x7900};

class HdrFloatingPoint : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const RgbePicture picture_{7, 90};
    const std::wstring file_ = folder_.write(L"picture.hdr", picture_.file());
    const Hdr hdr_;
    Listener listener_{hdr_};
    std::vector<Mode> modes_;

    void SetUp() override {
        listener_.onHeader = [this] { modes_.push_back(currentMode()); };
        listener_.onFinish = listener_.onHeader;
        listener_.onRefresh = [this](IDispatch& picture) {
            modes_.push_back(currentMode());
            last_ = vrx::ComPtr<IDispatch>(&picture);
        };
    }
    void expectShown(const host::FileBytes& bitmap) const {
        ASSERT_TRUE(last_);
        EXPECT_EQ(host::pixelsOf(*last_), host::pixels24(7, 90, bitmap));
    }
    vrx::ComPtr<IDispatch> last_;
};

TEST_F(HdrFloatingPoint, ModeOfTheHostHoldsInItsEventsAndAfterEveryCall) {
    {
        const HostMode mode(kHosts);
        hdr_->put_Exposure(0.5F);
        modes_.push_back(currentMode());
        hdr_->put_Gamma(2.2F);
        modes_.push_back(currentMode());
        (void)hdr_.preview(file_);
        modes_.push_back(currentMode());
        (void)hdr_->Get_BMP();
        modes_.push_back(currentMode());
        (void)hdr_.compo(1, 1, 1);
        modes_.push_back(currentMode());
    }
    // Header, three refreshes and finish of the preview, one refresh of Get_BMP.
    EXPECT_EQ(modes_, std::vector<Mode>(11, kHosts));
}

TEST_F(HdrFloatingPoint, ModeOfTheHostHoldsInTheEventsOfLateBoundCalls) {
    const host::Text file(file_.c_str());
    {
        const HostMode mode(kHosts);
        host::call(hdr_.late(), L"Get_Preview", {file});
        modes_.push_back(currentMode());
        host::call(hdr_.late(), L"Get_BMP");
        modes_.push_back(currentMode());
    }
    // Header, three refreshes and finish of the preview, one refresh of Get_BMP.
    EXPECT_EQ(modes_, std::vector<Mode>(8, kHosts));
}

Mode modeInTimer;

void CALLBACK noteMode(HWND, UINT, UINT_PTR, DWORD) { modeInTimer = currentMode(); }

TEST_F(HdrFloatingPoint, ModeOfTheHostHoldsInMessagesThatArriveDuringAPreview) {
    modeInTimer = {};
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, noteMode);
    listener_.onRefresh = [](IDispatch&) { Sleep(30); };
    {
        const HostMode mode(kHosts);
        (void)hdr_.preview(file_);
    }
    KillTimer(nullptr, timer);
    EXPECT_EQ(modeInTimer, kHosts);
}

TEST_F(HdrFloatingPoint, ModeOfTheHostDoesNotChangePictures) {
    {
        const HostMode mode(kHosts);
        hdr_.view(0.5F, 2.2F);
        (void)hdr_.preview(file_);
    }
    expectShown(picture_.bitmap(0.5F, 2.2F));
    {
        const HostMode mode(kHosts);
        (void)hdr_->put_AutoExposition(VARIANT_TRUE);
        (void)hdr_->Get_BMP();
    }
    expectShown(picture_.bitmap(0.5F, 2.2F, host::Exposition::Max));
}

TEST_F(HdrFloatingPoint, FaultsBecomeErrorsOrValuesAndNotExceptions) {
    HRESULT converted = S_OK;
    HRESULT divided = S_OK;
    HRESULT exposed = S_OK;
    Mode after;
    ASSERT_EQ(hdr_.load(file_), S_OK);
    {
        const HostMode mode(kHosts);
        exposed = hdr_->put_Exposure(1000);
        divided = hdr_.convert(L"x", 0, 0);
        converted = hdr_.convert(folder_ / L"bright.bmp", 127, 1);
        after = currentMode();
    }
    EXPECT_EQ(exposed, S_OK);
    EXPECT_EQ(host::failureOf(divided).number, 11);
    EXPECT_EQ(converted, S_OK);
    EXPECT_EQ(after, kHosts);
}

TEST_F(HdrFloatingPoint, ModeThatASinkSetsHoldsAfterwards) {
    const Mode sinks{0x0B7F, 0x5F80};  // everything masked, rounding up
    listener_.onFinish = [&] { setMode(sinks); };
    Mode after;
    {
        const HostMode mode(kHosts);
        (void)hdr_.load(file_);
        after = currentMode();
    }
    EXPECT_EQ(after, sinks);
}

}  // namespace
