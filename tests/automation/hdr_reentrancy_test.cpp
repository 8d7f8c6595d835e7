// CVrxHDR: hosts that act on the object from inside its events and from messages that arrive during a load.

#include <gtest/gtest.h>

#include "failure.h"
#include "hdr_host.h"
#include "picture_pixels.h"

using host::failureOf;
using host::Hdr;
using host::Listener;
using host::pixels24;
using host::pixelsOf;
using host::RgbePicture;

namespace {

constexpr char kWhole[] = "header(3,200) refresh refresh refresh refresh finish ";

class HdrReentrancy : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    Hdr hdr_;
    Listener listener_{hdr_};
    const RgbePicture tall_{3, 200};
    const std::wstring file_ = folder_.write(L"tall.hdr", tall_.file());
    host::Pixels last_;

    void SetUp() override { hdr_.view(0, 1); }

    /// Acts in the first OnHeaderLoaded and notes what the last OnRefresh shows.
    void atHeader(std::function<void()> action) {
        listener_.onHeader = [this, action] {
            if (listener_.headers == 1) action();
        };
        watch([] {});
    }
    /// Acts in the first OnRefresh.
    void atRefresh(std::function<void()> action) { watch(std::move(action)); }

    void expectShown(const RgbePicture& picture, float exposure, float gamma) const {
        EXPECT_EQ(last_, pixels24(picture.width(), picture.height(), picture.bitmap(exposure, gamma)));
    }
    /// Forgets what has happened and no longer acts.
    void forget() {
        listener_.onHeader = {};
        listener_.onRefresh = {};
        listener_.onFinish = {};
        listener_.headers = listener_.refreshes = listener_.finishes = 0;
        listener_.log.clear();
    }
    void expectWorksAgain() {
        forget();
        EXPECT_FALSE(hdr_.loading());
        EXPECT_EQ(hdr_.preview(file_), S_OK);
        EXPECT_EQ(listener_.log, kWhole);
        EXPECT_EQ(hdr_.store(), tall_.store());
    }

  private:
    void watch(std::function<void()> action) {
        listener_.onRefresh = [this, action](IDispatch& picture) {
            last_ = pixelsOf(picture);
            if (listener_.refreshes == 1) action();
        };
    }
};

TEST_F(HdrReentrancy, EndHdrDuringAPreviewLoadEndsItAfterTheCurrentRowAndOnFinishIsStillRaised) {
    atRefresh([&] { hdr_->EndHDR(); });
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, "header(3,200) refresh refresh finish ");
    EXPECT_EQ(last_, pixels24(3, 200, tall_.bitmap(0, 1, 1)));
    EXPECT_EQ(hdr_.compo(0, 1, 3), 0.5F * 0x1p-136F) << "row 1 is not decoded";
    expectWorksAgain();
}

TEST_F(HdrReentrancy, EndHdrInOnHeaderLoadedEndsAPreviewAfterTheFirstRow) {
    atHeader([&] { hdr_->EndHDR(); });
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, "header(3,200) refresh finish ");
    EXPECT_EQ(hdr_.compo(0, 1, 3), 0.5F * 0x1p-136F) << "row 1 is not decoded";
    expectWorksAgain();
}

TEST_F(HdrReentrancy, EndHdrInOnHeaderLoadedEndsALoadAtItsFiftiethRun) {
    const RgbePicture wide(60, 2);
    atHeader([&] { hdr_->EndHDR(); });
    EXPECT_EQ(hdr_.load(folder_.write(L"wide.hdr", wide.file(1))), S_OK);
    EXPECT_EQ(listener_.log, "header(60,2) finish ");
    host::FileBytes expected(61 * 3 * 4);
    std::copy_n(wide.store().begin(), 50, expected.begin());
    EXPECT_EQ(hdr_.store(), expected);
    expectWorksAgain();
}

TEST_F(HdrReentrancy, EndHdrOfAnIdleObjectDoesNothing) {
    EXPECT_EQ(hdr_->EndHDR(), S_OK);
    EXPECT_EQ(hdr_->Init(), S_OK);
    expectWorksAgain();
}

TEST_F(HdrReentrancy, AssigningExposureDuringALoadMakesTheLoadStartAgainFromTheFirstRowAfterItEnds) {
    atRefresh([&] { hdr_->put_Exposure(2.5F); });
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, std::string("header(3,200) refresh refresh finish ") + kWhole);
    expectShown(tall_, 2.5F, 1);
    EXPECT_EQ(hdr_.store(), tall_.store());
}

TEST_F(HdrReentrancy, AssigningGammaDuringALoadDoesNotMakeItStartAgain) {
    const auto assign = [&] {
        hdr_->put_Gamma(2);
        hdr_->put_REGKEY(nullptr);
    };
    atHeader(assign);
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, kWhole);
    expectShown(tall_, 0, 1);
    hdr_->put_Gamma(1);
    forget();
    atRefresh(assign);
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, kWhole);
}

TEST_F(HdrReentrancy, AssigningAutomaticExpositionOrItsTypeDuringALoadMakesItStartAgain) {
    const std::function<void()> changes[] = {[&] { hdr_->put_AutoExposition(VARIANT_TRUE); },
                                             [&] { hdr_->put_AutoExpositionType(HDRAETMinMax); }};
    for (const auto& change : changes) {
        forget();
        atRefresh(change);
        EXPECT_EQ(hdr_.preview(file_), S_OK);
        EXPECT_EQ(listener_.log, std::string("header(3,200) refresh refresh finish ") + kWhole);
        forget();
        atHeader(change);
        EXPECT_EQ(hdr_.preview(file_), S_OK);
        EXPECT_EQ(listener_.log, std::string("header(3,200) refresh finish ") + kWhole);
    }
}

TEST_F(HdrReentrancy, AssigningExposureInOnHeaderLoadedOrOnFinishMakesTheLoadStartAgain) {
    atHeader([&] { hdr_->put_Exposure(1); });
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, std::string("header(3,200) refresh finish ") + kWhole);
    forget();
    atRefresh([] {});
    listener_.onFinish = [&] {
        if (listener_.finishes == 1) hdr_->put_Exposure(2);
    };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, std::string(kWhole) + kWhole);
    expectShown(tall_, 2, 1);
}

TEST_F(HdrReentrancy, AssigningExposureDuringALoadWithoutPreviewMakesItRunAgain) {
    atHeader([&] { hdr_->put_Exposure(1); });
    EXPECT_EQ(hdr_.load(file_, true), S_OK);
    EXPECT_EQ(listener_.log, "header(3,200) finish header(3,200) finish ");
    EXPECT_EQ(hdr_.store(), tall_.store(true));
}

TEST_F(HdrReentrancy, OnlyTheLastRunsOutcomeReachesTheCaller) {
    host::FileBytes flat = host::headerFile(3, 200);
    host::append(flat, {0, 0, 0, 0});
    atHeader([&] {
        folder_.write(L"tall.hdr", tall_.file());
        hdr_->put_Exposure(1);
    });
    folder_.write(L"tall.hdr", flat);
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, std::string("header(3,200) ") + kWhole);

    listener_.headers = 0;
    atHeader([&] {
        DeleteFileW(file_.c_str());
        hdr_->put_Exposure(2);
    });
    EXPECT_EQ(failureOf(hdr_.preview(file_)), (host::Failure{53, L"CVrxHDR", L"File not found"}));
}

TEST_F(HdrReentrancy, PreviewStartedInsideAnEventIsTheOneThatIsShownAtTheEnd) {
    const RgbePicture other(4, 90);
    const std::wstring second = folder_.write(L"second.hdr", other.file());
    atRefresh([&] { EXPECT_EQ(hdr_.preview(second), S_OK); });
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log,
              "header(3,200) refresh header(4,90) refresh refresh refresh finish refresh finish ");
    expectShown(other, 0, 1);
    EXPECT_EQ(hdr_.store(), other.store());
    EXPECT_EQ(hdr_.dimX(), 4);
    expectWorksAgain();
}

TEST_F(HdrReentrancy, LoadStartedInsideAnEventIsTheOneThatStays) {
    const RgbePicture other(4, 90);
    const std::wstring second = folder_.write(L"second.hdr", other.file());
    const auto startSecond = [&] { EXPECT_EQ(hdr_.load(second), S_OK); };
    atRefresh(startSecond);
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(hdr_.store(), other.store());
    hdr_->Cls();
    listener_.onRefresh = {};
    listener_.headers = 0;
    atHeader(startSecond);
    EXPECT_EQ(hdr_.load(file_), S_OK);
    EXPECT_EQ(hdr_.store(), other.store());
    expectWorksAgain();
}

TEST_F(HdrReentrancy, LoadStartedInOnFinishIsTheOneThatStays) {
    const RgbePicture other(4, 90);
    const std::wstring second = folder_.write(L"second.hdr", other.file());
    listener_.onFinish = [&] {
        if (listener_.finishes > 1) return;
        EXPECT_EQ(hdr_.load(second), S_OK);
    };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, std::string(kWhole) + "header(4,90) finish ");
    EXPECT_EQ(hdr_.store(), other.store());
    expectWorksAgain();
}

TEST_F(HdrReentrancy, LoadHdrInsideAnEventOfARunningPreviewLeavesTheOuterRunNoFurtherRefresh) {
    const RgbePicture other(4, 90);
    const std::wstring second = folder_.write(L"second.hdr", other.file());
    const std::wstring names[] = {second, L"", L"Error", folder_ / L"missing.hdr"};
    for (const std::wstring& name : names) {
        const bool loads = name == second;
        const std::string inner = loads ? "header(4,90) finish " : "";
        forget();
        atRefresh([&] { (void)hdr_.load(name); });
        EXPECT_EQ(hdr_.preview(file_), S_OK);
        EXPECT_EQ(listener_.log, "header(3,200) refresh " + inner + "finish ");
        EXPECT_EQ(hdr_.dimX(), loads ? 4 : 3);
        forget();
        atHeader([&] { (void)hdr_.load(name); });
        EXPECT_EQ(hdr_.preview(file_), S_OK);
        EXPECT_EQ(listener_.log, "header(3,200) " + inner + "finish ");
        EXPECT_EQ(hdr_.dimX(), loads ? 4 : 3);
        EXPECT_FALSE(hdr_.loading());
    }
    expectWorksAgain();
}

TEST_F(HdrReentrancy, FailureOfALoadInsideAnEventStaysThere) {
    const std::wstring missing = folder_ / L"missing.hdr";
    host::Failure inner;
    atRefresh([&] { inner = failureOf(hdr_.preview(missing)); });
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(inner.number, 53);
    expectWorksAgain();
}

TEST_F(HdrReentrancy, FailureInsideAnEventIsNotTakenForTheOneThatFollows) {
    host::FileBytes flat = host::headerFile(3, 200);
    host::append(flat, {0, 0, 0, 0});
    const Hdr other;
    host::Failure inner;
    atHeader([&] { inner = failureOf(other.load(folder_ / L"missing.hdr")); });
    EXPECT_EQ(failureOf(hdr_.preview(folder_.write(L"flat.hdr", flat))),
              (host::Failure{1, L"CVrxHDR::Import", L"File Type Wrong!"}));
    EXPECT_EQ(inner.number, 53);
    expectWorksAgain();
}

TEST_F(HdrReentrancy, ClsInsideAnEventEndsTheLoad) {
    atRefresh([&] { EXPECT_EQ(hdr_->Cls(), S_OK); });
    (void)hdr_.preview(file_);
    EXPECT_EQ(hdr_.dimX(), 0);
    EXPECT_EQ(hdr_.dimY(), 0);
    EXPECT_TRUE(hdr_.store().empty());
    EXPECT_LE(listener_.refreshes, 2);
    expectWorksAgain();
}

TEST_F(HdrReentrancy, SetHdrInsideAnEventLeavesTheHostsPixels) {
    const RgbePicture own(7, 5);
    for (const bool small : {true, false}) {
        const RgbePicture& pixels = small ? own : tall_;
        listener_.refreshes = 0;
        atRefresh([&] { EXPECT_EQ(hdr_.set(pixels), S_OK); });
        (void)hdr_.preview(file_);
        EXPECT_EQ(hdr_.dimX(), pixels.width());
        EXPECT_EQ(hdr_.dimY(), pixels.height());
        EXPECT_EQ(hdr_.store(), pixels.store());
    }
    expectWorksAgain();
}

TEST_F(HdrReentrancy, InitInsideAnEventEndsTheLoad) {
    atRefresh([&] {
        EXPECT_EQ(hdr_->Init(), S_OK);
        EXPECT_FALSE(hdr_.loading());
    });
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, "header(3,200) refresh refresh finish ");
    expectWorksAgain();
}

TEST_F(HdrReentrancy, SavingAndConvertingInsideAnEventSeeThePixelsSoFar) {
    atRefresh([&] {
        EXPECT_EQ(hdr_.convert(folder_ / L"so_far.bmp"), S_OK);
        EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    });
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_TRUE(host::exists(folder_ / L"so_far.bmp"));
    expectShown(tall_, 0, 1);
    EXPECT_EQ(hdr_.store(), tall_.store());
}

}  // namespace
