// The pattern editor's window: its size, how it is called and what it leaves.

#include <gtest/gtest.h>

#include "dialogs/resource.h"
#include "failure.h"
#include "leaks.h"
#include "pattern_driver.h"

using host::eventually;
using host::Failure;
using host::PatternWindow;
using vrx::ComPtr;

namespace {

constexpr wchar_t kRedWhiteBlue[] = L"0-255;500-16777215;1000-16711680;";

ComPtr<_CVrxPattern> makePattern() { return host::create(L"VrxCommon.CVrxPattern").as<_CVrxPattern>(); }

class PatternEditorSize : public testing::Test {
  protected:
    const ComPtr<_CVrxPattern> pattern_ = makePattern();

    [[nodiscard]] std::wstring edit(const std::function<void(const PatternWindow&)>& act) const {
        return host::editPattern(*pattern_, kRedWhiteBlue, act);
    }
};

TEST_F(PatternEditorSize,
       DraggingTheBorderCannotMakeItNarrowerThan249OrWiderThan1000PixelsAndItsHeightStays144Pixels) {
    static_cast<void>(edit([](const PatternWindow& editor) {
        for (const auto& [columns, width] : {std::pair{2000, 1000L}, {-2000, 249L}, {51, 300L}}) {
            editor.dragCorner(columns, columns);
            // Some systems let the mouse reach the pixel before the largest size only.
            EXPECT_TRUE(eventually([&] { return editor.size().cx >= width - 1; })) << columns;
            EXPECT_TRUE(eventually([&] { return editor.size().cx <= width; })) << columns;
            EXPECT_EQ(editor.size().cy, 144);
        }
    }));
}

TEST_F(PatternEditorSize, HoldsForAProgramThatResizesIt) {
    static_cast<void>(edit([](const PatternWindow& editor) {
        const auto resized = [&](int width, int height) {
            editor.resize(width, height);
            return std::pair(editor.size().cx, editor.size().cy);
        };
        EXPECT_EQ(resized(100, 50), std::pair(249L, 144L));
        EXPECT_EQ(resized(500, 500), std::pair(500L, 144L));
        EXPECT_EQ(resized(1001, 145), std::pair(1000L, 144L));
    }));
}

TEST_F(PatternEditorSize, ItsLimitsAreOfTheWholeWindow) {
    static_cast<void>(edit([](const PatternWindow& editor) {
        MINMAXINFO limits{};
        limits.ptMaxSize = {1, 2};
        limits.ptMaxPosition = {3, 4};
        EXPECT_EQ(SendMessageW(editor.window(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits)), 0);
        EXPECT_EQ(limits.ptMinTrackSize.x, 249);
        EXPECT_EQ(limits.ptMinTrackSize.y, 144);
        EXPECT_EQ(limits.ptMaxTrackSize.x, 1000);
        EXPECT_EQ(limits.ptMaxTrackSize.y, 144);
        EXPECT_EQ(limits.ptMaxSize.x, 1);
        EXPECT_EQ(limits.ptMaxPosition.y, 4);
    }));
}

TEST_F(PatternEditorSize, Is249By144PixelsAtFirst) {
    static_cast<void>(edit([](const PatternWindow& editor) {
        EXPECT_EQ(editor.size().cx, 249);
        EXPECT_EQ(editor.size().cy, 144);
    }));
}

TEST_F(PatternEditorSize, ResizingTheWindowChangesTheRampWidthPatternsKeepTheirShape) {
    EXPECT_EQ(edit([](const PatternWindow& editor) {
                  editor.setRampWidth(200);
                  editor.drag(2, -40);
                  editor.setRampWidth(600);
                  EXPECT_EQ(editor.column(0), 0);
                  EXPECT_EQ(editor.column(1), 600);
                  EXPECT_EQ(editor.column(2), 180);
                  for (const int width : {333, 517, 190, 901, 200}) editor.setRampWidth(width);
                  EXPECT_EQ(editor.column(2), 60);
                  editor.setRampWidth(400);
              }),
              L"0-255;300-16777215;1000-16711680;");
}

TEST_F(PatternEditorSize, EveryControlIsInsideTheNarrowestWindow) {
    static_cast<void>(edit([](const PatternWindow& editor) {
        editor.resize(249);
        RECT inner{};
        GetClientRect(editor.window(), &inner);
        MapWindowPoints(editor.window(), nullptr, reinterpret_cast<POINT*>(&inner), 2);
        for (HWND child = GetWindow(editor.window(), GW_CHILD); child;
             child = GetWindow(child, GW_HWNDNEXT)) {
            RECT place{};
            RECT both{};
            GetWindowRect(child, &place);
            IntersectRect(&both, &place, &inner);
            EXPECT_TRUE(EqualRect(&both, &place)) << GetDlgCtrlID(child);
        }
    }));
}

TEST(PatternEditorCall, TakesAndLeavesALateBoundVariable) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    const host::WindowDriver driver(L"Pattern", [](HWND window) {
        const PatternWindow editor(window);
        editor.setRampWidth(200);
        editor.drag(2, 20);
    });
    vrx::Variant variable = vrx::makeText(u"0-255;500-16777215;1000-16711680;");
    EXPECT_EQ(host::call(*pattern, L"Load", {host::reference(variable.get())}).code, S_OK);
    EXPECT_EQ(vrx::toText(variable.get()), u"0-255;600-16777215;1000-16711680;");
}

TEST(PatternEditorCall, TakesAndLeavesALateBoundText) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    const host::WindowDriver driver(L"Pattern",
                                    [](HWND window) { PatternWindow(window).click(IDC_COMMAND4); });
    BSTR text = SysAllocString(kRedWhiteBlue);
    EXPECT_EQ(host::call(*pattern, L"Load", {host::typedReference(VT_BSTR, &text)}).code, S_OK);
    const vrx::Bstr owner(text);
    EXPECT_EQ(SysStringLen(text), 0U);
}

TEST(PatternEditorCall, TakesAnEmptyVariableForTheEmptyPattern) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    const host::WindowDriver driver(L"Pattern", [](HWND) {});
    vrx::Variant variable;
    EXPECT_EQ(host::call(*pattern, L"Load", {host::reference(variable.get())}).code, S_OK);
    EXPECT_EQ(vrx::toText(variable.get()), u"0-0;1000-0;");
}

TEST(PatternEditorCall, NeedsAPlaceForItsResult) { EXPECT_EQ(makePattern()->Load(nullptr), E_POINTER); }

TEST(PatternEditorCall, FailsWithOverflowForANumberThatIsTooLargeAndShowsNothing) {
    const auto pattern = makePattern();
    vrx::Bstr text(SysAllocString(L"0-1;99999999999-2;"));
    BSTR passed = text.release();
    EXPECT_EQ(host::failureOf(pattern->Load(&passed)), (Failure{6, L"CVrxPattern", L"Overflow"}));
    EXPECT_STREQ(passed, L"0-1;99999999999-2;");
    text.reset(passed);
    EXPECT_EQ(host::windowOf(GetCurrentThreadId(), L"Pattern"), nullptr);
    EXPECT_EQ(host::editPattern(*pattern, L"", [](const PatternWindow&) {}), L"0-0;1000-0;");
}

/// What a second object's Load gives while the editor is open, asked by a timer of the host.
Failure secondLoad;

void CALLBACK loadAgain(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    const auto second = makePattern();
    BSTR text = SysAllocString(L"0-1;");
    secondLoad = host::failureOf(second->Load(&text));
    SysFreeString(text);
}

TEST(PatternEditorCall, IsRefusedWhileTheEditorIsOpenAndDoesNotCloseIt) {
    const auto pattern = makePattern();
    secondLoad = {};
    SetTimer(nullptr, 0, 10, loadAgain);
    EXPECT_EQ(host::editPattern(*pattern, kRedWhiteBlue,
                                [](const PatternWindow& editor) {
                                    EXPECT_TRUE(eventually([] { return secondLoad.number != 0; }));
                                    EXPECT_TRUE(IsWindowVisible(editor.window()));
                                    EXPECT_EQ(editor.flagCount(), 3);
                                }),
              kRedWhiteBlue);
    EXPECT_EQ(secondLoad, (Failure{5, L"CVrxPattern", L"Invalid procedure call or argument"}));
}

/// The host's only reference.
_CVrxPattern* held;

void CALLBACK giveUp(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    held->Release();
}

TEST(PatternEditorCall, KeepsItsObjectUntilTheEditorIsClosed) {
    held = makePattern().detach();
    const host::WindowDriver driver(L"Pattern", [](HWND window) {
        const PatternWindow editor(window);
        editor.setRampWidth(200);
        editor.drag(2, 1);
    });
    SetTimer(nullptr, 0, 10, giveUp);
    BSTR text = SysAllocString(kRedWhiteBlue);
    EXPECT_EQ(held->Load(&text), S_OK);
    EXPECT_STREQ(text, L"0-255;505-16777215;1000-16711680;");
    SysFreeString(text);
}

TEST(PatternEditorCall, LeavesNothingBehindAfter200Openings) {
    const auto pattern = makePattern();
    host::expectNothingLeft([&] {
        static_cast<void>(host::editPattern(*pattern, kRedWhiteBlue, [](const PatternWindow& editor) {
            editor.click(IDC_CMDPLUS);
            editor.drag(3, 20);
            editor.click(IDC_CMDMINIUS);
        }));
    });
    WNDCLASSW description{};
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(host::component().path().c_str()), L"VrxCommon.Control",
                               &description));
}

}  // namespace
