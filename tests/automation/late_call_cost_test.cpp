// What late-bound calls cost hosts that make many.

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>

#include "hdr_host.h"
#include "import_patch.h"

namespace {

int allocations = 0;
int locks = 0;
int conversions = 0;

void* __cdecl allocate(std::size_t size) { return ++allocations, std::malloc(size); }
void* __cdecl allocateCleared(std::size_t count, std::size_t size) {
    return ++allocations, std::calloc(count, size);
}
void* __cdecl allocateAgain(void* block, std::size_t size) {
    return ++allocations, std::realloc(block, size);
}
BSTR WINAPI allocateText(const OLECHAR* text) { return ++allocations, SysAllocString(text); }
BSTR WINAPI allocateTextOf(const OLECHAR* text, UINT length) {
    return ++allocations, SysAllocStringLen(text, length);
}
void WINAPI lock(CRITICAL_SECTION* section) { ++locks, EnterCriticalSection(section); }
HRESULT WINAPI convert(VARIANT* target, VARIANT* source, LCID locale, USHORT flags, VARTYPE type) {
    return ++conversions, VariantChangeTypeEx(target, source, locale, flags, type);
}

/// The imports of the component, counted from when this exists.
class CountedImports {
  public:
    CountedImports() { allocations = locks = conversions = 0; }

  private:
    HMODULE module_ = GetModuleHandleW(L"VrxCommon.dll");
    host::ImportPatch malloc_{module_, "malloc", allocate};
    host::ImportPatch calloc_{module_, "calloc", allocateCleared};
    host::ImportPatch realloc_{module_, "realloc", allocateAgain};
    host::ImportPatch text_{module_, "SysAllocString", allocateText};
    host::ImportPatch textOf_{module_, "SysAllocStringLen", allocateTextOf};
    host::ImportPatch lock_{module_, "EnterCriticalSection", lock};
    host::ImportPatch convert_{module_, "VariantChangeTypeEx", convert};
};

class LateCall : public testing::Test {
  protected:
    host::Hdr hdr_;
    wchar_t name_[10] = L"get_compo";
    wchar_t* names_[1] = {name_};

    void SetUp() override { ASSERT_EQ(hdr_.set(host::RgbePicture(3, 2)), S_OK); }

    /// As a script calls it: the name first, then the arguments, the last one in front.
    [[nodiscard]] HRESULT component(VARIANT (&arguments)[3], VARIANT& result) {
        DISPID id = DISPID_UNKNOWN;
        DISPPARAMS parameters{arguments, nullptr, 3, 0};
        const HRESULT found = hdr_.late().GetIDsOfNames(IID_NULL, names_, 1, 0, &id);
        return FAILED(found) ? found
                             : hdr_.late().Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, &result,
                                                  nullptr, nullptr);
    }
};

TEST_F(LateCall, WhoseArgumentsNeedNoConversionAllocatesNothingAndTakesNoLock) {
    VARIANT x = vrx::makeInteger(1).release();
    VARIANT y = host::integer(1);
    VARIANT arguments[3] = {host::integer(2), host::reference(y), host::reference(x)};
    VARIANT result{};
    ASSERT_EQ(component(arguments, result), S_OK);
    const CountedImports counted;
    for (int i = 0; i < 100; ++i) ASSERT_EQ(component(arguments, result), S_OK);
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(locks, 0);
    EXPECT_EQ(conversions, 0);
    ASSERT_EQ(V_VT(&result), VT_R4);
    EXPECT_EQ(V_R4(&result), hdr_.compo(1, 1, 2));
}

TEST_F(LateCall, WhoseArgumentsNeedOneIsCountedByThisTest) {
    const host::Text x(L"1");
    VARIANT arguments[3] = {host::integer(2), host::integer(1), x};
    VARIANT result{};
    ASSERT_EQ(component(arguments, result), S_OK);
    const CountedImports counted;
    ASSERT_EQ(component(arguments, result), S_OK);
    EXPECT_GT(allocations, 0);
    EXPECT_GT(conversions, 0);
    EXPECT_EQ(V_R4(&result), hdr_.compo(1, 1, 2));
}

TEST_F(LateCall, FindsNamesInAnyCase) {
    for (const wchar_t* name : {L"Get_Compo", L"GET_COMPO", L"get_compo"}) {
        EXPECT_EQ(host::idOf(hdr_.late(), name), 20) << name;
    }
    for (const wchar_t* name : {L"", L"Get_Comp", L"Get_Compos", L"Gét_Compo"}) {
        EXPECT_EQ(host::idOf(hdr_.late(), name), DISPID_UNKNOWN);
    }
    const std::wstring longName(1000, L'a');
    EXPECT_EQ(host::idOf(hdr_.late(), longName.c_str()), DISPID_UNKNOWN);
}

TEST_F(LateCall, FindsTheNamesOfArguments) {
    wchar_t member[] = L"Get_Compo";
    wchar_t component[] = L"icompo";
    wchar_t column[] = L"X";
    wchar_t unknown[] = L"Z";
    wchar_t* names[] = {member, component, column, unknown};
    DISPID ids[4] = {};
    EXPECT_EQ(hdr_.late().GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
    EXPECT_EQ(ids[1], 2);
    EXPECT_EQ(ids[2], 0);
    EXPECT_EQ(hdr_.late().GetIDsOfNames(IID_NULL, names, 4, 0, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[1], 2);
    EXPECT_EQ(ids[3], DISPID_UNKNOWN);
}

}  // namespace
