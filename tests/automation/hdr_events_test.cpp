// CVrxHDR: the events of a load in their order, and what they show.

#include <gtest/gtest.h>

#include "failure.h"
#include "hdr_host.h"
#include "picture_pixels.h"

using host::Failure;
using host::failureOf;
using host::Hdr;
using host::Listener;
using host::Pixels;
using host::pixels24;
using host::pixelsOf;
using host::RgbePicture;

namespace {

std::string refreshes(int count) {
    std::string log;
    while (count-- > 0) log += "refresh ";
    return log;
}

class HdrEvents : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    Hdr hdr_;
    const RgbePicture tall_{3, 200};
    const std::wstring file_ = folder_.write(L"tall.hdr", tall_.file());

    void SetUp() override { hdr_.view(0, 1); }
    [[nodiscard]] Pixels shown(float exposure, float gamma, int rows = -1) const {
        return pixels24(3, 200, tall_.bitmap(exposure, gamma, rows));
    }
};

TEST_F(HdrEvents, OfAPreviewAreTheHeaderARefreshEvery80RowsOneAtTheEndAndTheFinish) {
    const std::pair<int, int> expected[] = {{0, 1}, {1, 2}, {80, 2}, {81, 3}, {200, 4}};
    for (const auto& [rows, count] : expected) {
        const Listener listener(hdr_);
        EXPECT_EQ(hdr_.preview(folder_.write(L"rows.hdr", RgbePicture(3, rows).file())), S_OK);
        EXPECT_EQ(listener.log, "header(3," + std::to_string(rows) + ") " + refreshes(count) + "finish ");
    }
}

TEST_F(HdrEvents, OfALoadAreTheHeaderAndTheFinish) {
    const Listener listener(hdr_);
    EXPECT_EQ(hdr_.load(file_), S_OK);
    EXPECT_EQ(listener.log, "header(3,200) finish ");
}

TEST_F(HdrEvents, HeaderComesBeforeAnyPixelIsRead) {
    hdr_.set(RgbePicture(9, 8));
    Listener listener(hdr_);
    listener.onHeader = [&] {
        EXPECT_EQ(hdr_.dimX(), 3);
        EXPECT_EQ(hdr_.dimY(), 200);
        EXPECT_EQ(hdr_.store(), RgbePicture(9, 8).store());
    };
    EXPECT_EQ(hdr_.load(file_), S_OK);
    EXPECT_EQ(listener.headers, 1);
}

TEST_F(HdrEvents, ComeWhileHdrLoadingIsTrue) {
    Listener listener(hdr_);
    int loading = 0;
    listener.onHeader = [&] { loading += hdr_.loading(); };
    listener.onRefresh = [&](IDispatch&) { loading += hdr_.loading(); };
    listener.onFinish = [&] { loading += hdr_.loading(); };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(loading, 6);
    EXPECT_FALSE(hdr_.loading());
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(loading, 6) << "painting is not loading";
    EXPECT_EQ(listener.refreshes, 5);
}

TEST_F(HdrEvents, RefreshShowsTheRowsDecodedSoFarInAPictureOfTheWholeSize) {
    hdr_.view(1, 2);
    Listener listener(hdr_);
    std::vector<Pixels> seen;
    listener.onRefresh = [&](IDispatch& picture) {
        EXPECT_TRUE(vrx::ComPtr<IDispatch>(&picture).as<IPictureDisp>());
        seen.push_back(pixelsOf(picture));
    };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(seen, std::vector<Pixels>({shown(1, 2, 1), shown(1, 2, 81), shown(1, 2, 161), shown(1, 2)}));
}

TEST_F(HdrEvents, RefreshHandsOutAPictureThatStaysAsItWas) {
    Listener listener(hdr_);
    std::vector<vrx::ComPtr<IDispatch>> kept;
    listener.onRefresh = [&](IDispatch& picture) { kept.emplace_back(&picture); };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    hdr_.view(5, 1);
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    ASSERT_EQ(kept.size(), 5u);
    EXPECT_EQ(pixelsOf(*kept[0]), shown(0, 1, 1));
    EXPECT_EQ(pixelsOf(*kept[1]), shown(0, 1, 81));
    EXPECT_EQ(pixelsOf(*kept[3]), shown(0, 1));
    EXPECT_EQ(pixelsOf(*kept[4]), shown(5, 1));
}

TEST_F(HdrEvents, PictureThatIsKeptStaysAsItWasWhileLaterOnesAreGivenBack) {
    Listener listener(hdr_);
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    vrx::ComPtr<IDispatch> first;
    vrx::ComPtr<IDispatch> last;
    listener.onRefresh = [&](IDispatch& picture) {
        last = vrx::ComPtr<IDispatch>(&picture);
        if (!first) first = last;
    };
    for (const float exposure : {1.0F, 2.0F, 3.0F, 4.0F}) {
        hdr_.view(exposure, 1);
        EXPECT_EQ(hdr_->Get_BMP(), S_OK);
        EXPECT_EQ(pixelsOf(*last), shown(exposure, 1));
    }
    EXPECT_EQ(pixelsOf(*first), shown(1, 1));
}

TEST_F(HdrEvents, RefreshShowsTheRowsDecodedSoFarWhateverElseWasPaintedMeanwhile) {
    const auto paint = [this](float left, long top, float width, long height) {
        vrx::ComPtr<IPictureDisp> picture;
        EXPECT_EQ(hdr_->Get_Picture(left, top, 3, 200, 0, 0, width, height, picture.put()), S_OK);
    };
    const std::function<void()> meanwhile[] = {
        [] {},
        [&] { paint(0, 0, 3, 200); },
        [&] { paint(1, 7, 3, 200); },
        [&] { paint(0, 0, 9, 9); },
        [&] { paint(-1, 0, 0, 0); },
    };
    Listener listener(hdr_);
    const std::vector<Pixels> expected = {shown(0, 1, 1), shown(0, 1, 81), shown(0, 1, 161), shown(0, 1)};
    for (const auto& paintSomethingElse : meanwhile) {
        for (const bool holds : {false, true}) {
            vrx::ComPtr<IDispatch> held;
            std::vector<Pixels> seen;
            listener.onRefresh = [&](IDispatch& picture) {
                seen.push_back(pixelsOf(picture));
                if (holds) held = vrx::ComPtr<IDispatch>(&picture);
                paintSomethingElse();
            };
            for (int load = 0; load < 2; ++load) {
                seen.clear();
                EXPECT_EQ(hdr_.preview(file_), S_OK);
                EXPECT_EQ(seen, expected);
            }
        }
    }
}

TEST_F(HdrEvents, PictureOutlivesTheObject) {
    vrx::ComPtr<IDispatch> kept;
    {
        const Hdr other;
        Listener listener(other);
        other.view(0, 1);
        listener.onRefresh = [&](IDispatch& picture) { kept = vrx::ComPtr<IDispatch>(&picture); };
        EXPECT_EQ(other.preview(file_), S_OK);
    }
    ASSERT_TRUE(kept);
    EXPECT_EQ(pixelsOf(*kept), shown(0, 1));
}

TEST_F(HdrEvents, OfAPreviewIgnoreAutomaticExposition) {
    hdr_->put_AutoExposition(VARIANT_TRUE);
    Listener listener(hdr_);
    Pixels last;
    listener.onRefresh = [&](IDispatch& picture) { last = pixelsOf(picture); };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(last, shown(0, 1));
}

TEST_F(HdrEvents, ReachEverySink) {
    const Listener first(hdr_);
    const Listener second(hdr_);
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(first.log, "header(3,200) refresh refresh refresh refresh finish ");
    EXPECT_EQ(second.log, first.log);
}

TEST_F(HdrEvents, GoOnWhenASinkFails) {
    for (const HRESULT answer : {E_FAIL, DISP_E_EXCEPTION, DISP_E_MEMBERNOTFOUND}) {
        Listener failing(hdr_);
        const Listener other(hdr_);
        failing.answer = answer;
        EXPECT_EQ(hdr_.preview(file_), S_OK);
        EXPECT_EQ(failing.log, "header(3,200) refresh refresh refresh refresh finish ");
        EXPECT_EQ(other.log, failing.log);
    }
}

TEST_F(HdrEvents, EndForASinkThatUnadvisesItselfInsideOne) {
    Listener leaving(hdr_);
    const Listener staying(hdr_);
    leaving.onRefresh = [&](IDispatch&) { leaving.disconnect(); };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(leaving.log, "header(3,200) refresh ");
    EXPECT_EQ(staying.log, "header(3,200) refresh refresh refresh refresh finish ");
}

TEST_F(HdrEvents, OfGetBmpIsOneRefresh) {
    hdr_.set(tall_);
    hdr_.view(2, 1.5F);
    Listener listener(hdr_);
    Pixels seen;
    listener.onRefresh = [&](IDispatch& picture) { seen = pixelsOf(picture); };
    EXPECT_EQ(host::call(hdr_.late(), L"Get_BMP").code, S_OK);
    EXPECT_EQ(listener.log, "refresh ");
    EXPECT_EQ(seen, shown(2, 1.5F));
}

TEST_F(HdrEvents, ThatCallGetBmpForEverEndWithOutOfStackSpace) {
    hdr_.set(RgbePicture(2, 2));
    Listener listener(hdr_);
    std::vector<Failure> failures;
    listener.onRefresh = [&](IDispatch&) {
        const Failure failure = failureOf(host::call(hdr_.late(), L"Get_BMP"));
        if (failure != host::kNone) failures.push_back(failure);
    };
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(failures, std::vector<Failure>({{28, L"CVrxHDR", L"Out of stack space"}}));
    listener.onRefresh = {};
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
}

}  // namespace
