// How the component finds the codec library, what it hands over, and what it tells the user.

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <cstring>
#include <string>

#include "com/module.h"
#include "com/variant_convert.h"
#include "fake_codec/fake_codec.h"
#include "foreign_reader.h"
#include "ground/error.h"
#include "host.h"
#include "import_patch.h"
#include "message_box_watcher.h"
#include "raster/cDIBSection.h"
#include "raster/mIntelJPEGLibrary.h"
#include "section_rows.h"
#include "throwaway_folder.h"

using vrx::cDIBSection;
using vrx::SaveJPG;

namespace {

using fake_codec::Journal;
using fake_codec::RecordField;

std::u16string asText(const std::wstring& text) { return {text.begin(), text.end()}; }

/// The library's own folder becomes that of a module, for as long as this exists.
class OwnFolder {
  public:
    explicit OwnFolder(HMODULE module) : before_(vrx::moduleInstance()) { change(module); }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;
    ~OwnFolder() { change(before_); }

  private:
    /// The codec that is loaded is the other folder's.
    static void change(HINSTANCE module) {
        vrx::releaseCodec();
        vrx::storeModuleInstance(module);
    }

    HINSTANCE before_;
};

std::wstring fakeCodec(const wchar_t* name) { return host::programFolder() + L"\\" + name + L"\\ijl10.dll"; }

/// The component in a folder that has nothing else in it.
class FolderWithoutCodec {
  public:
    FolderWithoutCodec() : module_(load(folder_ / L"component.dll")), own_(module_.get()) {}

    [[nodiscard]] const host::ThrowawayFolder& folder() const { return folder_; }

  private:
    static HMODULE load(const std::wstring& path) {
        CopyFileW(fakeCodec(L"complete_codec").c_str(), path.c_str(), TRUE);
        return LoadLibraryW(path.c_str());
    }

    host::ThrowawayFolder folder_;
    vrx::Module module_;
    OwnFolder own_;
};

/// The real library in the system's folder.
class SystemCodec {
  public:
    SystemCodec() {
        std::array<wchar_t, MAX_PATH> system{};
        GetSystemDirectoryW(system.data(), MAX_PATH);
        path_ = std::wstring(system.data()) + L"\\ijl10.dll";
        copied_ = CopyFileW((host::programFolder() + L"\\ijl10.dll").c_str(), path_.c_str(), TRUE) != FALSE;
    }
    SystemCodec(const SystemCodec&) = delete;
    SystemCodec& operator=(const SystemCodec&) = delete;
    ~SystemCodec() {
        if (copied_) DeleteFileW(path_.c_str());
    }

    [[nodiscard]] bool copied() const { return copied_; }

  private:
    std::wstring path_;
    bool copied_;
};

/// The recording library beside the component.
class RecordingCodec {
  public:
    RecordingCodec() : module_(LoadLibraryW(fakeCodec(L"complete_codec").c_str())), own_(module_.get()) {
        using Answer = Journal*(WINAPI*)();
        const auto answer =
            reinterpret_cast<Answer>(reinterpret_cast<void*>(GetProcAddress(module_.get(), "codecJournal")));
        journal = answer();
        *journal = {};
    }

    /// A field of the record when it was written.
    template <class Value = std::int32_t>
    [[nodiscard]] Value field(RecordField field) const {
        Value value;
        std::memcpy(&value, journal->recordAtWrite + static_cast<std::size_t>(field), sizeof value);
        return value;
    }

    /// Puts back what the library had set.
    void forget(RecordField field, std::size_t size) const {
        std::memset(journal->recordAtWrite + static_cast<std::size_t>(field), fake_codec::kDefault, size);
    }

    Journal* journal;

  private:
    vrx::Module module_;
    OwnFolder own_;
};

int contextsUntilFailure = 0;

HDC WINAPI makeFewContexts(HDC like) {
    if (contextsUntilFailure-- == 0) return nullptr;
    return host::systemFunction<decltype(CreateCompatibleDC)>(L"gdi32.dll", "CreateCompatibleDC")(like);
}

vrx::Error errorOf(const cDIBSection& section) {
    try {
        SaveJPG(section, u"picture.jpg", 90);
    } catch (const vrx::Error& error) {
        return error;
    }
    return {};
}

TEST(JpegBinding, FillsInTheEightFieldsAndLeavesTheOthersAsTheLibrarySetThem) {
    const RecordingCodec codec;
    cDIBSection section;
    ASSERT_TRUE(section.Create(10, 7));
    EXPECT_TRUE(SaveJPG(section, u"picture.jpg", 83));
    EXPECT_STREQ(codec.journal->calls, "IWF");
    EXPECT_EQ(codec.journal->request, 8);
    EXPECT_STREQ(codec.journal->fileName, "picture.jpg");

    EXPECT_EQ(codec.field<const void*>(RecordField::DIBBytes), section.DIBSectionBitsPtr());
    EXPECT_EQ(codec.field(RecordField::DIBWidth), 10);
    EXPECT_EQ(codec.field(RecordField::DIBHeight), 7);    // bottom-up
    EXPECT_EQ(codec.field(RecordField::DIBPadBytes), 2);  // 30 bytes to 32
    EXPECT_EQ(codec.field(RecordField::JPGWidth), 10);
    EXPECT_EQ(codec.field(RecordField::JPGHeight), 7);
    EXPECT_EQ(codec.field(RecordField::jquality), 83);

    for (const RecordField address : {RecordField::DIBBytes, RecordField::JPGFile})
        codec.forget(address, sizeof(void*));
    for (const RecordField number : {RecordField::DIBWidth, RecordField::DIBHeight, RecordField::DIBPadBytes,
                                     RecordField::JPGWidth, RecordField::JPGHeight, RecordField::jquality})
        codec.forget(number, sizeof(std::int32_t));
    for (std::size_t offset = 0; offset < fake_codec::kRecordSize; ++offset)
        ASSERT_EQ(codec.journal->recordAtWrite[offset], fake_codec::kDefault) << "offset " << offset;
}

TEST(JpegBinding, HandsOverARecordOfZerosToBeInitialised) {
    const RecordingCodec codec;
    std::memset(codec.journal->recordAtInit, 0xFF, fake_codec::kRecordSize);
    SaveJPG(cDIBSection(), u"picture.jpg", 90);
    for (std::size_t i = 0; i < fake_codec::kRecordSize; ++i)
        ASSERT_EQ(codec.journal->recordAtInit[i], 0) << i;
}

TEST(JpegBinding, AWidthWhoseRowsAreAMultipleOf4GivesDIBPadBytes0AndAWidthOf1Gives1AndAWidthOf2Gives2) {
    const RecordingCodec codec;
    for (const auto& [width, padding] : {std::pair{4, 0}, {1, 1}, {2, 2}, {3, 3}, {8, 0}}) {
        cDIBSection section;
        ASSERT_TRUE(section.Create(width, 2));
        EXPECT_TRUE(SaveJPG(section, u"picture.jpg", 90));
        EXPECT_EQ(codec.field(RecordField::DIBPadBytes), padding) << "width " << width;
    }
}

TEST(JpegBinding, AFileNameWithCharactersOutsideThe8BitCodePageIsConvertedByTheSystemsReplacementRules) {
    const RecordingCodec codec;
    SaveJPG(cDIBSection(), u"a \u0905\u0906.jpg", 90);  // letters of no 8-bit code page
    EXPECT_STREQ(codec.journal->fileName, "a ??.jpg");
    if (GetACP() != 1252) GTEST_SKIP() << "the other names are those of the Western code page";
    SaveJPG(cDIBSection(), u"\u00E9t\u00E9 \u0100.jpg", 90);
    EXPECT_STREQ(codec.journal->fileName, "\xE9t\xE9 A.jpg");
}

TEST(JpegBinding, HandsOverAnyQualityUnchecked) {
    const RecordingCodec codec;
    for (const int quality : {0, -1, 1000, INT32_MIN}) {
        EXPECT_TRUE(SaveJPG(cDIBSection(), u"picture.jpg", quality));
        EXPECT_EQ(codec.field(RecordField::jquality), quality);
    }
}

TEST(JpegBinding, ShowsTheCodeOfAFailureToInitialiseAndCallsNothingElse) {
    const RecordingCodec codec;
    codec.journal->initResult = -17;
    host::MessageBoxWatcher watcher;
    EXPECT_FALSE(SaveJPG(cDIBSection(), u"picture.jpg", 90));
    const auto boxes = watcher.boxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].text, L"Failed to initialise the IJL library: -17");
    EXPECT_TRUE(boxes[0].exclamation);
    EXPECT_TRUE(boxes[0].onlyOk);
    EXPECT_STREQ(codec.journal->calls, "I");
}

TEST(JpegBinding, ShowsAFailureToWriteAndGivesTheRecordBack) {
    const RecordingCodec codec;
    codec.journal->writeResult = -3;
    host::MessageBoxWatcher watcher;
    EXPECT_FALSE(SaveJPG(cDIBSection(), u"picture.jpg", 90));
    const auto boxes = watcher.boxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].text, L"Failed to save to JPG");
    EXPECT_TRUE(boxes[0].exclamation);
    EXPECT_TRUE(boxes[0].onlyOk);
    EXPECT_STREQ(codec.journal->calls, "IWF");
}

TEST(JpegBinding, ANameWithAZeroCharacterMeansNoShorterOne) {
    cDIBSection section;
    EXPECT_TRUE(section.Create(2, 2));
    try {
        static_cast<void>(SaveJPG(section, std::u16string(u"a.jpg\0b", 7), 90));
        ADD_FAILURE();
    } catch (const vrx::Error& error) {
        EXPECT_EQ(error.number, 52);
    }
}

TEST(JpegBinding, WithoutTheLibraryIsFileNotFoundAndNamesIt) {
    const FolderWithoutCodec own;
    const vrx::Error error = errorOf(cDIBSection());
    EXPECT_EQ(error.number, 53);
    EXPECT_TRUE(error.description == u"File not found: ijl10.dll");
}

TEST(JpegBinding, WithALibraryThatLacksAnEntryPointNamesTheEntryPoint) {
    const vrx::Module incomplete(LoadLibraryW(fakeCodec(L"incomplete_codec").c_str()));
    ASSERT_TRUE(incomplete);
    const OwnFolder own(incomplete.get());
    const vrx::Error error = errorOf(cDIBSection());
    EXPECT_EQ(error.number, 453);
    EXPECT_TRUE(error.description == u"Can't find DLL entry point ijlWrite in ijl10.dll");
}

TEST(JpegBinding, NeverTakesALibraryFromTheCurrentFolder) {
    const FolderWithoutCodec own;
    std::array<wchar_t, MAX_PATH> before{};
    GetCurrentDirectoryW(MAX_PATH, before.data());
    ASSERT_TRUE(SetCurrentDirectoryW((host::programFolder() + L"\\complete_codec").c_str()));
    const vrx::Error error = errorOf(cDIBSection());
    SetCurrentDirectoryW(before.data());
    EXPECT_EQ(error.number, 53);
}

TEST(JpegBinding, TakesTheLibraryOfTheSystemFolderWhereItsOwnFolderHasNone) {
    const SystemCodec codec;
    if (!codec.copied()) GTEST_SKIP() << "the system folder takes no file";
    const FolderWithoutCodec own;
    const host::ThrowawayFolder folder;
    cDIBSection section;
    ASSERT_TRUE(section.Create(8, 8));
    EXPECT_TRUE(SaveJPG(section, asText(folder / L"picture.jpg"), 90));
    EXPECT_TRUE(host::exists(folder / L"picture.jpg"));
}

TEST(JpegBinding, PrefersTheLibraryOfItsOwnFolder) {
    const SystemCodec other;
    if (!other.copied()) GTEST_SKIP() << "the system folder takes no file";
    const RecordingCodec codec;
    EXPECT_TRUE(SaveJPG(cDIBSection(), u"picture.jpg", 90));
    EXPECT_STREQ(codec.journal->calls, "IWF");
}

TEST(JpegBinding, WritesASectionUprightAndInItsColorsThroughTheRealLibrary) {
    const host::ThrowawayFolder folder;
    cDIBSection section;
    ASSERT_TRUE(section.Create(50, 40));
    const RECT top{0, 0, 50, 20};
    const RECT bottom{0, 20, 50, 40};
    const HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
    const HBRUSH blue = CreateSolidBrush(RGB(0, 0, 255));
    FillRect(section.hDC(), &top, red);
    FillRect(section.hDC(), &bottom, blue);
    DeleteObject(red);
    DeleteObject(blue);
    GdiFlush();
    ASSERT_TRUE(SaveJPG(section, asText(folder / L"picture.jpg"), 90));

    const vrx::test::Picture picture = vrx::test::readByAnother(host::readBytes(folder / L"picture.jpg"));
    ASSERT_EQ(picture.width, 50U);
    ASSERT_EQ(picture.height, 40U);
    EXPECT_GT(picture.pixel(25, 5)[0], 250);
    EXPECT_LT(picture.pixel(25, 5)[2], 5);
    EXPECT_GT(picture.pixel(25, 35)[2], 250);
    EXPECT_LT(picture.pixel(25, 35)[0], 5);
}

TEST(JpegBinding, TellsTheUserOfAPlaceThatCannotBeWritten) {
    const host::ThrowawayFolder folder;
    cDIBSection section;
    ASSERT_TRUE(section.Create(8, 8));
    host::MessageBoxWatcher watcher;
    EXPECT_FALSE(SaveJPG(section, asText(folder / L"nowhere\\picture.jpg"), 90));
    const auto boxes = watcher.boxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].text, L"Failed to save to JPG");
    EXPECT_TRUE(folder.names().empty());
}

TEST(JpegBinding, TellsTheUserOfASectionThatHoldsNothing) {
    const host::ThrowawayFolder folder;
    host::MessageBoxWatcher watcher;
    EXPECT_FALSE(SaveJPG(cDIBSection(), asText(folder / L"picture.jpg"), 90));
    EXPECT_EQ(watcher.boxes().size(), 1U);
    EXPECT_TRUE(folder.names().empty());
}

TEST(JpegBinding, KeepsTheLibraryLoadedUntilTheComponentMayBeUnloaded) {
    const FolderWithoutCodec own;
    const std::wstring library = own.folder() / L"ijl10.dll";
    ASSERT_TRUE(CopyFileW((host::programFolder() + L"\\ijl10.dll").c_str(), library.c_str(), TRUE));
    cDIBSection section;
    ASSERT_TRUE(section.Create(8, 8));
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(SaveJPG(section, asText(own.folder() / L"picture.jpg"), 90));
        EXPECT_NE(GetModuleHandleW(library.c_str()), nullptr);
        vrx::releaseCodec();
        EXPECT_EQ(GetModuleHandleW(library.c_str()), nullptr);
    }
}

TEST(JpegBinding, OfASectionWhosePictureCannotBeCopiedWritesNoOtherPicture) {
    const host::ThrowawayFolder folder;
    const std::wstring old = folder.write(L"picture.jpg", {1, 2, 3});
    cDIBSection source;
    ASSERT_TRUE(source.Create(8, 8));
    const auto picture = host::pictureOf(source);
    for (int failing = 0; failing < 2; ++failing) {
        contextsUntilFailure = failing;
        const host::ImportPatch patch(GetModuleHandleW(nullptr), "CreateCompatibleDC", makeFewContexts);
        ASSERT_TRUE(patch);
        cDIBSection section;
        section.CreateFromPicture(picture.get());
        EXPECT_EQ(section.DIBSectionBitsPtr(), nullptr) << failing;
        host::MessageBoxWatcher watcher;
        EXPECT_FALSE(SaveJPG(section, asText(old), 90));
        EXPECT_EQ(watcher.boxes().size(), 1U);
    }
    EXPECT_EQ(host::readBytes(old), host::FileBytes({1, 2, 3}));
}

}  // namespace
