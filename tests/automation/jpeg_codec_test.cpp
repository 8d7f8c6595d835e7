// ijl10.dll as any host calls it: by the names of its functions and the offsets of its record.

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "codec_library.h"
#include "foreign_reader.h"
#include "throwaway_folder.h"

using host::FileBytes;
using vrx::jpeg::Color;
using vrx::test::HostPixels;
using vrx::test::hostPixels;
using vrx::test::hostRoom;
using vrx::test::kRecordSize;
using vrx::test::landscape;
using vrx::test::Picture;
using vrx::test::quarters;
using vrx::test::wordOf;

namespace {

using host::codec;
using host::Record;
using host::RecordField;

TEST(JpegCodec, ExportsItsFunctionsByTheirPlainNames) {
    for (const char* name :
         {"ijlInit", "ijlFree", "ijlRead", "ijlWrite", "ijlGetLibVersion", "ijlGetErrorString"}) {
        EXPECT_NE(GetProcAddress(codec().module(), name), nullptr) << name;
    }
}

TEST(JpegCodec, GivesOutARecordOfDefaults) {
    std::vector<std::int32_t> raw(kRecordSize / 4, 0x5A5A5A5A);
    ASSERT_EQ(codec().init(raw.data()), 0);
    std::vector<std::int32_t> expected(raw.size(), 0);
    for (const auto& [field, value] : vrx::test::kRecordDefaults) expected[wordOf(field)] = value;
    for (std::size_t word = 0; word < raw.size(); ++word) {
        if (vrx::test::isPadding(word)) expected[word] = raw[word];
    }
    EXPECT_EQ(raw, expected);
    EXPECT_EQ(codec().free(raw.data()), 0);
    EXPECT_EQ(raw, expected);
}

TEST(JpegCodec, TellsItsVersionAndWhatItsErrorsMean) {
    EXPECT_EQ(std::string(codec().getLibVersion()).substr(0, 2), "1.");
    EXPECT_STREQ(codec().getErrorString(0), "No error");
    EXPECT_STREQ(codec().getErrorString(-8), "The quality is not between 1 and 100");
    EXPECT_STREQ(codec().getErrorString(1234), "Unknown error");
}

void expectQuarters(const Picture& picture) {
    ASSERT_EQ(picture.width, 64U);
    ASSERT_EQ(picture.height, 64U);
    EXPECT_GT(picture.pixel(8, 8)[0], 250);
    EXPECT_LT(picture.pixel(8, 8)[2], 5);
    EXPECT_GT(picture.pixel(8, 56)[2], 250);
    EXPECT_LT(picture.pixel(8, 56)[0], 5);
}

TEST(JpegCodec, WritesAFileUprightForEitherSignOfTheHeight) {
    for (const bool bottomUp : {true, false}) {
        const host::ThrowawayFolder folder;
        HostPixels pixels = hostPixels(quarters(64), Color::Bgr, bottomUp);
        Record record(pixels);
        const std::string name = host::ansi(folder / L"picture.jpg");
        record.setFile(name);
        ASSERT_EQ(codec().write(record.data(), 8), 0);
        expectQuarters(vrx::test::readByAnother(host::readBytes(folder / L"picture.jpg")));
        EXPECT_EQ(folder.names().size(), 1U);
    }
}

TEST(JpegCodec, WritesTheSameToMemoryAndTellsTheSize) {
    HostPixels pixels = hostPixels(quarters(64), Color::Bgr, true);
    Record record(pixels);
    FileBytes room(20000, 0xEE);
    record.setMemory(room);
    ASSERT_EQ(codec().write(record.data(), 9), 0);
    const auto size = static_cast<std::size_t>(record[RecordField::JPGSizeBytes]);
    ASSERT_LT(size, room.size());
    EXPECT_EQ(room[size], 0xEE);
    room.resize(size);
    expectQuarters(vrx::test::readByAnother(room));

    FileBytes exact(size);
    record.setMemory(exact);
    EXPECT_EQ(codec().write(record.data(), 9), 0);
    EXPECT_EQ(exact, room);
    FileBytes small(size - 1, 0xEE);
    record.setMemory(small);
    EXPECT_LT(codec().write(record.data(), 9), 0);
    EXPECT_EQ(small, FileBytes(size - 1, 0xEE));
}

TEST(JpegCodec, ReadsBackWhatItWrote) {
    const host::ThrowawayFolder folder;
    const Picture picture = landscape(97, 61);
    HostPixels pixels = hostPixels(picture, Color::Bgr, true);
    Record writing(pixels);
    const std::string name = host::ansi(folder / L"picture.jpg");
    writing.setFile(name);
    ASSERT_EQ(codec().write(writing.data(), 8), 0);

    FileBytes memory = host::readBytes(folder / L"picture.jpg");
    for (const int fromMemory : {0, 1}) {
        Record parameters;
        parameters.setFile(name);
        parameters.setMemory(memory);
        ASSERT_EQ(codec().read(parameters.data(), 0 + fromMemory), 0);
        EXPECT_EQ(parameters[RecordField::JPGWidth], 97);
        EXPECT_EQ(parameters[RecordField::JPGHeight], 61);
        EXPECT_EQ(parameters[RecordField::JPGChannels], 3);

        HostPixels room = hostRoom(97, 61, Color::Bgr, true);
        Record reading(room);
        reading.setFile(name);
        reading.setMemory(memory);
        ASSERT_EQ(codec().read(reading.data(), 2 + fromMemory), 0);
        EXPECT_GT(peakSignalToNoise(picture, pictureOf(room)), 36.0);
    }
}

TEST(JpegCodec, RefusesOtherKindsOfReadingAndWriting) {
    HostPixels pixels = hostPixels(quarters(8), Color::Bgr, true);
    Record record(pixels);
    for (const int request : {-1, 4, 7, 8, 9, 10, INT32_MAX})
        EXPECT_LT(codec().read(record.data(), request), 0);
    for (const int request : {-1, 0, 1, 2, 3, 7, 10, INT32_MAX})
        EXPECT_LT(codec().write(record.data(), request), 0);
}

TEST(JpegCodec, LeavesTheOldFileAndNoTraceWhereWritingFails) {
    const host::ThrowawayFolder folder;
    folder.write(L"picture.jpg", {1, 2, 3});
    const std::string name = host::ansi(folder / L"picture.jpg");
    HostPixels pixels = hostPixels(quarters(8), Color::Bgr, true);
    Record record(pixels);
    record.setFile(name);
    record[RecordField::jquality] = 101;
    EXPECT_LT(codec().write(record.data(), 8), 0);
    record[RecordField::jquality] = 90;
    SetFileAttributesW((folder / L"picture.jpg").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_LT(codec().write(record.data(), 8), 0);
    EXPECT_EQ(host::readBytes(folder / L"picture.jpg"), (FileBytes{1, 2, 3}));
    EXPECT_EQ(folder.names().size(), 1U);
}

TEST(JpegCodec, RefusesFilesThatAreNotThere) {
    const host::ThrowawayFolder folder;
    for (const std::wstring& path : {folder / L"none.jpg", folder / L"none\\none.jpg", folder.path()}) {
        const std::string name = host::ansi(path);
        Record record;
        record.setFile(name);
        EXPECT_LT(codec().read(record.data(), 0), 0);
    }
}

TEST(JpegCodec, RefusesNullAddresses) {
    EXPECT_LT(codec().init(nullptr), 0);
    EXPECT_LT(codec().free(nullptr), 0);
    EXPECT_LT(codec().read(nullptr, 0), 0);
    EXPECT_LT(codec().write(nullptr, 8), 0);
    HostPixels pixels = hostPixels(quarters(8), Color::Bgr, true);
    Record record(pixels);  // no file, no memory
    for (const int request : {0, 1, 2, 3}) EXPECT_LT(codec().read(record.data(), request), 0);
    for (const int request : {8, 9}) EXPECT_LT(codec().write(record.data(), request), 0);
    FileBytes room(20000);
    record.setMemory(room);
    record.setAddress(RecordField::DIBBytes, nullptr);
    EXPECT_LT(codec().write(record.data(), 9), 0);
}

/// Two pages of which only the first may be touched.
class PageBeforeAWall {
  public:
    PageBeforeAWall()
        : start_(static_cast<std::uint8_t*>(VirtualAlloc(nullptr, 8192, MEM_RESERVE, PAGE_NOACCESS))) {
        VirtualAlloc(start_, 4096, MEM_COMMIT, PAGE_READWRITE);
    }
    PageBeforeAWall(const PageBeforeAWall&) = delete;
    PageBeforeAWall& operator=(const PageBeforeAWall&) = delete;
    ~PageBeforeAWall() { VirtualFree(start_, 0, MEM_RELEASE); }

    /// The last bytes of the page.
    [[nodiscard]] std::uint8_t* last(std::size_t size) const { return start_ + 4096 - size; }

  private:
    std::uint8_t* start_;
};

TEST(JpegCodec, RefusesPixelsThatReachBeyondTheMemoryThatThereIs) {
    const PageBeforeAWall page;
    HostPixels pixels = hostPixels(quarters(8), Color::Bgr, true);
    FileBytes room(20000);
    Record record(pixels);
    record.setMemory(room);
    record.setAddress(RecordField::DIBBytes, page.last(8 * 24));
    EXPECT_EQ(codec().write(record.data(), 9), 0);
    record.setAddress(RecordField::DIBBytes, page.last(8 * 24 - 1));
    EXPECT_LT(codec().write(record.data(), 9), 0);
}

TEST(JpegCodec, WritesNothingBeyondTheBufferWhenItReads) {
    HostPixels pixels = hostPixels(landscape(31, 17), Color::Bgr, true);
    FileBytes jpeg(20000);
    Record writing(pixels);
    writing.setMemory(jpeg);
    ASSERT_EQ(codec().write(writing.data(), 9), 0);
    jpeg.resize(static_cast<std::size_t>(writing[RecordField::JPGSizeBytes]));

    const PageBeforeAWall page;
    Record reading(pixels);
    reading.setMemory(jpeg);
    reading.setAddress(RecordField::DIBBytes, page.last(pixels.layout.size()));
    EXPECT_EQ(codec().read(reading.data(), 3), 0);
    reading.setAddress(RecordField::DIBBytes, page.last(pixels.layout.size() - 1));
    EXPECT_LT(codec().read(reading.data(), 3), 0);
    for (const int height : {16, 18, -18, 1000}) {
        reading[RecordField::DIBHeight] = height;
        EXPECT_LT(codec().read(reading.data(), 3), 0) << height;
    }
}

TEST(JpegCodec, RefusesARecordOrAFileNameThatRunsIntoAWall) {
    const PageBeforeAWall page;
    EXPECT_LT(codec().init(page.last(100)), 0);
    std::memset(page.last(4096), 'a', 4096);
    HostPixels pixels = hostPixels(quarters(8), Color::Bgr, true);
    Record record(pixels);
    record.setAddress(RecordField::JPGFile, page.last(100));
    EXPECT_LT(codec().write(record.data(), 8), 0);
    EXPECT_LT(codec().read(record.data(), 0), 0);
}

TEST(JpegCodec, SurvivesRecordsOfRandomFields) {
    std::mt19937 random(20031);
    // A codec writes where it is told to: all the memory from the pixels up to the wall is the test's own.
    const PageBeforeAWall page;
    HostPixels pixels = hostPixels(quarters(8), Color::Bgr, true);
    FileBytes room(4096);
    int written = 0;
    for (int i = 0; i < 5000; ++i) {
        Record record(pixels);
        record.setMemory(room);
        record.setAddress(RecordField::DIBBytes, random() % 8 == 0 ? nullptr : page.last(4096));
        for (std::size_t word = wordOf(RecordField::DIBWidth); word <= wordOf(RecordField::jquality);
             ++word) {
            const bool otherAddress =
                word >= wordOf(RecordField::JPGFile) && word < wordOf(RecordField::JPGSizeBytes);
            if (otherAddress) continue;
            if (random() % 32 == 0) record.data()[word] = static_cast<std::int32_t>(random());
            if (random() % 16 == 0) record.data()[word] = static_cast<std::int32_t>(random() % 70) - 4;
        }
        record[RecordField::JPGSizeBytes] = static_cast<std::int32_t>(random() % room.size());
        EXPECT_LE(codec().read(record.data(), static_cast<int>(random() % 2) * 2 + 1), 0);
        if (codec().write(record.data(), 9) == 0) ++written;
    }
    EXPECT_GT(written, 100);
    EXPECT_LT(written, 4000);
}

TEST(JpegCodec, SurvivesFilesThatAreCutAtAnyByteOrHaveFlippedBytes) {
    HostPixels pixels = hostPixels(landscape(31, 17), Color::Bgr, true);
    FileBytes jpeg(20000);
    Record writing(pixels);
    writing.setMemory(jpeg);
    ASSERT_EQ(codec().write(writing.data(), 9), 0);
    jpeg.resize(static_cast<std::size_t>(writing[RecordField::JPGSizeBytes]));

    const auto read = [&](FileBytes& bytes) {
        HostPixels room = hostRoom(31, 17, Color::Bgr, true);
        Record record(room);
        record.setMemory(bytes);
        return codec().read(record.data(), 3);
    };
    ASSERT_EQ(read(jpeg), 0);
    // The last two bytes are the mark of the picture's end, which may lack.
    for (std::size_t size = 0; size < jpeg.size() - 2; ++size) {
        FileBytes cut(jpeg.begin(), jpeg.begin() + static_cast<std::ptrdiff_t>(size));
        ASSERT_LT(read(cut), 0) << "cut at " << size;
    }
    std::mt19937 random(20032);
    for (int i = 0; i < 3000; ++i) {
        FileBytes damaged = jpeg;
        damaged[random() % damaged.size()] ^= static_cast<std::uint8_t>(random() % 255 + 1);
        EXPECT_LE(read(damaged), 0);
    }
}

#ifdef __i386__

/// Calls with a stack that is aligned to 4 bytes and no more.
std::int32_t writeWithOddStack(host::CodecLibrary::RecordCall function, std::int32_t* record,
                               std::int32_t request) {
    std::int32_t result = 0;
    __asm__ __volatile__(
        "movl %%esp, %%ebx\n\t"
        "andl $-16, %%esp\n\t"
        "subl $4, %%esp\n\t"
        "pushl %3\n\t"
        "pushl %2\n\t"
        "call *%1\n\t"
        "movl %%ebx, %%esp\n\t"
        : "=a"(result)
        : "S"(function), "c"(record), "d"(request)
        : "ebx", "memory", "cc");
    return result;
}

TEST(JpegCodec, WorksOnAStackThatIsAlignedTo4BytesOnly) {
    HostPixels pixels = hostPixels(quarters(64), Color::Bgr, true);
    FileBytes room(20000);
    Record record(pixels);
    record.setMemory(room);
    EXPECT_EQ(writeWithOddStack(codec().write, record.data(), 9), 0);
    EXPECT_EQ(writeWithOddStack(codec().read, record.data(), 3), 0);
}

#endif

TEST(JpegCodec, HasAVersion) {
    std::array<wchar_t, MAX_PATH> path{};
    GetModuleFileNameW(codec().module(), path.data(), MAX_PATH);
    DWORD ignored = 0;
    std::vector<std::byte> info(GetFileVersionInfoSizeW(path.data(), &ignored));
    ASSERT_FALSE(info.empty());
    ASSERT_TRUE(GetFileVersionInfoW(path.data(), 0, static_cast<DWORD>(info.size()), info.data()));
    void* text = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(info.data(), L"\\StringFileInfo\\040904B0\\OriginalFilename", &text, &length));
    EXPECT_STREQ(static_cast<const wchar_t*>(text), L"ijl10.dll");
}

}  // namespace
