// CVrxImage: the bits of a bitmap and the record that describes them, and its BMP files.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "VrxCommon.h"
#include "failure.h"
#include "host.h"
#include "rgbe_picture.h"

using host::Failure;
using host::failureOf;
using host::FileBytes;
using host::Text;
using host::typedReference;
using vrx::Bstr;
using vrx::SafeArray;

namespace {

BmpInfo info24(long width, long height) {
    BmpInfo info{};
    info.biSize = 40;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    return info;
}

class Image : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const vrx::ComPtr<_CVrxImage> image_ = host::create(L"VrxCommon.CVrxImage").as<_CVrxImage>();

    void SetUp() override { ASSERT_TRUE(image_); }

    HRESULT set(const FileBytes& bits, BmpInfo info) const {
        SafeArray array = vrx::makeByteArray(bits);
        SAFEARRAY* typed = array.get();
        return image_->Set_BMP(&typed, &info);
    }
    /// The bits that Get_BMP hands out, and its record.
    FileBytes get(BmpInfo* info = nullptr) const {
        BmpInfo record{};
        SAFEARRAY* typed = nullptr;
        EXPECT_EQ(image_->Get_BMP(&typed, info ? info : &record), S_OK);
        const SafeArray owned(typed);
        const vrx::ByteArrayView view(typed);
        EXPECT_EQ(view.rank(), 1u);
        return {view.bytes().begin(), view.bytes().end()};
    }
    [[nodiscard]] long dim(bool x) const {
        long value = -1;
        EXPECT_EQ(x ? image_->get_DimX(&value) : image_->get_DimY(&value), S_OK);
        return value;
    }
    HRESULT save(const std::wstring& path, std::wstring* written = nullptr) const {
        Bstr name(SysAllocString(path.c_str()));
        BSTR argument = name.release();
        Bstr result;
        const HRESULT saved = image_->Save_BMP(&argument, result.put());
        EXPECT_EQ(std::wstring(argument), path) << "the argument stays";
        SysFreeString(argument);
        if (written) *written = result ? result.get() : L"";
        return saved;
    }
    /// Pixels of a file written, without its 54 bytes of headers.
    [[nodiscard]] static FileBytes pixelsIn(const std::wstring& path) {
        const FileBytes bytes = host::readBytes(path);
        return bytes.size() < 54 ? FileBytes{} : FileBytes(bytes.begin() + 54, bytes.end());
    }
};

const FileBytes kBits = {1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0};  // 2 x 2

TEST_F(Image, KeepsItsRegistryKeyAndIsEmptyAtFirst) {
    Bstr key;
    EXPECT_EQ(image_->get_REGKEY(key.put()), S_OK);
    EXPECT_EQ(SysStringLen(key.get()), 0u);
    EXPECT_EQ(image_->put_REGKEY(Bstr(SysAllocString(L"Software\\Mine")).get()), S_OK);
    EXPECT_EQ(image_->get_REGKEY(key.put()), S_OK);
    EXPECT_STREQ(key.get(), L"Software\\Mine");
    EXPECT_EQ(dim(true), 0);
    EXPECT_EQ(dim(false), 0);
    EXPECT_TRUE(get().empty());
}

TEST_F(Image, GivesBackTheBitsAndTheWholeRecord) {
    BmpInfo info = info24(2, 2);
    for (int i = 0; i < 256; ++i) info.bmiColors[i] = {static_cast<unsigned char>(i), 1, 2, 3};
    info.biXPelsPerMeter = 3780;
    EXPECT_EQ(set(kBits, info), S_OK);
    EXPECT_EQ(dim(true), 2);
    EXPECT_EQ(dim(false), 2);
    BmpInfo back{};
    EXPECT_EQ(get(&back), kBits);
    EXPECT_EQ(std::memcmp(&back, &info, 1064), 0);
}

TEST_F(Image, TakesCopies) {
    SafeArray array = vrx::makeByteArray(kBits);
    SAFEARRAY* typed = array.get();
    BmpInfo info = info24(2, 2);
    EXPECT_EQ(image_->Set_BMP(&typed, &info), S_OK);
    EXPECT_EQ(typed->cLocks, 0u);
    vrx::ByteArrayView(typed).bytes()[0] = 99;
    info.biWidth = 50;
    EXPECT_EQ(get(), kBits);
    EXPECT_EQ(dim(true), 2);
}

TEST_F(Image, ReplacesTheArrayThatGetBmpIsGiven) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    SAFEARRAY* typed = vrx::makeByteArray(FileBytes(1000)).release();
    BmpInfo info{};
    EXPECT_EQ(image_->Get_BMP(&typed, &info), S_OK);
    const SafeArray owned(typed);
    EXPECT_EQ(vrx::ByteArrayView(typed).bytes().size(), kBits.size());
    EXPECT_EQ(vrx::ByteArrayView(typed).bounds(0).lower, 0);
}

TEST_F(Image, TakesAndGivesARecordLateBound) {
    const GUID library = {0x897F52C7, 0x06C5, 0x419E, {0x8D, 0x75, 0xFE, 0x91, 0x81, 0x40, 0x45, 0xD8}};
    const GUID name = {0x7008D90C, 0x4753, 0x463B, {0x83, 0xDA, 0x3D, 0x8B, 0x32, 0xD9, 0x26, 0x9E}};
    vrx::ComPtr<IRecordInfo> description;
    ASSERT_EQ(GetRecordInfoFromGuids(library, 1, 0, 0, name, description.put()), S_OK);
    BmpInfo info = info24(2, 2);
    VARIANT record{};
    V_VT(&record) = VT_RECORD;
    V_RECORD(&record) = &info;
    V_RECORDINFO(&record) = description.get();
    vrx::Variant bits = vrx::makeArray(vrx::makeByteArray(kBits));
    const auto late = image_.as<IDispatch>();
    EXPECT_EQ(host::call(*late, L"Set_BMP", {bits.get(), record}).code, S_OK);
    EXPECT_EQ(dim(true), 2);
    info = {};
    vrx::Variant back;
    EXPECT_EQ(host::call(*late, L"Get_BMP", {host::reference(back.get()), record}).code, S_OK);
    EXPECT_EQ(info.biWidth, 2);
    ASSERT_EQ(V_VT(&back.get()), VT_ARRAY | VT_UI1);
    EXPECT_TRUE(std::ranges::equal(vrx::ByteArrayView(back.get()).bytes(), kBits));
}

TEST_F(Image, KeepsItsSizesAsSinglesAndDimXIsTheSingleInWholePixels) {
    EXPECT_EQ(set(kBits, info24(16777217, -16777219)), S_OK);
    EXPECT_EQ(dim(true), 16777216);
    EXPECT_EQ(dim(false), -16777220);
}

TEST_F(Image, ClsFollowedByDimXGives0AndGetBmpGivesAnEmptyArrayWithTheOldRecord) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    EXPECT_EQ(image_->Cls(), S_OK);
    EXPECT_EQ(dim(true), 0);
    EXPECT_EQ(dim(false), 0);
    BmpInfo info{};
    EXPECT_TRUE(get(&info).empty());
    const BmpInfo old = info24(2, 2);
    EXPECT_EQ(std::memcmp(&info, &old, sizeof info), 0);
}

TEST_F(Image, AfterClsAndLoadBmpOfA10By10FileDimXStillReads0WhileGetBmpReturnsTheFile) {
    FileBytes file = {'B', 'M', 54 + 64, 1, 0,  0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 10, 0, 0, 0, 10, 0,
                      0,   0,   1,       0, 24, 0, 0, 0, 0, 0, 64, 1, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0, 0};
    file.resize(54);
    FileBytes bits;
    for (int i = 0; i < 320; ++i) bits.push_back(static_cast<std::uint8_t>(i % 32 < 30 ? i : 0));
    file.insert(file.end(), bits.begin(), bits.end());
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    EXPECT_EQ(image_->Cls(), S_OK);
    const std::wstring path = folder_.write(L"ten.bmp", file);
    EXPECT_EQ(image_->Load_BMP(Bstr(SysAllocString(path.c_str())).get()), S_OK);
    EXPECT_EQ(dim(true), 0);
    BmpInfo info{};
    bits.push_back(0);
    EXPECT_EQ(get(&info), bits);
    EXPECT_EQ(info.biWidth, 10);
}

TEST_F(Image, TakesAnArrayThatIsNotDimensioned) {
    SAFEARRAY* typed = nullptr;
    BmpInfo info = info24(3, 4);
    EXPECT_EQ(image_->Set_BMP(&typed, &info), S_OK);
    EXPECT_TRUE(get().empty());
    EXPECT_EQ(dim(true), 3);
}

TEST_F(Image, SaveBmpWritesTheBitsAsA24BitFile) {
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

TEST_F(Image, SaveBmpShowsAPaletteAsColours) {
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

TEST_F(Image, SaveBmpOfNoPathTwiceWritesTheSameTemporaryFileReplacingTheFirst) {
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

TEST_F(Image, SaveBmpTakesItsPathInEveryFormOrNone) {
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

TEST_F(Image, SaveBmpFailsWithTheSourceOfTheClass) {
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    std::wstring written = L"old";
    const Failure missing{76, L"CVrxImage", L"Path not found"};
    const std::wstring path = folder_ / L"missing\\out.bmp";
    EXPECT_EQ(failureOf(save(path, &written)), missing);
    EXPECT_EQ(written, L"");
    EXPECT_EQ(failureOf(host::call(*image_.as<IDispatch>(), L"Save_BMP", {Text(path.c_str())})), missing);
}

TEST_F(Image, SaveBmpOfNothingFailsAndLeavesTheOldFile) {
    const std::wstring old = folder_.write(L"old.bmp", {1, 2, 3});
    EXPECT_EQ(failureOf(save(old)).source, L"CVrxImage");
    EXPECT_EQ(set(kBits, info24(2, 2)), S_OK);
    EXPECT_EQ(image_->Cls(), S_OK);
    EXPECT_EQ(failureOf(save(old)).source, L"CVrxImage");
    EXPECT_EQ(host::readBytes(old), FileBytes({1, 2, 3}));
}

TEST_F(Image, SaveBmpDoesNotReadPastBitsThatAreTooShortForTheirRecord) {
    const BmpInfo lying[] = {info24(2, 3), info24(1000, 1000), info24(LONG_MAX, LONG_MAX),
                             info24(2, LONG_MIN)};
    for (const BmpInfo& info : lying) {
        EXPECT_EQ(set(kBits, info), S_OK);
        EXPECT_NE(failureOf(save(folder_ / L"short.bmp")).number, 0);
    }
    EXPECT_TRUE(folder_.names().empty());
}

}  // namespace
