// CVrxFun: paths, keys and names for compiled and for script hosts.

#include <gtest/gtest.h>

#include <string>

#include "VrxCommon.h"
#include "failure.h"
#include "host.h"

using host::call;
using host::Failure;
using host::failureOf;
using host::integer;
using host::number;
using host::Outcome;
using host::reference;
using host::Text;
using host::truth;
using host::typedReference;
using vrx::Bstr;
using vrx::ComPtr;
using vrx::Variant;

namespace {

const Failure kSubscript{9, L"CVrxFun", L"Subscript out of range"};
const Failure kNullUse{94, L"CVrxFun", L"Invalid use of Null"};
const Failure kTypeMismatch{13, L"CVrxFun", L"Type mismatch"};

std::wstring textOf(const VARIANT& value) {
    if (V_VT(&value) != VT_BSTR) return L"(no text)";
    return {V_BSTR(&value), V_BSTR(&value) + SysStringLen(V_BSTR(&value))};
}

std::wstring textOf(const Outcome& outcome) {
    return FAILED(outcome.code) ? L"(failed)" : textOf(outcome.result.get());
}

VARIANT nullValue() {
    VARIANT made{};
    V_VT(&made) = VT_NULL;
    return made;
}

Variant arrayOfNumbers() {
    Variant made;
    V_VT(&made.get()) = VT_ARRAY | VT_I4;
    V_ARRAY(&made.get()) = SafeArrayCreateVector(VT_I4, 0, 2);
    return made;
}

class Fun : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(fun_); }

    Outcome call(const wchar_t* name, std::initializer_list<VARIANT> arguments) {
        return host::call(*fun_, name, arguments);
    }
    std::wstring text(const wchar_t* name, std::initializer_list<VARIANT> arguments) {
        return textOf(call(name, arguments));
    }
    ComPtr<_CVrxFun> early() { return fun_.as<_CVrxFun>(); }

    ComPtr<IDispatch> fun_ = host::create(L"VrxCommon.CVrxFun");
};

TEST_F(Fun, PicksStepsOfKeys) {
    EXPECT_EQ(text(L"Get_XPathStep", {Text(L"a/b/c"), integer(1)}), L"b");
    EXPECT_EQ(text(L"Get_XPathStep", {Text(L"a/b/c"), integer(3)}), L"");
    EXPECT_EQ(text(L"Get_XPathStep", {Text(L""), integer(0)}), L"");
    EXPECT_EQ(text(L"Get_Key", {Text(L"12-7-3"), integer(0)}), L"12");
}

TEST_F(Fun, TakesKeysByReferenceAndLeavesThemAlone) {
    Variant key = vrx::makeText(u"a/b");
    EXPECT_EQ(text(L"Get_XPathStep", {reference(key.get()), integer(1)}), L"b");
    EXPECT_EQ(textOf(key.get()), L"a/b");
    Bstr typed(SysAllocString(L"12-7"));
    BSTR variable = typed.get();
    EXPECT_EQ(text(L"Get_Key", {typedReference(VT_BSTR, &variable), integer(1)}), L"7");
    EXPECT_EQ(variable, typed.get());
}

TEST_F(Fun, TakesNumbersAndEmptyForKeys) {
    EXPECT_EQ(text(L"Get_Key", {integer(-5), integer(1)}), L"5");
    EXPECT_EQ(text(L"Get_XPathStep", {number(12.5), integer(0)}), L"12.5");
    EXPECT_EQ(text(L"Get_XPathStep", {VARIANT{}, integer(0)}), L"");
}

TEST_F(Fun, RefusesNullForAKey) {
    EXPECT_EQ(failureOf(call(L"Get_XPathStep", {nullValue(), integer(0)})), kNullUse);
    Variant null(nullValue());
    EXPECT_EQ(failureOf(call(L"Get_Key", {reference(null.get()), integer(0)})), kNullUse);
}

TEST_F(Fun, RefusesArraysForAKey) {
    const Variant array = arrayOfNumbers();
    EXPECT_EQ(failureOf(call(L"Get_Key", {array.get(), integer(0)})), kTypeMismatch);
}

TEST_F(Fun, FailsForANegativePosition) {
    EXPECT_EQ(failureOf(call(L"Get_XPathStep", {Text(L"a/b"), integer(-1)})), kSubscript);
    EXPECT_EQ(failureOf(call(L"Get_Key", {Text(L"a-b"), integer(-32768)})), kSubscript);
}

TEST_F(Fun, MakesPathsAbsolute) {
    EXPECT_EQ(text(L"Get_AbsolutePath", {Text(L"..\\..\\x.hdr"), Text(L"C:\\A\\B\\C")}), L"C:\\A\\x.hdr");
    EXPECT_EQ(text(L"Get_AbsolutePath", {Text(L"a.hdr"), Text(L"\\\\srv\\share\\dir")}),
              L"\\\\srv\\share\\dir\\a.hdr");
}

TEST_F(Fun, FailsForAFolderWithoutASeparator) {
    const Failure expected{79, L"CVrxFun", L"Path not found!"};
    EXPECT_EQ(failureOf(call(L"Get_AbsolutePath", {Text(L"x.hdr"), Text(L"C:")})), expected);
    Bstr result(SysAllocString(L"old"));
    const Bstr file(SysAllocString(L"x.hdr"));
    EXPECT_EQ(failureOf(early()->Get_AbsolutePath(file.get(), nullptr, result.put())), expected);
    EXPECT_EQ(result.get(), nullptr);
}

TEST_F(Fun, ForgetsAFailureBeforeTheNextCall) {
    EXPECT_NE(failureOf(call(L"Get_AbsolutePath", {Text(L"x.hdr"), Text(L"C:")})), host::kNone);
    EXPECT_EQ(failureOf(call(L"Get_RelativePath", {Text(L"\\\\"), Text(L"C:\\A")})), kSubscript);
    EXPECT_EQ(text(L"Get_AbsolutePath", {Text(L"x.hdr"), Text(L"C:\\")}), L"C:\\x.hdr");
}

TEST_F(Fun, MakesPathsRelative) {
    EXPECT_EQ(text(L"Get_RelativePath", {Text(L"C:\\Work\\Img\\a.hdr"), Text(L"c:\\work\\Pat")}),
              L"../Img/a.hdr");
    EXPECT_EQ(text(L"Get_RelativePath", {Text(L"D:\\x.hdr"), Text(L"C:\\Work")}), L"D:/x.hdr");
}

TEST_F(Fun, ShortensPathsForDisplay) {
    EXPECT_EQ(text(L"Get_PathShortFormat", {Text(L"C:\\Programs\\Sub\\Dir\\file.txt")}),
              L"C:\\Programs\\...\\file.txt");
    EXPECT_EQ(text(L"Get_PathShortFormat", {Text(L"file.txt")}), L"filfile.txt");
}

TEST_F(Fun, GivesTheFolderOfAPath) { EXPECT_EQ(text(L"Get_Path", {Text(L"a/b/c.txt")}), L"a\\b\\"); }

TEST_F(Fun, CutsAScriptsVariableDownToTheFolder) {
    Variant path = vrx::makeText(u"C:\\Pat\\blue.VGR");
    EXPECT_EQ(text(L"Get_AppName", {reference(path.get()), truth(false)}), L"blue");
    EXPECT_EQ(textOf(path.get()), L"C:\\Pat\\");
}

TEST_F(Fun, CutsATypedVariableDownToTheFolder) {
    BSTR path = SysAllocString(L"C:\\Pat\\blue.VGR");
    EXPECT_EQ(text(L"Get_AppName", {typedReference(VT_BSTR, &path), truth(true)}), L"blue.VGR");
    const Bstr left(path);
    EXPECT_STREQ(left.get(), L"C:\\Pat\\");
}

TEST_F(Fun, CutsACompiledHostsVariantDownToTheFolder) {
    Variant path = vrx::makeText(u"C:\\Pat\\blue.VGR");
    Bstr name;
    EXPECT_EQ(early()->Get_AppName(&path.get(), VARIANT_FALSE, name.put()), S_OK);
    EXPECT_STREQ(name.get(), L"blue");
    EXPECT_EQ(textOf(path.get()), L"C:\\Pat\\");
}

TEST_F(Fun, CutsTheTextBehindACompiledHostsVariant) {
    BSTR path = SysAllocString(L"C:\\Pat\\blue.VGR");
    VARIANT variable = typedReference(VT_BSTR, &path);
    Bstr name;
    EXPECT_EQ(early()->Get_AppName(&variable, VARIANT_FALSE, name.put()), S_OK);
    const Bstr left(path);
    EXPECT_STREQ(name.get(), L"blue");
    EXPECT_STREQ(left.get(), L"C:\\Pat\\");
    EXPECT_EQ(V_VT(&variable), VT_BYREF | VT_BSTR);
}

TEST_F(Fun, NamesAPathThatIsNoVariable) {
    EXPECT_EQ(text(L"Get_AppName", {Text(L"C:\\Pat\\blue.VGR"), truth(false)}), L"blue");
}

TEST_F(Fun, LeavesAVariableAloneThatHasNothingToCut) {
    Variant path(integer(7));
    EXPECT_EQ(text(L"Get_AppName", {reference(path.get()), truth(false)}), L"7");
    EXPECT_EQ(V_VT(&path.get()), VT_I4);
}

TEST_F(Fun, WritesACutNumberBackInItsOwnType) {
    double path = 12.5;
    EXPECT_EQ(text(L"Get_AppName", {typedReference(VT_R8, &path), truth(false)}), L"12");
    EXPECT_EQ(path, 12.0);
}

TEST_F(Fun, NamesNothingWhereThePathIsNoText) {
    Variant null(nullValue());
    EXPECT_EQ(text(L"Get_AppName", {reference(null.get()), truth(false)}), L"");
    EXPECT_EQ(V_VT(&null.get()), VT_NULL);
    const Variant array = arrayOfNumbers();
    EXPECT_EQ(text(L"Get_AppName", {array.get(), truth(false)}), L"");
}

TEST_F(Fun, TakesNoTextForAnEmptyOne) {
    for (const wchar_t* name : {L"Get_PathShortFormat", L"Get_Path"}) EXPECT_EQ(text(name, {Text(L"")}), L"");
    Bstr result;
    EXPECT_EQ(early()->Get_PathShortFormat(nullptr, result.put()), S_OK);
    EXPECT_EQ(early()->Get_Path(nullptr, result.put()), S_OK);
    EXPECT_EQ(early()->Get_RelativePath(nullptr, nullptr, result.put()), S_OK);
    EXPECT_EQ(SysStringLen(result.get()), 0u);
}

TEST_F(Fun, RefusesANullPointerForAVariable) {
    Bstr result(SysAllocString(L"old"));
    EXPECT_EQ(failureOf(early()->Get_Key(nullptr, 0, result.put())).number, 5);
    EXPECT_EQ(result.get(), nullptr);
    EXPECT_EQ(early()->Get_AppName(nullptr, VARIANT_FALSE, result.put()), S_OK);
    Variant key = vrx::makeText(u"a");
    EXPECT_EQ(early()->Get_Key(&key.get(), 0, nullptr), E_POINTER);
}

TEST_F(Fun, KeepsZeroCharactersInsideATextAsCharacters) {
    const std::u16string key = std::u16string(u"a\0b", 3) + u"/c";
    EXPECT_EQ(text(L"Get_XPathStep", {vrx::makeText(key).get(), integer(0)}), std::wstring(L"a\0b", 3));
}

}  // namespace
