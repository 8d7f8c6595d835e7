// The pattern editor and the system's dialogs: pattern files and colours.

#include <gtest/gtest.h>

#include <vector>

#include "com/object_base.h"
#include "dialogs/resource.h"
#include "message_box_watcher.h"
#include "pattern/editor/frmPattern.h"
#include "pattern_driver.h"
#include "throwaway_folder.h"

using host::eventually;
using host::FileBytes;
using host::kFileNameEdit;
using host::PatternWindow;

namespace {

constexpr wchar_t kRedWhiteBlue[] = L"0-255;500-16777215;1000-16711680;";

// The edit fields of the system's colour dialog.
constexpr int kRedEdit = 706;
constexpr int kGreenEdit = 707;
constexpr int kBlueEdit = 708;
constexpr int kFileTypes = 0x470;

FileBytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

std::wstring currentFolder() {
    wchar_t folder[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, folder);
    return folder;
}

std::wstring colorsIn(HWND dialog) {
    return host::textOf(dialog, kRedEdit) + L" " + host::textOf(dialog, kGreenEdit) + L" " +
           host::textOf(dialog, kBlueEdit);
}

/// The dialog computes each field anew from the others until it has settled.
void setColors(HWND dialog, const std::wstring& red, const std::wstring& green, const std::wstring& blue) {
    EXPECT_TRUE(eventually([&] {
        host::setText(dialog, kRedEdit, red);
        host::setText(dialog, kGreenEdit, green);
        host::setText(dialog, kBlueEdit, blue);
        return colorsIn(dialog) == red + L" " + green + L" " + blue;
    }));
}

class PatternEditorDialogs : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const vrx::ComPtr<_CVrxPattern> pattern_ = host::create(L"VrxCommon.CVrxPattern").as<_CVrxPattern>();

    [[nodiscard]] std::wstring edit(const std::wstring& text,
                                    const std::function<void(const PatternWindow&)>& act) const {
        return host::editPattern(*pattern_, text, [&](const PatternWindow& editor) {
            editor.setRampWidth(200);
            act(editor);
        });
    }

    /// What is left of the first pattern after this file has been loaded.
    [[nodiscard]] std::wstring afterLoading(const std::wstring& path) const {
        return edit(kRedWhiteBlue,
                    [&](const PatternWindow& editor) { editor.chooseFile(IDM_ITEMLOAD, path); });
    }
    [[nodiscard]] std::wstring afterLoading(const std::string& content) const {
        return afterLoading(folder_.write(L"pattern.VGR", bytesOf(content)));
    }
};

TEST_F(PatternEditorDialogs, ADoubleClickOnAFlagChoosesTheColorOfItsStop) {
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [](const PatternWindow& editor) {
                       editor.press(0);
                       editor.release(0);
                       const HWND dialog = editor.open(
                           [&] { PostMessageW(editor.flag(0), WM_LBUTTONDBLCLK, MK_LBUTTON, 0); });
                       EXPECT_EQ(colorsIn(dialog), L"255 0 0");
                       setColors(dialog, L"10", L"20", L"30");
                       editor.end(dialog, IDOK);
                       EXPECT_TRUE(eventually([&] { return editor.labels() == L"10 20 30"; }));
                       EXPECT_TRUE(eventually([&] { return editor.flagColor(0) == RGB(10, 20, 30); }));
                   }),
              // 10 + 256 x 20 + 65536 x 30
              L"0-1971210;500-16777215;1000-16711680;");
}

TEST_F(PatternEditorDialogs, CancellingTheColorDialogKeepsTheColor) {
    EXPECT_EQ(edit(L"0--1;1000-16777471;",
                   [](const PatternWindow& editor) {
                       for (const int end : {0, 1}) {
                           const HWND dialog = editor.open([&] { editor.key(end, VK_F2); });
                           setColors(dialog, L"10", L"20", L"30");
                           editor.end(dialog, IDCANCEL);
                       }
                   }),
              L"0--1;1000-16777471;");
}

TEST_F(PatternEditorDialogs, EnterOnAFlagChoosesTheColorOfTheSelectedStop) {
    EXPECT_EQ(edit(L"0-255;1000-16711680;",
                   [](const PatternWindow& editor) {
                       const HWND dialog = editor.open([&] { editor.key(1, VK_RETURN); });
                       EXPECT_EQ(colorsIn(dialog), L"0 0 255");
                       setColors(dialog, L"0", L"1", L"0");
                       editor.end(dialog, IDOK);
                       EXPECT_TRUE(eventually([&] { return editor.labels() == L"0 1 0"; }));
                   }),
              L"0-255;1000-256;");
}

TEST_F(PatternEditorDialogs, LoadReadsTheFirstLineOfAPatternFile) {
    EXPECT_EQ(afterLoading("0-1;250-2;1000-3;\r\n0-7;1000-8;\r\n"), L"0-1;250-2;1000-3;");
    EXPECT_EQ(afterLoading("0-1;250-2;1000-3;"), L"0-1;250-2;1000-3;");
}

TEST_F(PatternEditorDialogs, LoadShowsTheNewStops) {
    const std::wstring path = folder_.write(L"two.VGR", bytesOf("0-65280;1000-255;\r\n"));
    static_cast<void>(edit(kRedWhiteBlue, [&](const PatternWindow& editor) {
        editor.chooseFile(IDM_ITEMLOAD, path);
        EXPECT_TRUE(eventually([&] { return editor.flagCount() == 2; }));
        EXPECT_TRUE(eventually([&] { return editor.labels() == L"255 0 0"; }));
        EXPECT_TRUE(eventually([&] { return editor.flagColor(0) == RGB(0, 255, 0); }));
    }));
}

void expectOneBox(host::MessageBoxWatcher& watcher, const std::wstring& text) {
    const std::vector<host::MessageBox> boxes = watcher.boxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes.front().text, text);
    EXPECT_EQ(boxes.front().title, L"Errore");
    EXPECT_TRUE(boxes.front().critical);
    EXPECT_TRUE(boxes.front().onlyOk);
}

TEST_F(PatternEditorDialogs, AFileThatCannotBeReadIsToldInAMessageBoxAndThePatternIsKept) {
    for (const auto& [name, reason] : {std::pair(L"missing.VGR", L"File not found"),
                                       std::pair(L"no folder\\missing.VGR", L"Path not found")}) {
        host::MessageBoxWatcher watcher;
        EXPECT_EQ(afterLoading(folder_ / name), kRedWhiteBlue);
        expectOneBox(watcher, L"Cannot read " + (folder_ / name) + L": " + reason);
    }
}

TEST_F(PatternEditorDialogs, AnEmptyFileKeepsThePattern) { EXPECT_EQ(afterLoading(""), kRedWhiteBlue); }

TEST_F(PatternEditorDialogs, AFileWithANumberThatIsTooLargeIsToldAndThePatternIsKept) {
    host::MessageBoxWatcher watcher;
    EXPECT_EQ(afterLoading("0-1;99999999999-2;\r\n"), kRedWhiteBlue);
    expectOneBox(watcher, L"Cannot read " + (folder_ / L"pattern.VGR") + L": Overflow");
}

TEST_F(PatternEditorDialogs, AFileMayHave3000Stops) {
    std::string content = "0-255;";
    for (int i = 0; i < 2998; ++i) content += "5-5;";
    const std::wstring path = folder_.write(L"many.VGR", bytesOf(content + "1000-16711680;"));
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [&](const PatternWindow& editor) {
                       editor.chooseFile(IDM_ITEMLOAD, path);
                       EXPECT_TRUE(eventually([&] { return editor.flag(2999) != nullptr; }));
                       EXPECT_EQ(editor.flag(3000), nullptr);
                   }),
              L"0-255;5-5;1000-16711680;");
}

const vrx::ClassIdentity kFailingIdentity = {u"CVrxPattern", CLSID_CVrxPattern, IID__CVrxPattern};

/// A pattern object of the host's that fails from some moment on.
class FailingPattern final : public vrx::ObjectBase<_CVrxPattern> {
  public:
    FailingPattern() : ObjectBase(kFailingIdentity) {}

    bool fails = false;

    STDMETHODIMP get_REGKEY(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_REGKEY(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP Load(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP Get_PatternFromString(BSTR, long, VARIANT*) override {
        if (fails) throw vrx::platformError(vrx::Platform::OutOfMemory);
        return S_OK;
    }
};

TEST_F(PatternEditorDialogs, AFailureWhileTheEditorRepaintsAfterAColorWasChosenEndsQuietlyWithoutLosingEdits) {
    const vrx::ComPtr<FailingPattern> object(new FailingPattern);
    vrx::frmPattern form;
    form.setObjPattern(vrx::ComPtr<_CVrxPattern>(object.get()));
    form.prepare(u"0-255;500-16777215;1000-16711680;");
    {
        const host::WindowDriver driver(L"Pattern", [&](HWND window) {
            const PatternWindow editor(window);
            editor.setRampWidth(200);
            editor.drag(2, 20);
            const HWND dialog = editor.open([&] { editor.key(2, VK_F2); });
            setColors(dialog, L"1", L"0", L"0");
            object->fails = true;
            editor.end(dialog, IDOK);
            object->fails = false;
            EXPECT_TRUE(IsWindowVisible(window));
        });
        EXPECT_NO_THROW(form.showModal());
        form.unload();
    }
    EXPECT_EQ(form.pattern(), u"0-255;600-1;1000-16711680;");
}

TEST_F(PatternEditorDialogs, AFileWithoutAPatternReadsAsBlack) {
    EXPECT_EQ(afterLoading("<html>\n"), L"0-0;1000-0;");
}

TEST_F(PatternEditorDialogs, SaveWritesThePatternAsOneLine) {
    const std::wstring path = folder_.write(L"old.VGR", bytesOf(std::string(1000, 'x')));
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [&](const PatternWindow& editor) {
                       editor.drag(2, 1);
                       editor.chooseFile(IDM_ITEMSAVE, path);
                       EXPECT_TRUE(eventually([&] {
                           return host::readBytes(path) == bytesOf("0-255;505-16777215;1000-16711680;\r\n");
                       }));
                   }),
              L"0-255;505-16777215;1000-16711680;");
    EXPECT_EQ(folder_.names(), (std::vector<std::wstring>{L"old.VGR"}));
}

TEST_F(PatternEditorDialogs, SaveAddsTheExtensionThatTheUserLeavesOut) {
    static_cast<void>(edit(kRedWhiteBlue, [&](const PatternWindow& editor) {
        editor.chooseFile(IDM_ITEMSAVE, folder_ / L"new");
        EXPECT_TRUE(eventually([&] { return host::exists(folder_ / L"new.VGR"); }));
    }));
}

TEST_F(PatternEditorDialogs, SavingOverAReadOnlyFileIsToldAndTheFileKeepsItsOldContents) {
    host::MessageBoxWatcher watcher;
    const std::wstring path = folder_.write(L"fixed.VGR", bytesOf("0-1;\r\n"));
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(
        edit(kRedWhiteBlue, [&](const PatternWindow& editor) { editor.chooseFile(IDM_ITEMSAVE, path); }),
        kRedWhiteBlue);
    EXPECT_EQ(host::readBytes(path), bytesOf("0-1;\r\n"));
    expectOneBox(watcher, L"Cannot write " + path + L": Path/File access error");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(PatternEditorDialogs, SavingIntoAMissingFolderIsTold) {
    host::MessageBoxWatcher watcher;
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [&](const PatternWindow& editor) {
                       const HWND dialog = editor.openByMenu(IDM_ITEMSAVE);
                       host::setText(dialog, kFileNameEdit, folder_ / L"none\\x.VGR");
                       editor.end(dialog, IDOK);
                   }),
              kRedWhiteBlue);
    expectOneBox(watcher, L"Cannot write " + (folder_ / L"none\\x.VGR") + L": Path not found");
}

TEST_F(PatternEditorDialogs, CancellingTheFileDialogsEndsQuietly) {
    host::MessageBoxWatcher watcher;
    EXPECT_EQ(edit(kRedWhiteBlue,
                   [&](const PatternWindow& editor) {
                       for (const int item : {IDM_ITEMLOAD, IDM_ITEMSAVE}) {
                           const HWND dialog = editor.openByMenu(item);
                           host::setText(dialog, kFileNameEdit, folder_ / L"x.VGR");
                           editor.end(dialog, IDCANCEL);
                       }
                   }),
              kRedWhiteBlue);
    EXPECT_TRUE(folder_.names().empty());
    EXPECT_TRUE(watcher.boxes().empty());
}

TEST_F(PatternEditorDialogs, TheFileDialogsHaveTheirTitlesTheFilterAndTheLastName) {
    const std::wstring path = folder_.write(L"blue.VGR", bytesOf("0-1;1000-2;\r\n"));
    static_cast<void>(edit(kRedWhiteBlue, [&](const PatternWindow& editor) {
        editor.chooseFile(IDM_ITEMLOAD, path);
        HWND dialog = editor.openByMenu(IDM_ITEMSAVE);
        EXPECT_EQ(host::captionOf(dialog), L"Save Pattern");
        EXPECT_EQ(host::textOf(dialog, kFileNameEdit), L"blue.VGR");
        wchar_t filter[64] = {};
        SendDlgItemMessageW(dialog, kFileTypes, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(filter));
        EXPECT_STREQ(filter, L"Pattern (VGR)");
        // The folder of the last file is where a name alone leads.
        host::setText(dialog, kFileNameEdit, L"beside");
        editor.end(dialog, IDOK);
        EXPECT_TRUE(eventually([&] { return host::exists(folder_ / L"beside.VGR"); }));
        dialog = editor.openByMenu(IDM_ITEMLOAD);
        EXPECT_EQ(host::captionOf(dialog), L"Load Pattern");
        EXPECT_EQ(host::textOf(dialog, kFileNameEdit), L"beside.VGR");
        editor.end(dialog, IDCANCEL);
    }));
}

TEST_F(PatternEditorDialogs, TheProcessesCurrentFolderStaysWhereItIs) {
    const std::wstring before = currentFolder();
    ASSERT_NE(before, folder_.path());
    static_cast<void>(afterLoading("0-1;1000-2;\r\n"));
    EXPECT_EQ(currentFolder(), before);
    static_cast<void>(edit(kRedWhiteBlue, [&](const PatternWindow& editor) {
        editor.chooseFile(IDM_ITEMSAVE, folder_ / L"saved.VGR");
    }));
    EXPECT_EQ(currentFolder(), before);
}

}  // namespace
