// The pattern editor as CVrxPattern shows it: its stops, its buttons, its keys and what the caller gets.

#include <gtest/gtest.h>

#include <vector>

#include "dialogs/resource.h"
#include "failure.h"
#include "pattern_driver.h"
#include "rgbe_picture.h"

using host::eventually;
using host::PatternWindow;
using host::Pixels;

namespace {

constexpr wchar_t kRedWhiteBlue[] = L"0-255;500-16777215;1000-16711680;";
constexpr wchar_t kRedBlue[] = L"0-255;1000-16711680;";

class PatternEditorWindow : public testing::Test {
  protected:
    const vrx::ComPtr<_CVrxPattern> pattern_ = host::create(L"VrxCommon.CVrxPattern").as<_CVrxPattern>();

    /// On a ramp of 200 columns: five thousandths are one column.
    [[nodiscard]] std::wstring edit(const std::wstring& text,
                                    const std::function<void(const PatternWindow&)>& act) const {
        return host::editPattern(*pattern_, text, [&](const PatternWindow& editor) {
            editor.setRampWidth(200);
            act(editor);
        });
    }

    /// The colours that the host gets for a pattern, as a row of a bitmap.
    [[nodiscard]] host::FileBytes expanded(const std::wstring& text, int width) const {
        vrx::Variant table;
        EXPECT_EQ(pattern_->Get_PatternFromString(vrx::Bstr(SysAllocString(text.c_str())).get(), width,
                                                  &table.get()),
                  S_OK);
        host::FileBytes row;
        for (LONG x = 0; x < width; ++x) {
            vrx::Variant color;
            SafeArrayGetElement(V_ARRAY(&table.get()), &x, &color.get());
            for (const int shift : {16, 8, 0})
                row.push_back(static_cast<std::uint8_t>(V_I4(&color.get()) >> shift));
        }
        row.resize(host::strideOf(width));
        return row;
    }

    void expectRamp(const Pixels& ramp, const std::wstring& text) const {
        const host::FileBytes row = expanded(text, ramp.width);
        host::FileBytes rows;
        for (int y = 0; y < ramp.height; ++y) rows.insert(rows.end(), row.begin(), row.end());
        EXPECT_GT(ramp.height, 10);
        EXPECT_EQ(ramp, host::pixels24(ramp.width, ramp.height, rows));
    }
};

TEST_F(PatternEditorWindow, ShowsAFlagForEachStopWhereItStands) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       ASSERT_EQ(editor.flagCount(), 3);
                       EXPECT_EQ(editor.column(0), 0);
                       EXPECT_EQ(editor.column(1), 200);
                       EXPECT_EQ(editor.column(2), 100);
                       EXPECT_EQ(editor.flagColor(0), RGB(255, 0, 0));
                       EXPECT_EQ(editor.flagColor(1), RGB(0, 0, 255));
                       EXPECT_EQ(editor.flagColor(2), RGB(255, 255, 255));
                       EXPECT_EQ(editor.selected(), 2);
                       EXPECT_EQ(editor.labels(), L"255 255 255");
                   }),
              kRedWhiteBlue);
}

TEST_F(PatternEditorWindow, ShowsTwoBlackEndsForTheEmptyString) {
    EXPECT_EQ(edit(L"",
                   [](const PatternWindow& editor) {
                       EXPECT_EQ(editor.flagCount(), 2);
                       EXPECT_EQ(editor.flagColor(0), RGB(0, 0, 0));
                       EXPECT_EQ(editor.selected(), 1);
                       EXPECT_EQ(editor.labels(), L"0 0 0");
                   }),
              L"0-0;1000-0;");
}

TEST_F(PatternEditorWindow, ShowsInItsRampWhatTheHostGetsForThePattern) {
    Pixels atFirst;
    Pixels afterADrag;
    const std::wstring dragged = edit(kRedWhiteBlue, [&](const PatternWindow& editor) {
        atFirst = editor.ramp();
        editor.drag(2, -37);
        afterADrag = editor.ramp();
    });
    EXPECT_EQ(dragged, L"0-255;315-16777215;1000-16711680;");
    expectRamp(atFirst, kRedWhiteBlue);
    expectRamp(afterADrag, dragged);
}

TEST_F(PatternEditorWindow, DrawsALineFromEachFlagToItsColumn) {
    static_cast<void>(edit(kRedWhiteBlue, [](const PatternWindow& editor) {
        editor.drag(2, -30);
        const Pixels shown = host::shownIn(editor.window());
        RECT ramp{};
        GetWindowRect(editor.control(IDC_PICPATTERN), &ramp);
        MapWindowPoints(nullptr, editor.window(), reinterpret_cast<POINT*>(&ramp), 2);
        const Pixels line = host::partOf(shown, ramp.left, ramp.bottom, 201, 1);
        std::vector<int> dark;
        for (std::size_t x = 0; x < 201; ++x) {
            if (line.bytes[3 * x] == 0 && line.bytes[3 * x + 1] == 0) dark.push_back(static_cast<int>(x));
        }
        EXPECT_EQ(dark, (std::vector<int>{0, 70, 200}));
    }));
}

TEST_F(PatternEditorWindow, TheTwoEndStopsCannotBeDraggedOrRemovedCmdMiniusWithAnEndStopSelectedDoesNothing) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       for (const int end : {0, 1}) {
                           editor.drag(end, end == 0 ? 40 : -40);
                           EXPECT_EQ(editor.column(end), end == 0 ? 0 : 200);
                           EXPECT_EQ(editor.selected(), end);
                           editor.click(IDC_CMDMINIUS);
                           EXPECT_EQ(editor.flagCount(), 3);
                           EXPECT_EQ(editor.selected(), end);
                       }
                   }),
              kRedWhiteBlue);
}

TEST_F(PatternEditorWindow,
       AStopDraggedPastTheRightEndStopsAtTheEndOneDraggedPastTheLeftEndStopsAtTheLeftEnd) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       editor.drag(2, 500);
                       EXPECT_EQ(editor.column(2), 200);
                       editor.drag(2, -500);
                       EXPECT_EQ(editor.column(2), 0);
                       editor.drag(2, 60);
                       EXPECT_EQ(editor.column(2), 60);
                   }),
              L"0-255;300-16777215;1000-16711680;");
}

TEST_F(PatternEditorWindow, CancelReturnsTheEmptyStringToLoadsCaller) {
    EXPECT_EQ(edit(kRedWhiteBlue, [](const PatternWindow& editor) { editor.click(IDC_COMMAND4); }), L"");
}

TEST_F(PatternEditorWindow, OkReturnsTheEditedPatternWithPositionsOnThe0To1000Scale) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       editor.drag(2, 1);
                       editor.click(IDC_COMMAND3);
                   }),
              L"0-255;505-16777215;1000-16711680;");
}

TEST_F(PatternEditorWindow, ClosingItByItsFrameIsTheSameAsOk) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       editor.drag(2, -1);
                       PostMessageW(editor.window(), WM_SYSCOMMAND, SC_CLOSE, 0);
                       EXPECT_TRUE(eventually([&] { return !IsWindow(editor.window()); }));
                   }),
              L"0-255;495-16777215;1000-16711680;");
}

TEST_F(PatternEditorWindow, EscIsTheSameAsCancel) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       editor.key(2, VK_ESCAPE);
                       EXPECT_TRUE(eventually([&] { return !IsWindow(editor.window()); }));
                   }),
              L"");
}

TEST_F(PatternEditorWindow, ADragFollowsThePointerAndShowsThePercentage) {
    static_cast<void>(edit(kRedWhiteBlue, [](const PatternWindow& editor) {
        EXPECT_EQ(editor.tip(), L"");
        editor.press(2);
        EXPECT_EQ(editor.tip(), L"50.0%");
        editor.dragTo(2, 31);
        EXPECT_EQ(editor.column(2), 131);
        EXPECT_EQ(editor.tip(), L"65.5%");
        editor.dragTo(2, 0);
        EXPECT_EQ(editor.column(2), 131);
        editor.dragTo(2, -1);
        EXPECT_EQ(editor.column(2), 130);
        editor.release(2);
        EXPECT_EQ(editor.tip(), L"");
    }));
}

TEST_F(PatternEditorWindow, NothingMovesWhileNoButtonIsDown) {
    static_cast<void>(edit(kRedWhiteBlue, [](const PatternWindow& editor) {
        editor.dragTo(2, 31);
        EXPECT_EQ(editor.column(2), 100);
        editor.drag(2, 5);
        SendMessageW(editor.flag(2), WM_MOUSEMOVE, 0, MAKELPARAM(50, 5));
        EXPECT_EQ(editor.column(2), 105);
    }));
}

TEST_F(PatternEditorWindow, PressingAFlagSelectsItsStop) {
    static_cast<void>(edit(kRedWhiteBlue, [](const PatternWindow& editor) {
        editor.press(1);
        EXPECT_EQ(editor.selected(), 1);
        EXPECT_EQ(editor.labels(), L"0 0 255");
        EXPECT_EQ(editor.tip(), L"100.0%");
        editor.release(1);
        editor.press(0);
        EXPECT_EQ(editor.selected(), 0);
        EXPECT_EQ(editor.labels(), L"255 0 0");
    }));
}

TEST_F(PatternEditorWindow, AnyMouseButtonsPressOnAFlagSelectsItAndShowsTheTipOnlyTheLeftOneDrags) {
    static_cast<void>(edit(kRedWhiteBlue, [](const PatternWindow& editor) {
        const auto send = [&](int index, UINT message, WPARAM buttons, int x) {
            SendMessageW(editor.flag(index), message, buttons, MAKELPARAM(x, 5));
        };
        struct Button {
            UINT down;
            UINT up;
            WPARAM held;
        };
        for (const auto& [down, up, held] : {Button{WM_RBUTTONDOWN, WM_RBUTTONUP, MK_RBUTTON},
                                             Button{WM_MBUTTONDOWN, WM_MBUTTONUP, MK_MBUTTON},
                                             Button{WM_XBUTTONDOWN, WM_XBUTTONUP, MK_XBUTTON1},
                                             Button{WM_RBUTTONDBLCLK, WM_RBUTTONUP, MK_RBUTTON}}) {
            send(1, down, held, 5);
            EXPECT_EQ(editor.selected(), 1);
            EXPECT_EQ(editor.labels(), L"0 0 255");
            EXPECT_EQ(editor.tip(), L"100.0%");
            send(1, up, 0, 5);
            EXPECT_EQ(editor.tip(), L"");
            send(2, down, held, 5);
            EXPECT_EQ(editor.selected(), 2);
            EXPECT_EQ(editor.tip(), L"50.0%");
            send(2, WM_MOUSEMOVE, held, 35);
            EXPECT_EQ(editor.column(2), 100);
            send(2, up, 0, 35);
            EXPECT_EQ(editor.tip(), L"");
        }
    }));
}

TEST_F(PatternEditorWindow, PlusAddsABlackStopNearTheMiddle) {
    EXPECT_EQ(edit(kRedBlue,
                   [](const PatternWindow& editor) {
                       editor.press(0);
                       editor.release(0);
                       editor.click(IDC_CMDPLUS);
                       ASSERT_EQ(editor.flagCount(), 3);
                       EXPECT_EQ(editor.column(2), 103);
                       EXPECT_EQ(editor.flagColor(2), RGB(0, 0, 0));
                       EXPECT_EQ(editor.selected(), 2);
                       EXPECT_EQ(editor.labels(), L"0 0 0");
                       EXPECT_EQ(GetWindow(editor.flag(2), GW_HWNDPREV), nullptr);
                   }),
              L"0-255;515-0;1000-16711680;");
}

TEST_F(PatternEditorWindow, MinusMovesTheLastStopIntoTheGap) {
    EXPECT_EQ(edit(L"0-255;250-65280;1000-16711680;750-65535;",
                   [](const PatternWindow& editor) {
                       editor.press(2);
                       editor.release(2);
                       editor.click(IDC_CMDMINIUS);
                       ASSERT_EQ(editor.flagCount(), 3);
                       EXPECT_EQ(editor.column(2), 150);
                       EXPECT_EQ(editor.flagColor(2), RGB(255, 255, 0));
                       EXPECT_EQ(editor.selected(), 2);
                       EXPECT_EQ(editor.labels(), L"255 255 0");
                   }),
              L"0-255;750-65535;1000-16711680;");
}

TEST_F(PatternEditorWindow, ClearLeavesTwoBlackEnds) {
    Pixels ramp;
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [&](const PatternWindow& editor) {
                       SendMessageW(editor.window(), WM_COMMAND, IDM_ITEMCLEAR, 0);
                       EXPECT_EQ(editor.flagCount(), 2);
                       EXPECT_EQ(editor.flagColor(1), RGB(0, 0, 0));
                       ramp = editor.ramp();
                   }),
              L"0-0;1000-0;");
    expectRamp(ramp, L"");
}

TEST_F(PatternEditorWindow, HasAFileMenu) {
    static_cast<void>(edit(kRedBlue, [](const PatternWindow& editor) {
        const HMENU bar = GetMenu(editor.window());
        const HMENU menu = GetSubMenu(bar, 0);
        const auto captionOf = [](HMENU of, UINT position) {
            wchar_t caption[32] = {};
            GetMenuStringW(of, position, caption, 32, MF_BYPOSITION);
            return std::wstring(caption);
        };
        EXPECT_EQ(captionOf(bar, 0), L"File");
        EXPECT_EQ(captionOf(menu, 0), L"Load");
        EXPECT_EQ(captionOf(menu, 1), L"Save");
        EXPECT_EQ(captionOf(menu, 2), L"Clear");
    }));
}

TEST_F(PatternEditorWindow, HasTheFocusOnTheSelectedFlagAtFirst) {
    static_cast<void>(edit(kRedWhiteBlue, [](const PatternWindow& editor) {
        GUITHREADINFO info{sizeof info, 0, {}, {}, {}, {}, {}, {}, {}};
        EXPECT_TRUE(eventually([&] {
            GetGUIThreadInfo(GetWindowThreadProcessId(editor.window(), nullptr), &info);
            return info.hwndFocus == editor.flag(2);
        }));
    }));
}

TEST_F(PatternEditorWindow, TheSelectedFlagIsTheOneThatTabComesTo) {
    static_cast<void>(edit(kRedWhiteBlue, [](const PatternWindow& editor) {
        editor.press(0);
        editor.release(0);
        EXPECT_EQ(GetNextDlgTabItem(editor.window(), editor.control(IDC_COMMAND4), FALSE), editor.flag(0));
        EXPECT_EQ(GetNextDlgTabItem(editor.window(), editor.flag(0), FALSE), editor.control(IDC_CMDPLUS));
    }));
}

TEST_F(PatternEditorWindow, ArrowsMoveTheStopThatHasTheFocus) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       editor.key(2, VK_RIGHT);
                       EXPECT_TRUE(eventually([&] { return editor.column(2) == 101; }));
                       for (int i = 0; i < 3; ++i) editor.key(2, VK_LEFT);
                       EXPECT_TRUE(eventually([&] { return editor.column(2) == 98; }));
                       EXPECT_TRUE(eventually([&] { return editor.tip().empty(); }));
                   }),
              L"0-255;490-16777215;1000-16711680;");
}

TEST_F(PatternEditorWindow, WithShiftArrowsMoveByTenWithCtrlTheySelectTheNeighbour) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       editor.type({VK_SHIFT, VK_RIGHT});
                       EXPECT_TRUE(eventually([&] { return editor.column(2) == 110; }));
                       editor.type({VK_CONTROL, VK_RIGHT});
                       EXPECT_TRUE(eventually([&] { return editor.selected() == 1; }));
                       editor.type({VK_CONTROL, VK_LEFT});
                       editor.type({VK_CONTROL, VK_LEFT});
                       EXPECT_TRUE(eventually([&] { return editor.selected() == 0; }));
                       EXPECT_EQ(editor.labels(), L"255 0 0");
                       editor.type({VK_LEFT});
                       editor.type({VK_DELETE});
                   }),
              L"0-255;550-16777215;1000-16711680;");
}

TEST_F(PatternEditorWindow, TabLeadsToTheButtons) {
    EXPECT_EQ(edit(kRedBlue,
                   [](const PatternWindow& editor) {
                       editor.type({VK_TAB});
                       editor.type({VK_SPACE});
                       EXPECT_TRUE(eventually([&] { return editor.flagCount() == 3; }));
                       editor.type({VK_TAB});
                       editor.type({VK_TAB});
                       editor.type({VK_RETURN});
                       EXPECT_TRUE(eventually([&] { return !IsWindow(editor.window()); }));
                   }),
              L"0-255;515-0;1000-16711680;");
}

TEST_F(PatternEditorWindow, AltLeadsToTheMenu) {
    EXPECT_EQ(edit(kRedBlue,
                   [](const PatternWindow& editor) {
                       editor.type({VK_MENU});
                       editor.type({VK_DOWN});
                       editor.type({VK_UP});
                       editor.type({VK_RETURN});
                       EXPECT_TRUE(eventually([&] { return editor.flagColor(0) == RGB(0, 0, 0); }));
                   }),
              L"0-0;1000-0;");
}

TEST_F(PatternEditorWindow, InsertAddsAStopDeleteRemovesIt) {
    EXPECT_EQ(edit(kRedBlue,
                   [](const PatternWindow& editor) {
                       editor.press(1);
                       editor.release(1);
                       editor.key(1, VK_INSERT);
                       EXPECT_TRUE(eventually([&] { return editor.selected() == 2; }));
                       editor.key(2, VK_INSERT);
                       EXPECT_TRUE(eventually([&] { return editor.selected() == 3; }));
                       editor.key(3, VK_DELETE);
                       EXPECT_TRUE(eventually([&] { return editor.flagCount() == 3; }));
                       editor.key(2, VK_DELETE);
                       EXPECT_TRUE(eventually([&] { return editor.flagCount() == 2; }));
                       EXPECT_TRUE(eventually([&] { return editor.selected() == 1; }));
                       editor.key(1, VK_DELETE);
                       editor.key(1, VK_LEFT);
                   }),
              kRedBlue);
}

}  // namespace
