// CVrxPattern: expansion of pattern strings for compiled and for script hosts.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "VrxCommon.h"
#include "host.h"

using host::call;
using host::integer;
using host::Outcome;
using host::reference;
using host::Text;
using host::typedReference;
using vrx::Bstr;
using vrx::ComPtr;
using vrx::Variant;

namespace {

constexpr HRESULT kOverflow = static_cast<HRESULT>(0x800A0006);
constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x800A0007);
constexpr HRESULT kSubscript = static_cast<HRESULT>(0x800A0009);
constexpr HRESULT kLocked = static_cast<HRESULT>(0x800A000A);
constexpr HRESULT kTypeMismatch = static_cast<HRESULT>(0x800A000D);

using Colors = std::vector<long>;
const Colors kRedToBlack{255, 230, 204, 178, 153, 128, 102, 76, 51, 26, 0};

ComPtr<_CVrxPattern> makePattern() { return host::createDirectly(CLSID_CVrxPattern).as<_CVrxPattern>(); }

HRESULT expand(_CVrxPattern& pattern, const wchar_t* text, long numItem, VARIANT& target) {
    const Bstr owned(SysAllocString(text));
    return pattern.Get_PatternFromString(owned.get(), numItem, &target);
}

/// The elements as colours; nothing for an array other than (0 To n) of variants that hold VT_I4.
std::optional<Colors> colorsOf(SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    LONG lower = -1;
    LONG upper = -1;
    if (FAILED(SafeArrayGetVartype(array, &type)) || type != VT_VARIANT || SafeArrayGetDim(array) != 1)
        return {};
    if (FAILED(SafeArrayGetLBound(array, 1, &lower)) || lower != 0) return {};
    if (FAILED(SafeArrayGetUBound(array, 1, &upper))) return {};
    Colors colors;
    for (LONG i = 0; i <= upper; ++i) {
        Variant element;
        if (FAILED(SafeArrayGetElement(array, &i, &element.get())) || V_VT(&element.get()) != VT_I4)
            return {};
        colors.push_back(V_I4(&element.get()));
    }
    return colors;
}

std::optional<Colors> colorsOf(Variant& variable) {
    if (V_VT(&variable.get()) != (VT_ARRAY | VT_VARIANT)) return {};
    return colorsOf(V_ARRAY(&variable.get()));
}

vrx::SafeArray threeElements(VARTYPE type) {
    SAFEARRAYBOUND bound{3, 5};
    return vrx::SafeArray(SafeArrayCreate(type, 1, &bound));
}

TEST(Pattern, ExpandsIntoAnArrayOfVariantsFrom0ToNumItem) {
    const auto pattern = makePattern();
    Variant table;
    ASSERT_EQ(expand(*pattern, L"0-255;", 10, table.get()), S_OK);
    EXPECT_EQ(colorsOf(table), kRedToBlack);
}

TEST(Pattern, WithNumItem0TheOneElementStaysEmpty) {
    const auto pattern = makePattern();
    Variant table;
    ASSERT_EQ(expand(*pattern, L"0-255;", 0, table.get()), S_OK);
    ASSERT_EQ(V_VT(&table.get()), VT_ARRAY | VT_VARIANT);
    LONG upper = -1;
    EXPECT_EQ(SafeArrayGetUBound(V_ARRAY(&table.get()), 1, &upper), S_OK);
    EXPECT_EQ(upper, 0);
    LONG index = 0;
    Variant element = vrx::makeLong(7);
    EXPECT_EQ(SafeArrayGetElement(V_ARRAY(&table.get()), &index, &element.get()), S_OK);
    EXPECT_EQ(V_VT(&element.get()), VT_EMPTY);
}

TEST(Pattern, NoTextIsTheEmptyString) {
    const auto pattern = makePattern();
    Variant table;
    ASSERT_EQ(pattern->Get_PatternFromString(nullptr, 255, &table.get()), S_OK);
    EXPECT_EQ(colorsOf(table), Colors(256, 0));
}

TEST(Pattern, DropsTheOldContentOfTheVariable) {
    const auto pattern = makePattern();
    Variant table = vrx::makeText(u"old");
    ASSERT_EQ(expand(*pattern, L"0-1;", 300, table.get()), S_OK);
    ASSERT_EQ(expand(*pattern, L"0-255;", 10, table.get()), S_OK);
    EXPECT_EQ(colorsOf(table), kRedToBlack);
}

TEST(Pattern, FillsACompiledHostsDynamicArrayOfVariants) {
    const auto pattern = makePattern();
    SAFEARRAY* array = threeElements(VT_VARIANT).release();
    VARIANT target = typedReference(VT_ARRAY | VT_VARIANT, &array);
    EXPECT_EQ(expand(*pattern, L"0-255;", 10, target), S_OK);
    EXPECT_EQ(colorsOf(array), kRedToBlack);
    EXPECT_EQ(expand(*pattern, L"0-255;", 1, target), S_OK);
    EXPECT_EQ(colorsOf(array), (Colors{255, 0}));
    SafeArrayDestroy(array);
    array = nullptr;
    EXPECT_EQ(expand(*pattern, L"0-255;", 10, target), S_OK);
    EXPECT_EQ(colorsOf(array), kRedToBlack);
    SafeArrayDestroy(array);
}

TEST(Pattern, RefusesAnArrayOfAnotherTypeAndALockedOne) {
    const auto pattern = makePattern();
    SAFEARRAY* longs = threeElements(VT_I4).release();
    VARIANT target = typedReference(VT_ARRAY | VT_I4, &longs);
    EXPECT_EQ(expand(*pattern, L"0-255;", 10, target), kTypeMismatch);
    SafeArrayDestroy(longs);
    SAFEARRAY* locked = threeElements(VT_VARIANT).release();
    target = typedReference(VT_ARRAY | VT_VARIANT, &locked);
    SafeArrayLock(locked);
    EXPECT_EQ(expand(*pattern, L"0-255;", 10, target), kLocked);
    SafeArrayUnlock(locked);
    EXPECT_EQ(expand(*pattern, L"0-255;", 10, target), S_OK);
    SafeArrayDestroy(locked);
}

/// Whether it holds an array (0 To 10) of variants, each of them Empty.
bool holdsElevenEmptyElements(Variant& table) {
    LONG upper = -1;
    if (V_VT(&table.get()) != (VT_ARRAY | VT_VARIANT)) return false;
    SAFEARRAY* const array = V_ARRAY(&table.get());
    if (FAILED(SafeArrayGetUBound(array, 1, &upper)) || upper != 10) return false;
    for (LONG i = 0; i <= upper; ++i) {
        Variant element = vrx::makeLong(7);
        SafeArrayGetElement(array, &i, &element.get());
        if (V_VT(&element.get()) != VT_EMPTY) return false;
    }
    return true;
}

TEST(Pattern, MakesTheFreshArrayFirstSoThatAfterAFailureItsElementsAreEmpty) {
    const auto pattern = makePattern();
    Variant table = vrx::makeText(u"old");
    EXPECT_EQ(expand(*pattern, L"0-255;99999999999-0;", 10, table.get()), kOverflow);
    EXPECT_TRUE(holdsElevenEmptyElements(table));
    ASSERT_EQ(expand(*pattern, L"0-255;", 300, table.get()), S_OK);
    EXPECT_EQ(expand(*pattern, L"0-2147483648;", 10, table.get()), kOverflow);
    EXPECT_TRUE(holdsElevenEmptyElements(table));
}

TEST(LateBoundPattern, MakesTheFreshArrayFirstSoThatAfterAFailureItsElementsAreEmpty) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    Variant table = vrx::makeLong(5);
    EXPECT_EQ(call(*pattern, L"Get_PatternFromString",
                   {Text(L"99999999999-0;"), integer(10), reference(table.get())})
                  .scode,
              kOverflow);
    EXPECT_TRUE(holdsElevenEmptyElements(table));
}

TEST(Pattern, AnArrayThatCannotBeMadeLeavesTheVariableAsItIs) {
    const auto pattern = makePattern();
    Variant table = vrx::makeLong(5);
    EXPECT_EQ(expand(*pattern, L"0-255;", -1, table.get()), kSubscript);
    EXPECT_EQ(V_VT(&table.get()), VT_I4);
    EXPECT_EQ(V_I4(&table.get()), 5);
}

TEST(Pattern, TheTextMayStandInTheArrayThatIsReplaced) {
    const auto pattern = makePattern();
    Variant table;
    ASSERT_EQ(expand(*pattern, L"0-255;", 0, table.get()), S_OK);
    LONG first = 0;
    Variant text = vrx::makeText(u"0-255;");
    ASSERT_EQ(SafeArrayPutElement(V_ARRAY(&table.get()), &first, &text.get()), S_OK);
    VARIANT* elements = nullptr;
    SafeArrayAccessData(V_ARRAY(&table.get()), reinterpret_cast<void**>(&elements));
    const BSTR inside = V_BSTR(elements);
    SafeArrayUnaccessData(V_ARRAY(&table.get()));
    EXPECT_EQ(pattern->Get_PatternFromString(inside, 10, &table.get()), S_OK);
    EXPECT_EQ(colorsOf(table), kRedToBlack);
}

TEST(Pattern, TheHostMayResizeTheArray) {
    const auto pattern = makePattern();
    Variant table;
    ASSERT_EQ(expand(*pattern, L"0-255;", 10, table.get()), S_OK);
    SAFEARRAYBOUND shorter{2, 0};
    EXPECT_EQ(SafeArrayRedim(V_ARRAY(&table.get()), &shorter), S_OK);
    EXPECT_EQ(colorsOf(table), (Colors{255, 230}));
}

TEST(Pattern, ReportsOverflowNegativeSizesAndTablesThatNoMemoryHolds) {
    const auto pattern = makePattern();
    Variant table;
    EXPECT_EQ(expand(*pattern, L"0-255;2147483648-0;", 10, table.get()), kOverflow);
    EXPECT_EQ(expand(*pattern, L"0-2147483648;", 10, table.get()), kOverflow);
    EXPECT_EQ(expand(*pattern, L"0-255;", -1, table.get()), kSubscript);
    EXPECT_EQ(expand(*pattern, L"0-255;", 2147483647, table.get()), kOutOfMemory);
    EXPECT_EQ(expand(*pattern, L"0-255;", 200'000'000, table.get()), kOutOfMemory);
    Variant next;
    EXPECT_EQ(expand(*pattern, L"0-255;", 10, next.get()), S_OK);
    EXPECT_EQ(colorsOf(next), kRedToBlack);
}

TEST(Pattern, WithoutAVariableThereIsNothingToFill) {
    const auto pattern = makePattern();
    EXPECT_EQ(pattern->Get_PatternFromString(nullptr, 10, nullptr), E_POINTER);
}

TEST(LateBoundPattern, FillsAScriptsVariable) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    ASSERT_TRUE(pattern);
    Variant table;
    const Outcome outcome =
        call(*pattern, L"Get_PatternFromString", {Text(L"0-255;"), integer(10), reference(table.get())});
    EXPECT_EQ(outcome.code, S_OK);
    EXPECT_EQ(V_VT(&outcome.result.get()), VT_EMPTY);
    EXPECT_EQ(colorsOf(table), kRedToBlack);
}

TEST(LateBoundPattern, TakesTextsByReferenceAndNumbersOfAnyType) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    ASSERT_TRUE(pattern);
    Variant text = vrx::makeText(u"0-255;");
    Variant size = vrx::makeText(u"10");
    Variant table;
    const VARIANT output = reference(table.get());
    EXPECT_EQ(
        call(*pattern, L"Get_PatternFromString", {reference(text.get()), reference(size.get()), output}).code,
        S_OK);
    EXPECT_EQ(colorsOf(table), kRedToBlack);
    EXPECT_EQ(call(*pattern, L"Get_PatternFromString", {integer(7), host::number(1.5), output}).code, S_OK);
    EXPECT_EQ(colorsOf(table), (Colors{0, 0, 0}));
}

TEST(LateBoundPattern, APlainValueInPlaceOfTheVariableIsAccepted) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    ASSERT_TRUE(pattern);
    EXPECT_EQ(call(*pattern, L"Get_PatternFromString", {Text(L"0-255;"), integer(10), integer(0)}).code,
              S_OK);
}

TEST(LateBoundPattern, FailuresCarryNumberSourceAndDescription) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    ASSERT_TRUE(pattern);
    Variant table;
    const VARIANT output = reference(table.get());
    const Outcome overflow =
        call(*pattern, L"Get_PatternFromString", {Text(L"99999999999-0;"), integer(10), output});
    EXPECT_EQ(overflow.code, DISP_E_EXCEPTION);
    EXPECT_EQ(overflow.scode, kOverflow);
    EXPECT_EQ(overflow.source, L"CVrxPattern");
    EXPECT_EQ(overflow.description, L"Overflow");
    const Outcome negative = call(*pattern, L"Get_PatternFromString", {Text(L""), integer(-1), output});
    EXPECT_EQ(negative.scode, kSubscript);
    EXPECT_EQ(negative.description, L"Subscript out of range");
}

TEST(LateBoundPattern, TenMegabytesOfStopsAreExpandedWithinSeconds) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    ASSERT_TRUE(pattern);
    std::wstring text = L"0-255;";
    for (int position = 999'999; text.size() < 10'000'000; --position) {
        text += std::to_wstring(position) + L"-65280;";
    }
    Variant table;
    const DWORD start = GetTickCount();
    EXPECT_EQ(
        call(*pattern, L"Get_PatternFromString", {Text(text.c_str()), integer(255), reference(table.get())})
            .code,
        S_OK);
    EXPECT_LT(GetTickCount() - start, 10'000u);
    const Colors colors = colorsOf(table).value_or(Colors{});
    ASSERT_EQ(colors.size(), 256u);
    EXPECT_EQ(colors.front(), 255);
    EXPECT_EQ(colors.back(), 65280);
}

TEST(LateBoundPattern, AMillionColorsArriveWhole) {
    const auto pattern = host::create(L"VrxCommon.CVrxPattern");
    ASSERT_TRUE(pattern);
    Variant table;
    EXPECT_EQ(call(*pattern, L"Get_PatternFromString",
                   {Text(L"0-16711680;1000-16711680;"), integer(999'999), reference(table.get())})
                  .code,
              S_OK);
    EXPECT_EQ(colorsOf(table), Colors(1'000'000, 16711680));
}

}  // namespace
