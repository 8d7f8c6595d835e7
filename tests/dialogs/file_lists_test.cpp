// What the lists of folders and files show, and how their rows are found and look.

#include <algorithm>

#include "browser_dialog.h"
#include "common/message_loop.h"
#include "dialogs/resource.h"
#include "window_driver.h"

namespace {

class FileLists : public BrowserTest {
  protected:
    /// How far from the row's left edge the first pixel of another colour than the edge's is.
    [[nodiscard]] int indentation(const std::wstring& name) const {
        const Rows all = rows(IDC_DIR1);
        RECT place{};
        send(IDC_DIR1, LB_GETITEMRECT, static_cast<WPARAM>(std::ranges::find(all, name) - all.begin()),
             reinterpret_cast<LPARAM>(&place));
        const host::Pixels shown = host::shownIn(control(IDC_DIR1));
        const host::Pixels background =
            host::partOf(shown, place.left, place.top, 1, place.bottom - place.top);
        for (int x = place.left; x < place.right; ++x) {
            if (!(host::partOf(shown, x, place.top, 1, place.bottom - place.top) == background)) return x;
        }
        return -1;
    }
    void paint() const {
        UpdateWindow(dialog_.window());
        static_cast<void>(vrx::doEvents());
    }
};

TEST_F(FileLists, ShowTheFoldersFromTheRootOnAndThoseInsideSortedWithoutCase) {
    makeFolder(L"beta");
    makeFolder(L"Alpha");
    makeFolder(L"GAMMA");
    ASSERT_TRUE(open(folder_.path()));
    Rows expected{folder_.path().substr(0, 3)};
    std::wstring rest = folder_.path().substr(3) + L"\\";
    for (std::size_t end = rest.find(L'\\'); end != std::wstring::npos; end = rest.find(L'\\')) {
        expected.push_back(rest.substr(0, end));
        rest.erase(0, end + 1);
    }
    for (const wchar_t* name : {L"Alpha", L"beta", L"GAMMA"}) expected.emplace_back(name);
    EXPECT_EQ(rows(IDC_DIR1), expected);
}

TEST_F(FileLists, SelectTheRowOfTheFolderItself) {
    makeFolder(L"inner");
    ASSERT_TRUE(open(folder_.path()));
    EXPECT_EQ(send(IDC_DIR1, LB_GETCURSEL), std::ranges::count(folder_.path(), L'\\'));
}

TEST_F(FileLists, IndentFoldersByTheirDepth) {
    makeFolder(L"first");
    makeFolder(L"second");
    ASSERT_TRUE(open(folder_.path()));
    send(IDC_DIR1, LB_SETTOPINDEX, 0);
    send(IDC_DIR1, LB_SETCURSEL, static_cast<WPARAM>(-1));
    paint();
    const std::wstring root = folder_.path().substr(0, 3);
    ASSERT_GE(indentation(root), 0);
    EXPECT_GT(indentation(L"first"), indentation(root));
    EXPECT_EQ(indentation(L"first"), indentation(L"second"));
}

TEST_F(FileLists, KeepTheFolderItselfInSightBelowALongWay) {
    std::wstring path;
    for (int level = 0; level < 20; ++level) {
        path += (level ? L"\\" : L"") + std::to_wstring(level);
        makeFolder(path);
    }
    for (int i = 0; i < 30; ++i) makeFolder(path + L"\\inner" + std::to_wstring(i));
    ASSERT_TRUE(open(folder_ / path));
    const LRESULT own = send(IDC_DIR1, LB_GETCURSEL);
    EXPECT_EQ(send(IDC_DIR1, LB_GETTOPINDEX), own - 1);
}

TEST_F(FileLists, LeaveOutHiddenAndSystemFilesAndFolders) {
    for (const wchar_t* name : {L"a.hdr", L"hidden.hdr", L"system.hdr", L"readonly.hdr"}) makeFile(name);
    for (const wchar_t* name : {L"shown", L"hidden", L"system"}) makeFolder(name);
    for (const wchar_t* name : {L"hidden.hdr", L"hidden"}) mark(name, FILE_ATTRIBUTE_HIDDEN);
    for (const wchar_t* name : {L"system.hdr", L"system"}) mark(name, FILE_ATTRIBUTE_SYSTEM);
    mark(L"readonly.hdr", FILE_ATTRIBUTE_READONLY);
    ASSERT_TRUE(open(folder_.path()));
    EXPECT_EQ(files(), (Rows{L"a.hdr", L"readonly.hdr"}));
    EXPECT_EQ(foldersInside(), Rows{L"shown"});
}

TEST_F(FileLists, SortFilesWithoutCaseAndShowNoFolders) {
    for (const wchar_t* name : {L"b.hdr", L"A.HDR", L"C.Hdr"}) makeFile(name);
    makeFolder(L"folder.hdr");
    ASSERT_TRUE(open(folder_.path()));
    EXPECT_EQ(files(), (Rows{L"A.HDR", L"b.hdr", L"C.Hdr"}));
}

TEST_F(FileLists, ShowTheFilesOfEveryPatternOfAType) {
    for (const wchar_t* name : {L"a.jpg", L"b.JPEG", L"c.jpe", L"d.hdrx", L"e.hdr", L"plain"}) makeFile(name);
    ASSERT_TRUE(open(folder_.path()));
    EXPECT_EQ(files(), Rows{L"e.hdr"});
    chooseType(1);
    EXPECT_EQ(files(), (Rows{L"a.jpg", L"b.JPEG"}));
    chooseType(2);
    EXPECT_EQ(files(), (Rows{L"a.jpg", L"b.JPEG", L"c.jpe", L"d.hdrx", L"e.hdr", L"plain"}));
}

TEST_F(FileLists, ShowNamesOfAllLanguages) {
    const std::wstring name = L"\u65e5\u672c \u03b1\u00e9 \U0001f308.hdr";
    const std::wstring inner = L"\u0444\u043e\u0442\u043e";
    makeFile(name);
    makeFolder(inner);
    ASSERT_TRUE(open(folder_.path()));
    EXPECT_EQ(files(), Rows{name});
    select(IDC_FILE1, name);
    EXPECT_EQ(file(), name);
    doubleClick(IDC_DIR1, inner);
    EXPECT_EQ(folder(), folder_ / inner);
}

TEST_F(FileLists, SelectTheRowWhoseNameBeginsWithWhatIsTyped) {
    for (const wchar_t* name : {L"alpha", L"beta", L"zulu"}) makeFolder(name);
    for (const wchar_t* name : {L"one.hdr", L"two.hdr"}) makeFile(name);
    ASSERT_TRUE(open(folder_.path()));
    type(IDC_DIR1, L"z");
    EXPECT_EQ(selected(IDC_DIR1), L"zulu");
    type(IDC_FILE1, L"t");
    EXPECT_EQ(selected(IDC_FILE1), L"two.hdr");
    EXPECT_EQ(owner_.chosen, 1);
}

TEST_F(FileLists, ShowFiveThousandFilesInOrder) {
    for (int i = 4999; i >= 0; --i) makeFile(std::to_wstring(10'000 + i) + L".hdr");
    const DWORD start = GetTickCount();
    ASSERT_TRUE(open(folder_.path()));
    const DWORD taken = GetTickCount() - start;
    const Rows all = files();
    ASSERT_EQ(all.size(), 5000U);
    EXPECT_TRUE(std::ranges::is_sorted(all));
    EXPECT_EQ(all.front(), L"10000.hdr");
    EXPECT_EQ(all.back(), L"14999.hdr");
    EXPECT_LT(taken, 5'000U);
    RecordProperty("milliseconds", static_cast<int>(taken));
}

TEST_F(FileLists, GoToAnotherFolderWithNothingSelected) {
    makeFile(L"a.hdr");
    makeFolder(L"inner");
    makeFile(L"inner\\a.hdr");
    ASSERT_TRUE(open(folder_.path()));
    select(IDC_FILE1, L"a.hdr");
    ASSERT_TRUE(open(folder_ / L"inner"));
    EXPECT_EQ(file(), L"");
}

}  // namespace
