// What the zoom window leaves behind: nothing.

#include <gtest/gtest.h>

#include "leaks.h"
#include "viewer.h"

namespace {

class ViewerLeaves : public host::Viewer {
  protected:
    template <typename See>
    void expectNothingAfterMany(See see) {
        host::expectNothingLeft([&] {
            const host::WindowDriver driver(host::kViewer, [](HWND) {});
            EXPECT_EQ(see(), S_OK);
        });
        WNDCLASSW description{};
        EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(host::component().path().c_str()),
                                   L"VrxCommon.PictureView", &description));
    }
};

TEST_F(ViewerLeaves, NothingBehindAfterTwoHundredPictures) {
    expectNothingAfterMany([&] { return see(bmp_); });
}

TEST_F(ViewerLeaves, NothingBehindAfterTwoHundredHdrPictures) {
    expectNothingAfterMany([&] { return seeHdr(rgbe_); });
}

}  // namespace
