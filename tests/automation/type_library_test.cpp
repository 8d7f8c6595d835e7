// The type libraries, read back, against the table written by hand.

#include <gtest/gtest.h>

#include "BmpInfo.h"
#include "host.h"
#include "type_library_reader.h"

using published::line;
using vrx::ComPtr;

namespace {

constexpr long kSlotSize = sizeof(void*);
constexpr long kFirstOwnSlot = 7 * kSlotSize;  // behind IUnknown and IDispatch

enum class Source { File, Resource, Object };

ComPtr<ITypeLib> openLibrary(Source source) {
    if (source == Source::File) return loadLibrary(host::programFolder() + L"\\VrxCommon.tlb");
    if (source == Source::Resource) return loadLibrary(host::component().path() + L"\\1");
    const ComPtr<IDispatch> object = host::create(L"VrxCommon.CVrxFun");
    ComPtr<ITypeInfo> info;
    ComPtr<ITypeLib> library;
    UINT index = 0;
    if (object && SUCCEEDED(object->GetTypeInfo(0, 0, info.put())))
        info->GetContainingTypeLib(library.put(), &index);
    return library;
}

std::string guidText(const GUID& guid) {
    wchar_t buffer[40] = {};
    StringFromGUID2(guid, buffer, 40);
    return narrow(buffer);
}

TLIBATTR attributesOf(ITypeLib& library) {
    TLIBATTR* attributes = nullptr;
    library.GetLibAttr(&attributes);
    const TLIBATTR copy = *attributes;
    library.ReleaseTLibAttr(attributes);
    return copy;
}

std::string identifierOf(ITypeLib& library) { return guidText(attributesOf(library).guid); }

class TypeLibrary : public testing::TestWithParam<Source> {
  protected:
    void SetUp() override {
        library_ = openLibrary(GetParam());
        ASSERT_TRUE(library_);
    }

    ComPtr<ITypeLib> library_;
};

TEST_P(TypeLibrary, IsMadeForProgramsOfItsOwnKind) {
    EXPECT_EQ(attributesOf(*library_).syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
}

TEST_P(TypeLibrary, DescribesEveryInterfaceAsPublished) {
    for (const published::Interface& expected : published::kInterfaces) {
        SCOPED_TRACE(expected.name);
        const ComPtr<ITypeInfo> dispatch = findType(*library_, expected.name);
        ASSERT_TRUE(dispatch);
        const WORD flags = attributesOf(*dispatch).wTypeFlags;
        EXPECT_TRUE(flags & TYPEFLAG_FDUAL);
        EXPECT_TRUE(flags & TYPEFLAG_FHIDDEN);
        const ComPtr<ITypeInfo> table = tableOfMethods(*dispatch);
        ASSERT_TRUE(table);
        EXPECT_TRUE(attributesOf(*table).wTypeFlags & TYPEFLAG_FOLEAUTOMATION);
        std::vector<long> slots;
        const std::vector<published::Member> members = readMembers(*table, slots);
        ASSERT_EQ(members.size(), expected.members.size());
        for (std::size_t i = 0; i < members.size(); ++i) {
            EXPECT_EQ(line(members[i]), line(expected.members[i]));
            EXPECT_EQ(slots[i], kFirstOwnSlot + static_cast<long>(i) * kSlotSize);
            EXPECT_NE(helpOf(*table, members[i].id), "") << members[i].name;
        }
    }
}

TEST_P(TypeLibrary, DescribesEveryEventAsPublished) {
    for (const published::Interface& expected : published::kEvents) {
        SCOPED_TRACE(expected.name);
        const ComPtr<ITypeInfo> events = findType(*library_, expected.name);
        ASSERT_TRUE(events);
        EXPECT_EQ(attributesOf(*events).typekind, TKIND_DISPATCH);
        EXPECT_FALSE(attributesOf(*events).wTypeFlags & TYPEFLAG_FDUAL);
        EXPECT_TRUE(attributesOf(*events).wTypeFlags & TYPEFLAG_FHIDDEN);
        std::vector<long> slots;
        const std::vector<published::Member> members = readMembers(*events, slots);
        ASSERT_EQ(members.size(), expected.members.size());
        for (std::size_t i = 0; i < members.size(); ++i) {
            EXPECT_EQ(line(members[i]), line(expected.members[i]));
            EXPECT_NE(helpOf(*events, members[i].id), "") << members[i].name;
        }
    }
}

TEST_P(TypeLibrary, DescribesEveryEnumerationAsPublished) {
    for (const published::Enumeration& expected : published::kEnumerations) {
        SCOPED_TRACE(expected.name);
        const ComPtr<ITypeInfo> enumeration = findType(*library_, expected.name);
        ASSERT_TRUE(enumeration);
        ASSERT_EQ(attributesOf(*enumeration).typekind, TKIND_ENUM);
        ASSERT_EQ(attributesOf(*enumeration).cVars, expected.values.size());
        for (UINT i = 0; i < expected.values.size(); ++i) {
            VARDESC* constant = nullptr;
            ASSERT_EQ(enumeration->GetVarDesc(i, &constant), S_OK);
            vrx::Bstr name;
            enumeration->GetDocumentation(constant->memid, name.put(), nullptr, nullptr, nullptr);
            EXPECT_EQ(narrow(name.get()), expected.values[i].first);
            EXPECT_EQ(V_I4(constant->lpvarValue), expected.values[i].second);
            enumeration->ReleaseVarDesc(constant);
        }
        EXPECT_NE(helpOf(*enumeration, MEMBERID_NIL), "");
    }
}

TEST_P(TypeLibrary, NamesInterfaceAndEventsOfEveryClass) {
    for (const published::Class& expected : published::kClasses) {
        SCOPED_TRACE(expected.name);
        const ComPtr<ITypeInfo> coclass = findType(*library_, expected.name);
        ASSERT_TRUE(coclass);
        const TYPEATTR attributes = attributesOf(*coclass);
        ASSERT_EQ(attributes.typekind, TKIND_COCLASS);
        EXPECT_TRUE(attributes.wTypeFlags & TYPEFLAG_FCANCREATE);
        EXPECT_EQ((attributes.wTypeFlags & TYPEFLAG_FCONTROL) != 0, expected.isControl);
        EXPECT_NE(helpOf(*coclass, MEMBERID_NIL), "");
        std::string interfaceName;
        std::string eventsName;
        for (UINT i = 0; i < attributes.cImplTypes; ++i) {
            INT flags = 0;
            HREFTYPE reference = 0;
            ASSERT_EQ(coclass->GetImplTypeFlags(i, &flags), S_OK);
            ASSERT_EQ(coclass->GetRefTypeOfImplType(i, &reference), S_OK);
            EXPECT_TRUE(flags & IMPLTYPEFLAG_FDEFAULT);
            TYPEDESC description{};
            description.vt = VT_USERDEFINED;
            description.hreftype = reference;
            (flags & IMPLTYPEFLAG_FSOURCE ? eventsName : interfaceName) = typeName(*coclass, description);
        }
        EXPECT_EQ(interfaceName, expected.interfaceName);
        EXPECT_EQ(eventsName, expected.eventsName);
    }
}

TEST_P(TypeLibrary, KeepsEveryIdentifier) {
    const ComPtr<ITypeLib> records = loadLibrary(host::component().path() + L"\\2");
    ASSERT_TRUE(records);
    for (const published::Identifier& expected : published::kIdentifiers) {
        SCOPED_TRACE(expected.name);
        std::string found = "none";
        if (expected.name == "VrxCommon") {
            found = identifierOf(*library_);
        } else if (expected.name == "VrxTypeLib") {
            found = identifierOf(*records);
        } else if (const ComPtr<ITypeInfo> type = findType(*library_, expected.name)) {
            found = guidText(attributesOf(*type).guid);
        } else if (const ComPtr<ITypeInfo> record = findType(*records, expected.name)) {
            found = guidText(attributesOf(*record).guid);
        }
        EXPECT_EQ(found, expected.guid);
    }
}

INSTANTIATE_TEST_SUITE_P(From, TypeLibrary, testing::Values(Source::File, Source::Resource, Source::Object),
                         [](const testing::TestParamInfo<Source>& source) {
                             return source.param == Source::File       ? "File"
                                    : source.param == Source::Resource ? "Resource"
                                                                       : "Object";
                         });

const char* const kFields[] = {
    "0 Long biSize",           "4 Long biWidth",        "8 Long biHeight",        "12 Integer biPlanes",
    "14 Integer biBitCount",   "16 Long biCompression", "20 Long biSizeImage",    "24 Long biXPelsPerMeter",
    "28 Long biYPelsPerMeter", "32 Long biClrUsed",     "36 Long biClrImportant", "40 RgbQuad(256) bmiColors",
};

TEST(RecordLibrary, DescribesTheBitmapInfoRecordAsPublished) {
    for (const std::wstring& path :
         {host::programFolder() + L"\\VrxTypeLib.tlb", host::component().path() + L"\\2"}) {
        const ComPtr<ITypeLib> library = loadLibrary(path);
        ASSERT_TRUE(library);
        const ComPtr<ITypeInfo> record = findType(*library, "BmpInfo");
        ASSERT_TRUE(record);
        const TYPEATTR attributes = attributesOf(*record);
        EXPECT_EQ(attributes.typekind, TKIND_RECORD);
        EXPECT_EQ(attributes.cbSizeInstance, 1064u);
        ASSERT_EQ(attributes.cVars, std::size(kFields));
        for (UINT i = 0; i < attributes.cVars; ++i) {
            VARDESC* field = nullptr;
            ASSERT_EQ(record->GetVarDesc(i, &field), S_OK);
            vrx::Bstr name;
            record->GetDocumentation(field->memid, name.put(), nullptr, nullptr, nullptr);
            EXPECT_EQ(std::to_string(field->oInst) + ' ' + typeName(*record, field->elemdescVar.tdesc) + ' ' +
                          narrow(name.get()),
                      kFields[i]);
            record->ReleaseVarDesc(field);
        }
    }
}

TEST(RecordLibrary, GivesHostsTheRecordToFill) {
    GUID library{};
    GUID record{};
    CLSIDFromString(L"{897F52C7-06C5-419E-8D75-FE91814045D8}", &library);
    CLSIDFromString(L"{7008D90C-4753-463B-83DA-3D8B32D9269E}", &record);
    ComPtr<IRecordInfo> info;
    ASSERT_EQ(GetRecordInfoFromGuids(library, 1, 0, 0, record, info.put()), S_OK);
    ULONG size = 0;
    EXPECT_EQ(info->GetSize(&size), S_OK);
    EXPECT_EQ(size, 1064u);
    EXPECT_EQ(sizeof(BmpInfo), 1064u);
}

TEST(CppHeader, KeepsTheRecordsLayout) {
    EXPECT_EQ(offsetof(BmpInfo, biWidth), 4u);
    EXPECT_EQ(offsetof(BmpInfo, biBitCount), 14u);
    EXPECT_EQ(offsetof(BmpInfo, bmiColors), 40u);
}

}  // namespace
