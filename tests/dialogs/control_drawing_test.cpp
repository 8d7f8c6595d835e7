// What the control looks like: in its window, on a device of its container's, and to screen readers.

#include <oleacc.h>

#include "common/device_context.h"
#include "control_fixture.h"
#include "hdr_host.h"

using host::ControlTest;
using vrx::ComPtr;

namespace {

constexpr COLORREF kRed = RGB(200, 30, 40);
constexpr COLORREF kBack = RGB(10, 20, 30);
constexpr COLORREF kFore = RGB(250, 240, 10);

VARIANT color(COLORREF value) { return host::integer(static_cast<long>(value)); }

/// A device in memory, filled with white.
class Device {
  public:
    Device(int width, int height) : dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        bitmap_ = vrx::Bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, nullptr, nullptr, 0));
        previous_ = SelectObject(dc_.get(), bitmap_.get());
        PatBlt(dc_.get(), 0, 0, width, height, WHITENESS);
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device() { SelectObject(dc_.get(), previous_); }

    [[nodiscard]] HDC dc() const { return dc_.get(); }
    [[nodiscard]] COLORREF at(int x, int y) const { return GetPixel(dc_.get(), x, y); }

  private:
    vrx::MemoryDc dc_;
    vrx::Bitmap bitmap_;
    HGDIOBJ previous_;
};

class Drawn : public ControlTest {
  protected:
    void SetUp() override {
        ControlTest::SetUp();
        container_.ambient[DISPID_AMBIENT_BACKCOLOR] = color(kBack);
        container_.ambient[DISPID_AMBIENT_FORECOLOR] = color(kFore);
        ASSERT_EQ(ole_->SetClientSite(container_.site()), S_OK);
        SIZEL size{2540, 2540};  // 96 x 96 pixels
        ASSERT_EQ(ole_->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    }
    HRESULT draw(HDC dc, const RECTL& bounds) {
        return as<IViewObject2>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr,
                                        nullptr, 0);
    }
    void design(const wchar_t* name) {
        name_ = vrx::Variant(host::Text(name));
        container_.ambient[DISPID_AMBIENT_DISPLAYNAME] = name_.get();
        container_.ambient[DISPID_AMBIENT_USERMODE] = host::truthAmbient(false);
        as<IOleControl>()->OnAmbientPropertyChange(DISPID_UNKNOWN);
    }

    vrx::Variant name_;
};

TEST_F(Drawn, BeforeActivationThePictureStandsFittedInTheContainersColour) {
    setFile(picture(kRed));
    const Device device(200, 200);
    EXPECT_EQ(draw(device.dc(), {20, 20, 116, 116}), S_OK);
    EXPECT_EQ(device.at(19, 60), RGB(255, 255, 255));
    EXPECT_EQ(device.at(20, 20), kBack);
    // Twice as wide as high: 96 x 48 pixels from 24 down.
    EXPECT_EQ(device.at(20, 20 + 23), kBack);
    EXPECT_EQ(device.at(20, 20 + 24), kRed);
    EXPECT_EQ(device.at(115, 20 + 71), kRed);
    EXPECT_EQ(device.at(115, 20 + 72), kBack);
    EXPECT_EQ(device.at(116, 60), RGB(255, 255, 255));
}

TEST_F(Drawn, OnAFinerDeviceItIsStretched) {
    setFile(picture(kRed));
    const Device device(960, 480);
    EXPECT_EQ(draw(device.dc(), {0, 0, 960, 480}), S_OK);
    EXPECT_EQ(device.at(480, 119), kBack);
    EXPECT_EQ(device.at(480, 120), kRed);
    EXPECT_EQ(device.at(0, 359), kRed);
    EXPECT_EQ(device.at(0, 360), kBack);
}

TEST_F(Drawn, InUnitsOfTheDeviceItStandsInItsBoundsAndLeavesTheDeviceAsItWas) {
    setFile(picture(kRed));
    const Device device(200, 200);
    SetMapMode(device.dc(), MM_ANISOTROPIC);
    SetWindowExtEx(device.dc(), 2000, -2000, nullptr);
    SetViewportExtEx(device.dc(), 200, 200, nullptr);
    SetViewportOrgEx(device.dc(), 0, 200, nullptr);
    // From the top left corner at (200, 1800) upside down to (1160, 840): pixels 20 to 116.
    EXPECT_EQ(draw(device.dc(), {200, 1800, 1160, 840}), S_OK);
    EXPECT_EQ(GetMapMode(device.dc()), MM_ANISOTROPIC);
    SetMapMode(device.dc(), MM_TEXT);
    SetViewportOrgEx(device.dc(), 0, 0, nullptr);
    EXPECT_EQ(device.at(20, 43), kBack);
    EXPECT_EQ(device.at(20, 44), kRed);
    EXPECT_EQ(device.at(115, 91), kRed);
}

TEST_F(Drawn, IntoAMetafileItIsPlayedInAnySize) {
    setFile(picture(kRed));
    const HDC metafileDc = CreateMetaFileW(nullptr);
    SetMapMode(metafileDc, MM_ANISOTROPIC);
    SetWindowOrgEx(metafileDc, 0, 0, nullptr);
    SetWindowExtEx(metafileDc, 96, 96, nullptr);
    EXPECT_EQ(draw(metafileDc, {0, 0, 96, 96}), S_OK);
    const HMETAFILE metafile = CloseMetaFile(metafileDc);
    ASSERT_TRUE(metafile);
    const Device device(192, 192);
    SetMapMode(device.dc(), MM_ANISOTROPIC);
    SetViewportExtEx(device.dc(), 192, 192, nullptr);
    EXPECT_TRUE(PlayMetaFile(device.dc(), metafile));
    SetMapMode(device.dc(), MM_TEXT);
    EXPECT_EQ(device.at(96, 40), kBack);
    EXPECT_EQ(device.at(96, 96), kRed);
    DeleteMetaFile(metafile);
}

TEST_F(Drawn, IntoAnEnhancedMetafileAsWell) {
    setFile(picture(kRed));
    const HDC metafileDc = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(draw(metafileDc, {0, 0, 96, 96}), S_OK);
    const HENHMETAFILE metafile = CloseEnhMetaFile(metafileDc);
    ASSERT_TRUE(metafile);
    const Device device(96, 96);
    const RECT bounds{0, 0, 96, 96};
    EXPECT_TRUE(PlayEnhMetaFile(device.dc(), metafile, &bounds));
    EXPECT_EQ(device.at(48, 48), kRed);
    DeleteEnhMetaFile(metafile);
}

TEST_F(Drawn, WhileTheFormIsDesignedAFrameStandsWithTheNameInPlaceOfThePicture) {
    setFile(picture(kRed));
    design(L"Preview1");
    const Device device(96, 96);
    EXPECT_EQ(draw(device.dc(), {0, 0, 96, 96}), S_OK);
    EXPECT_EQ(device.at(0, 0), kFore);
    EXPECT_EQ(device.at(95, 95), kFore);
    EXPECT_EQ(device.at(5, 5), kBack);
    int lettered = 0;
    for (int y = 35; y < 61; ++y) {
        for (int x = 5; x < 91; ++x) {
            EXPECT_NE(device.at(x, y), kRed);
            if (device.at(x, y) != kBack) ++lettered;
        }
    }
    EXPECT_GT(lettered, 40);
}

TEST_F(Drawn, WhileTheFormIsDesignedTheSizeStandsBelowTheNameInTheUnitsOfTheForm) {
    const auto linesOf = [&] {
        const Device device(96, 96);
        draw(device.dc(), {0, 0, 96, 96});
        int lines = 0;
        bool lettered = false;
        for (int y = 2; y < 94; ++y) {
            bool now = false;
            for (int x = 2; x < 94; ++x) now = now || device.at(x, y) != kBack;
            if (now && !lettered) ++lines;
            lettered = now;
        }
        return lines;
    };
    design(L"Xx");
    EXPECT_EQ(linesOf(), 1);
    const vrx::Variant units(host::Text(L"cm"));
    container_.ambient[DISPID_AMBIENT_SCALEUNITS] = units.get();
    as<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_SCALEUNITS);
    EXPECT_EQ(linesOf(), 2);
}

TEST_F(Drawn, AfterFreezingItStaysAsItWas) {
    setFile(picture(kRed));
    const auto view = as<IViewObject2>();
    DWORD cookie = 0;
    DWORD again = 0;
    EXPECT_EQ(view->Freeze(DVASPECT_CONTENT, -1, nullptr, &cookie), S_OK);
    EXPECT_EQ(view->Freeze(DVASPECT_CONTENT, -1, nullptr, &again), VIEW_S_ALREADY_FROZEN);
    setFile(picture(RGB(0, 255, 0)));
    const Device device(96, 96);
    draw(device.dc(), {0, 0, 96, 96});
    EXPECT_EQ(device.at(48, 48), kRed);
    EXPECT_EQ(view->Unfreeze(cookie), S_OK);
    EXPECT_EQ(view->Unfreeze(cookie), OLE_E_NOCONNECTION);
    draw(device.dc(), {0, 0, 96, 96});
    EXPECT_EQ(device.at(48, 48), RGB(0, 255, 0));
}

TEST_F(Drawn, TellsWhoDrawsItThatItHasChanged) {
    const auto view = as<IViewObject2>();
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_PRIMEFIRST, &container_), S_OK);
    EXPECT_EQ(container_.log, "OnViewChange ");
    container_.log.clear();
    setFile(picture(kRed));
    EXPECT_NE(container_.log.find("OnViewChange"), std::string::npos);
    container_.log.clear();
    const Device device(10, 10);
    EXPECT_EQ(draw(device.dc(), {0, 0, 10, 10}), S_OK);
    EXPECT_EQ(container_.log, "");  // or it would have to be drawn for ever
    ComPtr<IAdviseSink> sink;
    DWORD aspects = 0;
    EXPECT_EQ(view->GetAdvise(&aspects, nullptr, sink.put()), S_OK);
    EXPECT_EQ(aspects, static_cast<DWORD>(DVASPECT_CONTENT));
    EXPECT_EQ(sink.get(), static_cast<IAdviseSink*>(&container_));
    EXPECT_EQ(view->GetAdvise(nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(view->SetAdvise(0, 0, nullptr), S_OK);
}

TEST_F(Drawn, RefusesWhatItCannotDraw) {
    const Device device(10, 10);
    const RECTL bounds{0, 0, 10, 10};
    const auto view = as<IViewObject2>();
    EXPECT_EQ(
        view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, device.dc(), &bounds, nullptr, nullptr, 0),
        DV_E_DVASPECT);
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, device.dc(), nullptr, nullptr,
                         nullptr, 0),
              E_INVALIDARG);
    EXPECT_EQ(draw(nullptr, bounds), E_INVALIDARG);
    EXPECT_EQ(draw(device.dc(), {0, 0, 0, 0}), S_OK);
    EXPECT_EQ(draw(device.dc(), {10, 10, -10, -10}), S_OK);
    LOGPALETTE* colors = nullptr;
    EXPECT_EQ(view->GetColorSet(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, &colors), S_FALSE);
}

TEST_F(Drawn, AnHdrFileStandsFramedFromItsHeaderOn) {
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    const host::Hdr hdr;
    hdr.view(0, 1);
    control_->putref_objHDR(hdr.operator->());
    control_->put_HDRFile(VARIANT_TRUE);
    setFile(folder_.write(L"wide.hdr", host::RgbePicture(40, 20).fill({128, 64, 32, 136}).file()));
    host::pumpMessages();
    UpdateWindow(window());
    const host::Pixels shown = host::shownIn(window());
    // The frame of 100 x 80 pixels holds 100 x 50.
    EXPECT_EQ(host::partOf(shown, 0, 15, 1, 1), host::partOf(shown, 99, 64, 1, 1));
    EXPECT_NE(host::partOf(shown, 0, 14, 1, 1), host::partOf(shown, 0, 15, 1, 1));
}

/// Run at several resolutions of the screen.
class AtEveryResolution : public Drawn {
  protected:
    static int dpi() {
        const vrx::WindowDc screen(nullptr);
        return GetDeviceCaps(screen.get(), LOGPIXELSX);
    }
};

TEST_F(AtEveryResolution, AnInchIsAnInchAndAPixelOfThePictureOne) {
    setFile(picture(kRed));
    long width = 0;
    control_->get_ImageWidth(&width);
    EXPECT_EQ(width, 40);
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    SIZEL size{5080, 2540};
    EXPECT_EQ(ole_->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    EXPECT_EQ(container_.wantedPlace.right - container_.wantedPlace.left, 2 * dpi());
    EXPECT_EQ(container_.wantedPlace.bottom - container_.wantedPlace.top, dpi());
}

TEST_F(AtEveryResolution, ThePictureIsFittedToThePixel) {
    setFile(picture(kRed));
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    for (const int side : {60, 97, 151}) {
        const RECT place{0, 0, side, side};
        as<IOleInPlaceObject>()->SetObjectRects(&place, nullptr);
        const Device device(side, side);
        draw(device.dc(), {0, 0, side, side});
        int high = 0;
        for (int y = 0; y < side; ++y) high += device.at(side / 2, y) == kRed ? 1 : 0;
        EXPECT_EQ(device.at(0, side / 2), kRed);
        EXPECT_EQ(device.at(side - 1, side / 2), kRed);
        EXPECT_NEAR(high, side / 2.0, 1.0) << side;
    }
}

TEST_F(AtEveryResolution, TheLabelIsAsHighAsTextsAre) {
    design(L"X");
    const int inch = dpi();
    const Device device(inch, inch);
    draw(device.dc(), {0, 0, inch, inch});
    int first = inch;
    int last = 0;
    for (int y = 2; y < inch - 2; ++y) {
        for (int x = 2; x < inch - 2; ++x) {
            if (device.at(x, y) == kBack) continue;
            first = std::min(first, y);
            last = std::max(last, y);
        }
    }
    // A capital letter of 13 pixels' text at 96 dots per inch is 7 to 11 pixels high.
    EXPECT_GE(last - first + 1, 7 * inch / 96);
    EXPECT_LE(last - first + 1, 11 * inch / 96 + 1);
}

class Accessible : public Drawn {
  protected:
    [[nodiscard]] ComPtr<IAccessible> view() const {
        ComPtr<IAccessible> found;
        AccessibleObjectFromWindow(window(), static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                   reinterpret_cast<void**>(found.put()));
        return found;
    }
    static std::wstring nameOf(IAccessible& view) {
        vrx::Bstr name;
        view.get_accName(host::integer(CHILDID_SELF), name.put());
        return name ? name.get() : L"";
    }
};

TEST_F(Accessible, IsAGraphicWithTheNameThatTheContainerGives) {
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    ASSERT_TRUE(view());
    EXPECT_EQ(nameOf(*view()), L"Preview");
    vrx::Variant role;
    EXPECT_EQ(view()->get_accRole(host::integer(CHILDID_SELF), &role.get()), S_OK);
    EXPECT_EQ(V_I4(&role.get()), ROLE_SYSTEM_GRAPHIC);
    name_ = vrx::Variant(host::Text(L"imgSky"));
    container_.ambient[DISPID_AMBIENT_DISPLAYNAME] = name_.get();
    as<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_DISPLAYNAME);
    EXPECT_EQ(nameOf(*view()), L"imgSky");
}

TEST_F(Accessible, CanBeClicked) {
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    int clicks = 0;
    const auto sink = host::Sink::make(DIID___VrxPreviewImg, [&](DISPID, const DISPPARAMS&) {
        ++clicks;
        return S_OK;
    });
    DWORD cookie = 0;
    const auto point = host::connectionPoint(*control_.get(), DIID___VrxPreviewImg);
    point->Advise(sink.get(), &cookie);
    const auto accessible = view();
    EXPECT_EQ(accessible->accDoDefaultAction(host::integer(CHILDID_SELF)), S_OK);
    host::pumpMessages();
    EXPECT_EQ(clicks, 1);
    point->Unadvise(cookie);
    as<IOleInPlaceObject>()->InPlaceDeactivate();
    EXPECT_TRUE(FAILED(accessible->accDoDefaultAction(host::integer(CHILDID_SELF))));
}

}  // namespace
