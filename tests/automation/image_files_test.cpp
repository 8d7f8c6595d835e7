// CVrxImage: the files that it writes and reads, and its pictures.

#include <gtest/gtest.h>

#include "common/device_context.h"
#include "failure.h"
#include "foreign_reader.h"
#include "image_fixture.h"
#include "import_patch.h"
#include "picture_bytes.h"

using host::Failure;
using host::failureOf;
using host::FileBytes;
using host::info24;
using host::kBits;
using host::Text;
using vrx::Bstr;

namespace {

BOOL WINAPI fillDisk(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

std::wstring protectedFolder;

HANDLE WINAPI refuseProtectedFolder(const wchar_t* path, DWORD access, DWORD share,
                                    SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                    HANDLE original) {
    const std::wstring name = path;
    if (disposition != OPEN_EXISTING && name.substr(0, name.find_last_of(L'\\')) == protectedFolder) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    return host::systemFunction<decltype(CreateFileW)>(L"kernel32.dll", "CreateFileW")(
        path, access, share, security, disposition, flags, original);
}

class ImageFiles : public host::ImageFixture {};

TEST_F(ImageFiles, SaveBmpWritesTheBitsAsA24BitFile) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    std::wstring written;
    const std::wstring path = folder_ / L"out \u00E9.bmp";
    EXPECT_EQ(save(path, &written), S_OK);
    EXPECT_EQ(written, path);
    const FileBytes bytes = host::readBytes(path);
    ASSERT_EQ(bytes.size(), 70u);
    EXPECT_EQ(FileBytes(bytes.begin(), bytes.begin() + 2), FileBytes({'B', 'M'}));
    EXPECT_EQ(pixelsIn(path), kBits);
    EXPECT_EQ(bytes[2], 70);
    EXPECT_EQ(bytes[10], 54);
    EXPECT_EQ(FileBytes(bytes.begin() + 14, bytes.begin() + 34),
              FileBytes({40, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0, 0}));
}

TEST_F(ImageFiles, SaveBmpShowsAPaletteAsColours) {
    BmpInfo info = info24(4, 1);
    info.biBitCount = 8;
    info.bmiColors[0] = {10, 20, 30, 0};
    info.bmiColors[1] = {40, 50, 60, 0};
    info.bmiColors[255] = {70, 80, 90, 0};
    EXPECT_EQ(set({255, 0, 1, 255}, info), S_OK);
    EXPECT_EQ(save(folder_ / L"palette.bmp"), S_OK);
    EXPECT_EQ(pixelsIn(folder_ / L"palette.bmp"),
              FileBytes({70, 80, 90, 10, 20, 30, 40, 50, 60, 70, 80, 90}));
}

TEST_F(ImageFiles, SaveBmpOfNoPathTwiceWritesTheSameTemporaryFileReplacingTheFirst) {
    EXPECT_EQ(set(FileBytes(12 * 4, 200), info24(4, 4)), S_OK);
    std::wstring first;
    EXPECT_EQ(save(L"", &first), S_OK);
    EXPECT_EQ(host::readBytes(first).size(), 54u + 48u);
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    std::wstring second;
    EXPECT_EQ(save(L"", &second), S_OK);
    EXPECT_EQ(second, first);
    EXPECT_EQ(pixelsIn(second), kBits);
    EXPECT_EQ(second, host::programFolder() + L"\\ImageTemp.bmp") << "the library is beside the tests";
    DeleteFileW(second.c_str());
}

TEST_F(ImageFiles, SaveBmpTakesItsPathInEveryFormOrNone) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    const auto late = image_.as<IDispatch>();
    const std::wstring path = folder_ / L"late.bmp";
    vrx::Variant variable;
    V_VT(&variable.get()) = VT_BSTR;
    V_BSTR(&variable.get()) = SysAllocString(path.c_str());
    const Text value(path.c_str());
    for (const VARIANT& form : {static_cast<VARIANT>(value), host::reference(variable.get())}) {
        const host::Outcome outcome = host::call(*late, L"Save_BMP", {form});
        ASSERT_EQ(V_VT(&outcome.result.get()), VT_BSTR);
        EXPECT_EQ(V_BSTR(&outcome.result.get()), path);
        EXPECT_EQ(pixelsIn(path), kBits);
    }
    const host::Outcome outcome = host::call(*late, L"Save_BMP");
    ASSERT_EQ(V_VT(&outcome.result.get()), VT_BSTR);
    EXPECT_EQ(pixelsIn(V_BSTR(&outcome.result.get())), kBits);
    DeleteFileW(V_BSTR(&outcome.result.get()));
}

TEST_F(ImageFiles, SaveBmpFailsWithTheSourceOfTheClass) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    std::wstring written = L"old";
    const Failure missing{76, L"CVrxImage", L"Path not found"};
    const std::wstring path = folder_ / L"missing\\out.bmp";
    EXPECT_EQ(failureOf(save(path, &written)), missing);
    EXPECT_EQ(written, L"");
    EXPECT_EQ(failureOf(host::call(*image_.as<IDispatch>(), L"Save_BMP", {Text(path.c_str())})), missing);
}

TEST_F(ImageFiles, ThatNeverHeldPixelsIsSavedAsOneBlackPixel) {
    const std::wstring path = folder_.write(L"old.bmp", {1, 2, 3});
    EXPECT_EQ(save(path), S_OK);
    EXPECT_EQ(host::readBytes(path).size(), 58u);
    EXPECT_EQ(pixelsIn(path), FileBytes({0, 0, 0, 0}));
}

TEST_F(ImageFiles, AfterClsIsSavedAsOneBlackPixel) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    EXPECT_EQ(image_->Cls(), S_OK);
    EXPECT_EQ(save(folder_ / L"out.bmp"), S_OK);
    EXPECT_EQ(pixelsIn(folder_ / L"out.bmp"), FileBytes({0, 0, 0, 0}));
}

TEST_F(ImageFiles, LoadBmpOnANewObjectThenSaveBmpWrites0By0DrawnOnABlackSurfaceOf1By1) {
    const std::wstring path = folder_.write(L"white.bmp", host::bmpFile(2, 2, {255, 255, 255}));
    EXPECT_EQ(load(path), S_OK);
    EXPECT_EQ(save(folder_ / L"out.bmp"), S_OK);
    EXPECT_EQ(pixelsIn(folder_ / L"out.bmp"), FileBytes({0, 0, 0, 0}));
}

TEST_F(ImageFiles, LoadBmpOnANewObjectThenConvertBmpToJpgWritesOneBlackPixel) {
    EXPECT_EQ(load(folder_.write(L"white.bmp", host::bmpFile(2, 2, {255, 255, 255}))), S_OK);
    const std::wstring path = folder_ / L"out.jpg";
    const Bstr name(SysAllocString(path.c_str()));
    EXPECT_EQ(image_->Convert_BMP_to_JPG(name.get(), 90, nullptr), S_OK);
    const vrx::test::Picture written = vrx::test::readByAnother(host::readBytes(path));
    ASSERT_EQ(written.width, 1U);
    ASSERT_EQ(written.height, 1U);
    EXPECT_LT(written.pixel(0, 0)[0], 3);
    DeleteFileW(temporary_.c_str());
}

TEST_F(ImageFiles, AfterLoadBmpTheRecordsBiSizeImageIsWhatGetDiBitsLeaves) {
    EXPECT_EQ(load(folder_.write(L"ten.bmp", host::bmpFile(10, 10, {1, 2, 3}))), S_OK);
    BmpInfo info{};
    EXPECT_EQ(get(&info).size(), 321u);
    EXPECT_EQ(info.biSizeImage, 320);
}

TEST_F(ImageFiles, SaveBmpOfNoPathDeletesTheOldTemporaryFileFirst) {
    host::writeBytes(temporary_, {1, 2, 3});
    EXPECT_EQ(set(kBits, info24(2, 3)), S_OK);  // bits too short: the drawing fails
    EXPECT_EQ(failureOf(save(L"")).number, 481);
    EXPECT_FALSE(host::exists(temporary_));
}

TEST_F(ImageFiles, ALockedOrReadOnlyTemporaryFileIsTheFailureItIs) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    host::writeBytes(temporary_, {1, 2, 3});
    {
        const auto lock = vrx::validHandle(
            CreateFileW(temporary_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(failureOf(save(L"")), (Failure{70, L"CVrxImage", L"Permission denied"}));
    }
    SetFileAttributesW(temporary_.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(failureOf(save(L"")), (Failure{75, L"CVrxImage", L"Path/File access error"}));
    EXPECT_EQ(host::readBytes(temporary_), FileBytes({1, 2, 3}));
    SetFileAttributesW(temporary_.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(temporary_.c_str());
}

TEST_F(ImageFiles, AFullDiskIsTheFailureItIs) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    const host::ImportPatch patch(library_, "WriteFile", fillDisk);
    ASSERT_TRUE(patch);
    EXPECT_EQ(failureOf(save(L"")), (Failure{61, L"CVrxImage", L"Disk full"}));
    EXPECT_FALSE(host::exists(temporary_));
}

TEST_F(ImageFiles, OnlyAFolderThatCannotBeWrittenDivertsToTheUsersTemporaryFolder) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    protectedFolder = host::programFolder();
    std::wstring written;
    {
        const host::ImportPatch patch(library_, "CreateFileW", refuseProtectedFolder);
        ASSERT_TRUE(patch);
        EXPECT_EQ(save(L"", &written), S_OK);
    }
    wchar_t folder[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH + 1, folder);
    EXPECT_EQ(written, std::wstring(folder) + L"ImageTemp.bmp");
    EXPECT_EQ(pixelsIn(written), kBits);
    DeleteFileW(written.c_str());
}

TEST_F(ImageFiles, LoadBmpRendersAnIconToItsSizeInPixelsOnWhite) {
    EXPECT_EQ(load(folder_.write(L"a.ico", host::iconFile())), S_OK);
    BmpInfo info{};
    const FileBytes bits = get(&info);
    EXPECT_EQ(info.biWidth, 32);
    EXPECT_EQ(info.biHeight, 32);
    ASSERT_EQ(bits.size(), 32u * 96 + 1);
    for (std::size_t y = 0; y < 32; ++y) {
        for (std::size_t x = 0; x < 32; ++x) {
            const bool red = x < 16;
            const std::uint8_t* const pixel = bits.data() + y * 96 + x * 3;
            ASSERT_EQ(FileBytes(pixel, pixel + 3), red ? FileBytes({0, 0, 255}) : FileBytes({255, 255, 255}))
                << x << ' ' << y;
        }
    }
}

TEST_F(ImageFiles, LoadBmpRendersAMetafileToItsSizeInPixelsOnWhite) {
    EXPECT_EQ(load(folder_.write(L"a.wmf", host::metafile())), S_OK);
    const vrx::WindowDc screen(nullptr);
    const int width = GetDeviceCaps(screen.get(), LOGPIXELSX);
    const int height = GetDeviceCaps(screen.get(), LOGPIXELSY);
    BmpInfo info{};
    const FileBytes bits = get(&info);
    ASSERT_EQ(info.biWidth, width);
    ASSERT_EQ(info.biHeight, height);
    const auto pixel = [&](int x, int y) {
        const auto place = static_cast<std::size_t>((height - 1 - y) * ((width * 3 + 3) / 4 * 4) + x * 3);
        return FileBytes(bits.data() + place, bits.data() + place + 3);
    };
    EXPECT_EQ(pixel(width / 4, height / 4), FileBytes({255, 0, 0})) << "blue at the top left";
    EXPECT_EQ(pixel(width * 3 / 4, height / 4), FileBytes({255, 255, 255}));
    EXPECT_EQ(pixel(width / 4, height * 3 / 4), FileBytes({255, 255, 255}));
    EXPECT_EQ(pixel(width - 1, height - 1), FileBytes({255, 255, 255}));
}

TEST_F(ImageFiles, GetPictureOfAnImageWithNegativeBiHeightDrawsIt) {
    // The top row first: what kBits has at the bottom is on top here.
    EXPECT_EQ(set(kBits, info24(2, -2)), S_OK);
    const FileBytes turned = {7, 8, 9, 10, 11, 12, 0, 0, 1, 2, 3, 4, 5, 6, 0, 0};
    EXPECT_EQ(picture(0, 0, 2, 2, 0, 0, 2, 2), host::pixels24(2, 2, turned));
    EXPECT_EQ(picture(0, 0, 2, -2, 0, 0, 2, -2), host::pixels24(2, 2, turned)) << "DimY is negative";
    // As of any image, moved up by one row.
    EXPECT_EQ(picture(-1, 0, 0, 0, 0, 0, 0, 0),
              host::pixels24(2, 2, {0, 0, 0, 0, 0, 0, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0}));
}

TEST_F(ImageFiles, SaveBmpDoesNotReadPastBitsThatAreTooShortForTheirRecord) {
    const BmpInfo lying[] = {info24(2, 3), info24(1000, 1000), info24(LONG_MAX, LONG_MAX),
                             info24(2, LONG_MIN)};
    for (const BmpInfo& info : lying) {
        EXPECT_EQ(set(kBits, info), S_OK);
        EXPECT_NE(failureOf(save(folder_ / L"short.bmp")).number, 0);
    }
    EXPECT_TRUE(folder_.names().empty());
}

}  // namespace
