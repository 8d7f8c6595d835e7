// Texts, variants and byte arrays of automation, to C++ and back.

#include "com/variant_convert.h"

#include <gtest/gtest.h>

#include <array>

#include "ground/error.h"
#include "host.h"

using host::typedReference;
using vrx::Bounds;
using vrx::ByteArrayView;
using vrx::SafeArray;
using vrx::Variant;

namespace {

/// Number of the error that `step` throws; 0 when it throws none.
template <class Step>
int errorOf(Step step) {
    try {
        step();
    } catch (const vrx::Error& error) {
        return error.number;
    }
    return 0;
}

TEST(Text, KeepsEveryCharacterBothWays) {
    const std::u16string text = std::u16string(u"a\0b", 3) + u"\u20AC\xD83D\xDE00";
    const vrx::Bstr copy = vrx::toBstr(text);
    EXPECT_EQ(SysStringLen(copy.get()), 6u);
    EXPECT_TRUE(vrx::toText(copy.get()) == text);
    EXPECT_TRUE(vrx::toText(static_cast<BSTR>(nullptr)).empty());
    EXPECT_TRUE(vrx::toBstr(u"").get() != nullptr);
}

TEST(Text, IsMadeOfNumbersAndEmptyButNotOfNull) {
    EXPECT_TRUE(vrx::toText(host::integer(-12)) == u"-12");
    EXPECT_TRUE(vrx::toText(host::number(1.5)) == u"1.5");
    EXPECT_TRUE(vrx::toText(VARIANT{}).empty());
    VARIANT null{};
    V_VT(&null) = VT_NULL;
    EXPECT_EQ(errorOf([&] { (void)vrx::toText(null); }), 13);
    short number = 7;
    EXPECT_TRUE(vrx::toText(typedReference(VT_I2, &number)) == u"7");
}

TEST(Conversion, RoundsHalvesToEvenAndReportsOverflow) {
    EXPECT_EQ(V_I4(&vrx::convert(host::number(2.5), VT_I4).get()), 2);
    EXPECT_EQ(V_I4(&vrx::convert(host::number(3.5), VT_I4).get()), 4);
    EXPECT_EQ(errorOf([] { (void)vrx::convert(host::number(1e10), VT_I4); }), 6);
    EXPECT_EQ(errorOf([] { (void)vrx::convert(host::Text(L"abc"), VT_I4); }), 13);
    EXPECT_EQ(errorOf([] { (void)vrx::convert(typedReference(VT_I4, nullptr), VT_I4); }), 13);
}

TEST(PutVariant, ReplacesAPlainVariable) {
    Variant target = vrx::makeText(u"old");
    vrx::putVariant(target.get(), vrx::makeDouble(0.25));
    EXPECT_EQ(V_VT(&target.get()), VT_R8);
    EXPECT_EQ(V_R8(&target.get()), 0.25);
    vrx::putVariant(target.get(), Variant());
    EXPECT_EQ(V_VT(&target.get()), VT_EMPTY);
}

TEST(PutVariant, WritesThroughReferencesOfEveryType) {
    unsigned char byte = 0;
    short integer = 0;
    long number = 0;
    float single = 0;
    double real = 0;
    CY currency{};
    VARIANT_BOOL boolean = VARIANT_FALSE;
    BSTR text = SysAllocString(L"old");
    Variant inner = vrx::makeText(u"old");
    for (VARIANT target :
         {typedReference(VT_UI1, &byte), typedReference(VT_I2, &integer), typedReference(VT_I4, &number),
          typedReference(VT_R4, &single), typedReference(VT_R8, &real), typedReference(VT_CY, &currency),
          typedReference(VT_BOOL, &boolean), typedReference(VT_BSTR, &text),
          typedReference(VT_VARIANT, &inner.get())}) {
        vrx::putVariant(target, vrx::makeLong(42));
    }
    EXPECT_EQ(byte, 42);
    EXPECT_EQ(integer, 42);
    EXPECT_EQ(number, 42);
    EXPECT_EQ(single, 42.0f);
    EXPECT_EQ(real, 42.0);
    EXPECT_EQ(currency.int64, 420000);
    EXPECT_EQ(boolean, VARIANT_TRUE);
    EXPECT_STREQ(text, L"42");
    EXPECT_EQ(V_VT(&inner.get()), VT_I4);
    SysFreeString(text);
}

TEST(PutVariant, LeavesTheVariableWhenTheValueDoesNotFit) {
    unsigned char byte = 9;
    VARIANT target = typedReference(VT_UI1, &byte);
    EXPECT_EQ(errorOf([&] { vrx::putVariant(target, vrx::makeLong(256)); }), 6);
    EXPECT_EQ(errorOf([&] { vrx::putVariant(target, vrx::makeText(u"x")); }), 13);
    EXPECT_EQ(byte, 9);
    VARIANT null = typedReference(VT_I4, nullptr);
    EXPECT_EQ(errorOf([&] { vrx::putVariant(null, vrx::makeLong(1)); }), 13);
}

TEST(PutVariant, ReplacesAnArrayThroughItsReference) {
    SAFEARRAY* array = nullptr;
    VARIANT target = typedReference(VT_ARRAY | VT_UI1, &array);
    const std::uint8_t bytes[] = {8, 9};
    vrx::putVariant(target, vrx::makeArray(vrx::makeByteArray(bytes)));
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(ByteArrayView(array).bytes()[1], 9);
    SafeArrayDestroy(array);
}

TEST(PutVariant, RefusesArraysThatAreLockedOrFixed) {
    const std::uint8_t bytes[] = {8, 9};
    SAFEARRAY* array = vrx::makeByteArray(bytes).release();
    VARIANT target = typedReference(VT_ARRAY | VT_UI1, &array);
    SafeArrayLock(array);
    EXPECT_EQ(errorOf([&] { vrx::putVariant(target, vrx::makeArray(vrx::makeByteArray(bytes))); }), 10);
    SafeArrayUnlock(array);
    array->fFeatures |= FADF_FIXEDSIZE;
    EXPECT_EQ(errorOf([&] { vrx::replaceArray(&array, vrx::makeByteArray(bytes)); }), 10);
    array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
    SafeArrayDestroy(array);
}

TEST(ByteArray, HasItsFirstDimensionVaryingFastest) {
    const std::array bounds = {Bounds{0, 2}, Bounds{0, 1}, Bounds{0, 3}};
    const SafeArray array = vrx::makeByteArray(bounds);
    const ByteArrayView view(array.get());
    ASSERT_EQ(view.rank(), 3u);
    ASSERT_EQ(view.bytes().size(), 3u * 2u * 4u);
    for (std::size_t i = 0; i < view.bytes().size(); ++i) view.bytes()[i] = static_cast<std::uint8_t>(i);
    LONG index[] = {2, 1, 3};
    BYTE element = 0;
    ASSERT_EQ(SafeArrayGetElement(array.get(), index, &element), S_OK);
    EXPECT_EQ(element, 2 + 1 * 3 + 3 * 6);
}

TEST(ByteArray, TellsTheBoundsOfEachDimension) {
    const std::array bounds = {Bounds{-5, 2}, Bounds{1, 10}};
    const SafeArray array = vrx::makeByteArray(bounds);
    const ByteArrayView view(array.get());
    EXPECT_EQ(view.bounds(0).lower, -5);
    EXPECT_EQ(view.bounds(0).upper, 2);
    EXPECT_EQ(view.bounds(1).lower, 1);
    EXPECT_EQ(view.bounds(1).upper, 10);
    EXPECT_EQ(view.bytes().size(), 80u);
    EXPECT_EQ(errorOf([&] { (void)view.bounds(2); }), 9);
}

TEST(ByteArray, IsSeenInEveryFormOfAVariant) {
    const std::uint8_t bytes[] = {1, 2, 3};
    Variant value = vrx::makeArray(vrx::makeByteArray(bytes));
    SAFEARRAY* array = V_ARRAY(&value.get());
    VARIANT typed = typedReference(VT_ARRAY | VT_UI1, &array);
    for (const VARIANT& form : {value.get(), host::reference(value.get()), typed, host::reference(typed)}) {
        EXPECT_TRUE(vrx::holdsArray(form));
        EXPECT_EQ(ByteArrayView(form).bytes()[2], 3);
    }
    EXPECT_FALSE(vrx::holdsArray(host::integer(1)));
    EXPECT_FALSE(vrx::holdsArray(VARIANT{}));
}

TEST(ByteArray, OfOtherElementsIsATypeMismatch) {
    SAFEARRAYBOUND bound{4, 0};
    for (const VARTYPE type : {VT_I1, VT_I2, VT_I4, VT_R4, VT_BSTR, VT_VARIANT}) {
        Variant value;
        V_VT(&value.get()) = static_cast<VARTYPE>(VT_ARRAY | type);
        V_ARRAY(&value.get()) = SafeArrayCreate(type, 1, &bound);
        EXPECT_EQ(errorOf([&] { ByteArrayView view(value.get()); }), 13);
        EXPECT_EQ(errorOf([&] { ByteArrayView view(V_ARRAY(&value.get())); }), 13);
    }
    EXPECT_EQ(errorOf([] { ByteArrayView view(host::integer(1)); }), 13);
    EXPECT_EQ(errorOf([] { ByteArrayView view(typedReference(VT_ARRAY | VT_UI1, nullptr)); }), 13);
}

TEST(ByteArray, WithoutDimensionsOrElementsHasNoBytes) {
    SAFEARRAY* none = nullptr;
    const ByteArrayView view(typedReference(VT_ARRAY | VT_UI1, &none));
    EXPECT_EQ(view.rank(), 0u);
    EXPECT_TRUE(view.bytes().empty());
    EXPECT_EQ(errorOf([&] { (void)view.bounds(0); }), 9);
    const SafeArray empty = vrx::makeByteArray(std::span<const std::uint8_t>());
    const ByteArrayView nothing(empty.get());
    EXPECT_EQ(nothing.rank(), 1u);
    EXPECT_EQ(nothing.bounds(0).upper, -1);
    EXPECT_TRUE(nothing.bytes().empty());
}

TEST(ByteArray, IsLockedWhileItIsViewed) {
    const std::uint8_t bytes[] = {1};
    SafeArray array = vrx::makeByteArray(bytes);
    {
        const ByteArrayView view(array.get());
        EXPECT_EQ(SafeArrayDestroy(array.get()), DISP_E_ARRAYISLOCKED);
    }
    EXPECT_EQ(array.get()->cLocks, 0u);
}

TEST(ByteArray, RefusesBoundsThatRunBackwards) {
    const std::array bounds = {Bounds{3, 1}};
    EXPECT_EQ(errorOf([&] { (void)vrx::makeByteArray(bounds); }), 9);
}

}  // namespace
