// CVrxImage: the bits of a bitmap and the record that describes them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "failure.h"
#include "image_fixture.h"

using host::FileBytes;
using host::info24;
using host::kBits;
using vrx::Bstr;
using vrx::SafeArray;

namespace {

class Image : public host::ImageFixture {};

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

}  // namespace
