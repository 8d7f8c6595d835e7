// CVrxHDR: objects that their host releases while they work, and what objects leave behind.

#include <gtest/gtest.h>

#include "gdi_handles.h"
#include "hdr_host.h"
#include "kernel_handles.h"
#include "picture_pixels.h"

using host::Hdr;
using host::Listener;
using host::RgbePicture;

namespace {

constexpr int kCreations = 1000;

/// An object that only its host's reference and calls hold, and the host's listener.
class ReleasedHdr : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const RgbePicture tall_{3, 200};
    const std::wstring file_ = folder_.write(L"tall.hdr", tall_.file());
    Hdr hdr_;
    Listener listener_{hdr_};

    void SetUp() override {
        ASSERT_EQ(host::component().canUnload(), S_FALSE);
        hdr_.view(0, 1);
        listener_.holdNothing();
    }
    /// No object is left.
    static void expectGone() {
        CoFreeUnusedLibraries();
        EXPECT_EQ(host::component().canUnload(), S_OK);
    }
};

TEST_F(ReleasedHdr, InOnRefreshEndsThePreviewAtOnce) {
    listener_.onRefresh = [&](IDispatch&) { hdr_.release(); };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.headers, 1);
    EXPECT_LE(listener_.refreshes, 2);
    expectGone();
}

TEST_F(ReleasedHdr, InOnHeaderLoadedEndsThePreviewAtOnce) {
    listener_.onHeader = [&] { hdr_.release(); };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_LE(listener_.refreshes, 1);
    expectGone();
}

TEST_F(ReleasedHdr, InOnHeaderLoadedOfALoadIsGoneAfterwards) {
    listener_.onHeader = [&] { hdr_.release(); };
    EXPECT_EQ(hdr_.load(file_), S_OK);
    EXPECT_EQ(listener_.headers, 1);
    expectGone();
}

TEST_F(ReleasedHdr, InOnFinishIsGoneAfterwards) {
    listener_.onFinish = [&] { hdr_.release(); };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, "header(3,200) refresh refresh refresh refresh finish ");
    expectGone();
}

TEST_F(ReleasedHdr, AfterAskingForARestartDoesNotRunAgain) {
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes > 1) return;
        hdr_->put_Exposure(3);
        hdr_.release();
    };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.headers, 1);
    expectGone();
}

TEST_F(ReleasedHdr, InALateBoundCallIsGoneAfterwards) {
    IDispatch& late = hdr_.late();
    listener_.onRefresh = [&](IDispatch&) { hdr_.release(); };
    EXPECT_EQ(host::call(late, L"Get_Preview", {host::Text(file_.c_str())}).code, S_OK);
    EXPECT_LE(listener_.refreshes, 2);
    expectGone();
}

TEST_F(ReleasedHdr, InTheRefreshOfGetBmpIsGoneAfterwards) {
    hdr_.set(tall_);
    host::Pixels seen;
    listener_.onRefresh = [&](IDispatch& picture) {
        hdr_.release();
        seen = host::pixelsOf(picture);
    };
    EXPECT_EQ(hdr_->Get_BMP(), S_OK);
    EXPECT_EQ(seen, host::pixels24(3, 200, tall_.bitmap(0, 1)));
    expectGone();
}

TEST_F(ReleasedHdr, WhileAnotherHolderIsLeftGoesOn) {
    vrx::ComPtr<IDispatch> other(&hdr_.late());
    listener_.onRefresh = [&](IDispatch&) { hdr_.release(); };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, "header(3,200) refresh refresh refresh refresh finish ");
    other = {};
    expectGone();
}

void createLoadAndPaint(const std::wstring& good, const std::wstring& bad) {
    const Hdr hdr;
    EXPECT_EQ(hdr.load(good), S_OK);
    EXPECT_NE(hdr.load(bad), S_OK);
    vrx::ComPtr<IPictureDisp> small;
    EXPECT_EQ(hdr->Get_Picture(0, 0, 1, 1, 0, 0, 4, 4, small.put()), S_OK);
    vrx::ComPtr<IPictureDisp> large;
    EXPECT_EQ(hdr->Get_Picture(0, 0, 1, 1, 0, 0, 8, 8, large.put()), S_OK);
}

TEST(Handles, AreCounted) {
    const std::size_t kernelBefore = host::kernelHandles();
    const std::size_t gdiBefore = host::freeGdiHandles();
    const vrx::KernelHandle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    const vrx::Bitmap bitmap(CreateBitmap(1, 1, 1, 1, nullptr));
    EXPECT_EQ(host::kernelHandles(), kernelBefore + 1);
    EXPECT_LT(host::freeGdiHandles(), gdiBefore);
}

TEST(Handles, StayWhereTheyWereAfter1000CreationsAndLoads) {
    const host::ThrowawayFolder folder;
    const std::wstring good = folder.write(L"good.hdr", RgbePicture(2, 2).file());
    const std::wstring bad = folder.write(L"bad.hdr", {});
    createLoadAndPaint(good, bad);
    const std::size_t kernelBefore = host::kernelHandles();
    const std::size_t gdiBefore = host::freeGdiHandles();
    for (int i = 0; i < kCreations; ++i) createLoadAndPaint(good, bad);
    EXPECT_EQ(host::kernelHandles(), kernelBefore);
    EXPECT_EQ(host::freeGdiHandles(), gdiBefore);
}

TEST(Handles, StayWhereTheyWereAfterPreviewsAndConversions) {
    const host::ThrowawayFolder folder;
    const std::wstring file = folder.write(L"good.hdr", RgbePicture(2, 100).file());
    const auto work = [&] {
        const Hdr hdr;
        hdr.view(0, 1);
        std::vector<vrx::ComPtr<IDispatch>> kept;
        Listener listener(hdr);
        listener.onRefresh = [&](IDispatch& picture) { kept.emplace_back(&picture); };
        EXPECT_EQ(hdr.preview(file), S_OK);
        EXPECT_EQ(hdr.convert(folder / L"out.bmp"), S_OK);
        EXPECT_EQ(hdr.save(folder / L"out.hdr"), S_OK);
    };
    work();
    const std::size_t kernelBefore = host::kernelHandles();
    const std::size_t gdiBefore = host::freeGdiHandles();
    for (int i = 0; i < 20; ++i) work();
    EXPECT_EQ(host::kernelHandles(), kernelBefore);
    EXPECT_EQ(host::freeGdiHandles(), gdiBefore);
}

}  // namespace
