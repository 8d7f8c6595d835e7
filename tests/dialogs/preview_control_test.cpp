// The preview control: what it shows of picture files and of an HDR object's loads, and its automation.

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "common/message_loop.h"
#include "dialogs/VrxPreviewImg.h"
#include "hdr_host.h"
#include "sink.h"
#include "window_driver.h"

using host::Pixels;
using host::RgbePicture;
using vrx::Bstr;
using vrx::ComPtr;
using Control = vrx::VrxPreviewImg;

namespace {

constexpr COLORREF kRed = RGB(200, 30, 40);
constexpr int kSide = 200;

Pixels uniform(int width, int height, COLORREF color) {
    host::FileBytes file = host::bmpFile(width, height, color);
    file.erase(file.begin(), file.begin() + 54);
    return host::pixels24(width, height, std::move(file));
}

class Preview : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const HWND parent_ = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 400,
                                         400, nullptr, nullptr, nullptr, nullptr);
    ComPtr<Control> control_{new Control};
    const std::wstring wide_ = folder_.write(L"wide.bmp", host::bmpFile(40, 20, kRed));

    void SetUp() override { control_->create(parent_, 1, {0, 0, kSide, kSide}); }
    void TearDown() override {
        control_ = {};
        DestroyWindow(parent_);
    }

    void setFile(const std::wstring& name) const {
        EXPECT_EQ(control_->put_File(Bstr(SysAllocString(name.c_str())).get()), S_OK);
    }
    [[nodiscard]] std::wstring file() const {
        Bstr name;
        control_->get_File(name.put());
        return name.get();
    }
    [[nodiscard]] ComPtr<IPictureDisp> picture() const {
        ComPtr<IPictureDisp> shown;
        EXPECT_EQ(control_->get_Picture(shown.put()), S_OK);
        return shown;
    }
    [[nodiscard]] Pixels shown() const {
        static_cast<void>(vrx::doEvents());
        UpdateWindow(control_->window());
        return host::shownIn(control_->window());
    }
    /// Whether the frame is this one, all in one colour, and the colour nowhere around.
    void expectFrame(int left, int top, int width, int height, COLORREF color) const {
        const Pixels all = shown();
        EXPECT_EQ(host::partOf(all, left, top, width, height), uniform(width, height, color));
        EXPECT_NE(host::partOf(all, left, top - 1, 1, 1), uniform(1, 1, color));
        EXPECT_NE(host::partOf(all, left - 1, top, 1, 1), uniform(1, 1, color));
    }
};

TEST_F(Preview, IsEmptyAtFirst) {
    VARIANT_BOOL hdr = VARIANT_TRUE;
    short pointer = 7;
    long width = 7;
    EXPECT_EQ(file(), L"");
    EXPECT_EQ(control_->get_HDRFile(&hdr), S_OK);
    EXPECT_EQ(control_->get_MousePointer(&pointer), S_OK);
    EXPECT_EQ(control_->get_ImageWidth(&width), S_OK);
    EXPECT_EQ(hdr, VARIANT_FALSE);
    EXPECT_EQ(pointer, 0);
    EXPECT_EQ(width, 0);
    EXPECT_FALSE(picture());
    EXPECT_EQ(control_->FitPicture(), S_OK);
}

TEST_F(Preview, FitsAPictureFileIntoItsArea) {
    setFile(wide_);
    EXPECT_EQ(file(), wide_);
    long width = 0;
    long height = 0;
    control_->get_ImageWidth(&width);
    control_->get_ImageHeight(&height);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 20);
    expectFrame(0, 50, 200, 100, kRed);
}

TEST_F(Preview, SettingFileToAnEmptyStringLeavesThePictureShownUnchanged) {
    setFile(wide_);
    const auto before = picture();
    setFile(L"");
    EXPECT_EQ(file(), L"");
    EXPECT_EQ(picture().get(), before.get());
    expectFrame(0, 50, 200, 100, kRed);
}

TEST_F(Preview, SettingFileToAFileThatIsNotAPictureLeavesThePreviousPictureShownAndMakesFileReadError) {
    setFile(wide_);
    const auto before = picture();
    setFile(folder_.write(L"text.bmp", {'n', 'o', 'n', 'e'}));
    EXPECT_EQ(file(), L"Error");
    EXPECT_EQ(picture().get(), before.get());
    setFile(folder_ / L"missing.bmp");
    EXPECT_EQ(file(), L"Error");
    expectFrame(0, 50, 200, 100, kRed);
}

TEST_F(Preview, ResizingAnEmptyControlMakesImgViewCoverTheWholeControl) {
    MoveWindow(control_->window(), 0, 0, 100, 60, TRUE);
    // A picture that is put, not loaded, is shown in the frame as it is.
    const ComPtr<Control> other(new Control);
    EXPECT_EQ(other->put_File(Bstr(SysAllocString(wide_.c_str())).get()), S_OK);
    ComPtr<IPictureDisp> loaded;
    other->get_Picture(loaded.put());
    EXPECT_EQ(control_->put_Picture(loaded.get()), S_OK);
    EXPECT_EQ(shown(), uniform(100, 60, kRed));
}

TEST_F(Preview, FitsItsPictureAgainWhenItIsResized) {
    setFile(wide_);
    MoveWindow(control_->window(), 0, 0, 100, 90, TRUE);
    expectFrame(0, 20, 100, 50, kRed);
}

TEST_F(Preview,
       APictureWiderThanHighInASquareBoxFillsTheWidthOneHigherThanWideFillsTheHeightEachCentredTheOtherWay) {
    setFile(wide_);
    expectFrame(0, 50, 200, 100, kRed);
    setFile(folder_.write(L"high.bmp", host::bmpFile(20, 40, kRed)));
    expectFrame(50, 0, 100, 200, kRed);
}

TEST_F(Preview, APictureWithExactlyTheBoxsProportionsFillsTheBoxInAWideAndInATallBox) {
    MoveWindow(control_->window(), 0, 0, 80, 40, TRUE);
    setFile(wide_);
    EXPECT_EQ(shown(), uniform(80, 40, kRed));
    MoveWindow(control_->window(), 0, 0, 40, 80, TRUE);
    setFile(folder_.write(L"high.bmp", host::bmpFile(20, 40, kRed)));
    EXPECT_EQ(shown(), uniform(40, 80, kRed));
}

TEST_F(Preview, FramesAPictureOfAGivenSizeInPixels) {
    setFile(wide_);
    EXPECT_EQ(control_->Get_Prop(30, 60), S_OK);
    expectFrame(50, 0, 100, 200, kRed);
}

TEST_F(Preview, PlacesAFrameInABoxOfTwips) {
    setFile(wide_);
    // 100 pixels at the 96 dots per inch of the test's display.
    long boxWidth = 1500;
    long boxHeight = boxWidth;
    long pictureWidth = 4;
    long pictureHeight = 1;
    EXPECT_EQ(control_->Get_Proportion(&boxWidth, &boxHeight, &pictureWidth, &pictureHeight), S_OK);
    // 100 wide and 25 high, from 37.5 down: half a pixel goes to the even one.
    expectFrame(0, 38, 100, 25, kRed);
}

TEST_F(Preview, RaisesClickWhenThePictureIsClicked) {
    int clicks = 0;
    const auto sink = host::Sink::make(DIID___VrxPreviewImg, [&](DISPID event, const DISPPARAMS& arguments) {
        if (event == 1 && arguments.cArgs == 0) ++clicks;
        return S_OK;
    });
    setFile(wide_);
    DWORD cookie = 0;
    {
        const auto point =
            host::connectionPoint(static_cast<_VrxPreviewImg&>(*control_.get()), DIID___VrxPreviewImg);
        ASSERT_TRUE(point);
        point->Advise(sink.get(), &cookie);
    }
    host::click(control_->window(), 100, 20);
    static_cast<void>(vrx::doEvents());
    EXPECT_EQ(clicks, 0);
    host::click(control_->window(), 100, 100);
    static_cast<void>(vrx::doEvents());
    EXPECT_EQ(clicks, 1);
}

TEST_F(Preview, AnswersLateBoundCalls) {
    IDispatch& late = static_cast<_VrxPreviewImg&>(*control_.get());
    EXPECT_EQ(host::put(late, L"File", host::Text(wide_.c_str())).code, S_OK);
    const host::Outcome width = host::get(late, L"ImageWidth");
    EXPECT_EQ(width.code, S_OK);
    EXPECT_EQ(V_I4(&width.result.get()), 40);
}

/// With an object for HDR files.
class HdrPreview : public Preview {
  protected:
    host::Hdr hdr_;
    const std::wstring file_ =
        folder_.write(L"wide.hdr", RgbePicture(40, 20).fill({128, 64, 32, 136}).file());
    const std::wstring tall_ = folder_.write(L"tall.hdr", RgbePicture(8, 400).file());

    void SetUp() override {
        Preview::SetUp();
        hdr_.view(0, 1);
        EXPECT_EQ(control_->putref_objHDR(hdr_.operator->()), S_OK);
        EXPECT_EQ(control_->put_HDRFile(VARIANT_TRUE), S_OK);
    }
};

TEST_F(Preview, ReadsErrorForAnHdrFileWithoutAnObject) {
    control_->put_HDRFile(VARIANT_TRUE);
    setFile(L"picture.hdr");
    EXPECT_EQ(file(), L"Error");
}

TEST_F(HdrPreview, ShowsTheFileAsTheObjectLoadsIt) {
    setFile(file_);
    EXPECT_EQ(file(), file_);
    // 128.5, 64.5 and 32.5, halves to even.
    expectFrame(0, 50, 200, 100, RGB(128, 64, 32));
}

TEST_F(HdrPreview, ClearsThePictureWhenTheHeaderIsRead) {
    control_->put_HDRFile(VARIANT_FALSE);
    setFile(wide_);
    control_->put_HDRFile(VARIANT_TRUE);
    host::Listener listener(hdr_);
    bool cleared = false;
    listener.onHeader = [&] { cleared = !picture(); };
    setFile(file_);
    EXPECT_TRUE(cleared);
    EXPECT_TRUE(picture());
}

TEST_F(HdrPreview, ReadsErrorForAFileThatIsNoHdrFile) {
    setFile(wide_);
    EXPECT_EQ(file(), L"Error");
}

TEST_F(HdrPreview, ShowsTheSecondFileWhenItIsSetWhileTheFirstOneLoads) {
    host::Listener listener(hdr_);
    listener.onRefresh = [&](IDispatch&) {
        if (listener.refreshes == 1) setFile(file_);
    };
    setFile(tall_);
    EXPECT_EQ(listener.headers, 2);
    EXPECT_EQ(hdr_.dimX(), 40);
    EXPECT_EQ(file(), file_);
    expectFrame(0, 50, 200, 100, RGB(128, 64, 32));
}

TEST_F(HdrPreview, EndsTheLoadWhenItGoes) {
    host::Listener listener(hdr_);
    listener.onRefresh = [&](IDispatch&) { control_ = {}; };
    EXPECT_EQ(hdr_.preview(tall_), S_OK);
    EXPECT_EQ(listener.refreshes, 2);
    EXPECT_FALSE(hdr_.loading());
}

/// A bag that notes what is written, in its order.
class Bag final : public IPropertyBag {
  public:
    std::vector<std::wstring> written;
    std::map<std::wstring, short> numbers;

    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
        const auto found = numbers.find(name);
        if (found == numbers.end()) return E_INVALIDARG;
        V_VT(value) = VT_I2;
        V_I2(value) = found->second;
        return S_OK;
    }
    STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) override {
        written.emplace_back(name);
        if (V_VT(value) == VT_I2) numbers[name] = V_I2(value);
        return S_OK;
    }
};

TEST_F(Preview, KeepsItsTwoPropertiesInAPropertyBag) {
    Bag bag;
    control_->put_MousePointer(2);
    EXPECT_EQ(control_->Save(&bag, TRUE, TRUE), S_OK);
    EXPECT_EQ(bag.written, (std::vector<std::wstring>{L"MousePointer", L"MouseIcon"}));
    control_->put_MousePointer(0);
    EXPECT_EQ(control_->Load(&bag, nullptr), S_OK);
    short pointer = 0;
    control_->get_MousePointer(&pointer);
    EXPECT_EQ(pointer, 2);
}

TEST_F(Preview, TellsItsClassToWhoeverAsksForPersistenceOfAnyKind) {
    CLSID classId{};
    const auto persistence = ComPtr<_VrxPreviewImg>(control_.get()).as<IPersist>();
    ASSERT_TRUE(persistence);
    EXPECT_EQ(persistence->GetClassID(&classId), S_OK);
    EXPECT_EQ(classId, CLSID_VrxPreviewImg);
}

TEST_F(Preview, SavesOnlyWhatHasChanged) {
    Bag bag;
    EXPECT_EQ(control_->Save(&bag, TRUE, FALSE), S_OK);
    EXPECT_TRUE(bag.written.empty());
    control_->put_MousePointer(2);
    EXPECT_EQ(control_->Save(&bag, TRUE, FALSE), S_OK);
    control_->putref_MouseIcon(nullptr);
    EXPECT_EQ(control_->Save(&bag, TRUE, FALSE), S_OK);
    EXPECT_EQ(bag.written, (std::vector<std::wstring>{L"MousePointer", L"MouseIcon"}));
}

TEST_F(Preview, TakesItsDefaultsFromAnEmptyBag) {
    Bag bag;
    control_->put_MousePointer(2);
    EXPECT_EQ(control_->Load(&bag, nullptr), S_OK);
    short pointer = 7;
    control_->get_MousePointer(&pointer);
    EXPECT_EQ(pointer, 0);
}

}  // namespace
