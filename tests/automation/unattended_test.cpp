// A process without a user: on a window station that nobody sees nothing waits for an answer.

#include <gtest/gtest.h>

#include "failure.h"
#include "hdr_host.h"
#include "host.h"
#include "message_box_watcher.h"
#include "throwaway_folder.h"

namespace {

/// Puts the process on a window station of its own, as a service is.
class HiddenStation {
  public:
    HiddenStation() { SetProcessWindowStation(station_); }
    HiddenStation(const HiddenStation&) = delete;
    HiddenStation& operator=(const HiddenStation&) = delete;
    ~HiddenStation() {
        SetProcessWindowStation(before_);
        CloseWindowStation(station_);
    }

    [[nodiscard]] bool isHidden() const {
        USEROBJECTFLAGS flags{};
        return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                         nullptr) &&
               (flags.dwFlags & WSF_VISIBLE) == 0;
    }

  private:
    HWINSTA before_ = GetProcessWindowStation();
    HWINSTA station_ = CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
};

class Unattended : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(station_.isHidden()); }
    // A box that is shown nevertheless is answered, and fails the test.
    void TearDown() override { EXPECT_EQ(watcher_.boxes().size(), 0u); }

    host::MessageBoxWatcher watcher_{IDCANCEL};
    HiddenStation station_;
    host::ThrowawayFolder folder_;
};

struct DefaultAnswer {
    long style;
    long answer;
};

class UnattendedMessage : public Unattended, public testing::WithParamInterface<DefaultAnswer> {};

TEST_P(UnattendedMessage, ReturnsWhatItsDefaultButtonMeans) {
    const auto fun = host::create(L"VrxCommon.CVrxFun");
    const auto outcome =
        host::call(*fun, L"VrxMsgBox", {host::Text(L"Go on?"), host::integer(GetParam().style)});
    EXPECT_EQ(host::failureOf(outcome), host::kNone);
    EXPECT_EQ(V_I4(&outcome.result.get()), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(
    EveryKind, UnattendedMessage,
    testing::Values(DefaultAnswer{MB_OK, IDOK}, DefaultAnswer{MB_OK | MB_DEFBUTTON2, IDOK},
                    DefaultAnswer{MB_OKCANCEL, IDOK}, DefaultAnswer{MB_OKCANCEL | MB_DEFBUTTON2, IDCANCEL},
                    DefaultAnswer{MB_ABORTRETRYIGNORE, IDABORT},
                    DefaultAnswer{MB_ABORTRETRYIGNORE | MB_DEFBUTTON3, IDIGNORE},
                    DefaultAnswer{MB_YESNOCANCEL | MB_DEFBUTTON3 | MB_ICONERROR, IDCANCEL},
                    DefaultAnswer{MB_YESNO | MB_ICONQUESTION, IDYES},
                    DefaultAnswer{MB_YESNO | MB_DEFBUTTON2, IDNO},
                    DefaultAnswer{MB_YESNO | MB_DEFBUTTON3, IDYES}, DefaultAnswer{MB_RETRYCANCEL, IDRETRY},
                    DefaultAnswer{MB_CANCELTRYCONTINUE | MB_DEFBUTTON3, IDCONTINUE}));

TEST_F(Unattended, AFailedJpegFileRaisesItsErrorAtOnce) {
    host::Hdr hdr;
    const std::wstring bitmap = folder_ / L"picture.bmp";
    ASSERT_EQ(hdr.load(folder_.write(L"small.hdr", host::RgbePicture(4, 4).file())), S_OK);
    ASSERT_EQ(hdr.convert(bitmap, 1, 1), S_OK);
    const auto image = host::create(L"VrxCommon.CVrxImage");
    const auto outcome = host::call(
        *image, L"Convert_BMP_to_JPG",
        {host::Text((folder_ / L"nowhere\\a.jpg").c_str()), host::integer(90), host::Text(bitmap.c_str())});
    EXPECT_EQ(host::failureOf(outcome).number, 123);
}

TEST_F(Unattended, AFailedHdrFileRaisesItsErrorAtOnce) {
    host::Hdr hdr;
    ASSERT_EQ(hdr.load(folder_.write(L"small.hdr", host::RgbePicture(4, 4).file())), S_OK);
    EXPECT_EQ(host::failureOf(hdr.save(folder_ / L"nowhere\\a.hdr")).number, 1);
}

class UnattendedDialog : public Unattended, public testing::WithParamInterface<const wchar_t*> {};

TEST_P(UnattendedDialog, FailsInsteadOfWaiting) {
    const auto object = host::create(GetParam());
    const auto outcome = host::call(*object, L"Load", {host::omitted()});
    EXPECT_EQ(host::failureOf(outcome).number, 5);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, UnattendedDialog,
                         testing::Values(L"VrxCommon.CVrxHDR", L"VrxCommon.CVrxImage"));

TEST_F(Unattended, ThePatternEditorFailsInsteadOfWaiting) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    const auto outcome = host::call(*pattern, L"Load", {host::Text(L"0-255;1000-16711680;")});
    EXPECT_EQ(host::failureOf(outcome).number, 5);
}

}  // namespace
