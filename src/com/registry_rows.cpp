#include "com/registry_rows.h"

#include <windows.h>

#include <comcat.h>
#include <oaidl.h>

#include "com/class_table.h"
#include "com/hresult_failure.h"
#include "com/module.h"
#include "com/type_attributes.h"
#include "com/type_library.h"
#include "com/win_resource.h"

namespace vrx {
namespace {

constexpr wchar_t kVersion[] = L"1.0";

// Where the paths of a type library's files stand. The system shows its 32-bit and its 64-bit programs the
// same program ids and type libraries, and classes and interfaces of their own.
constexpr bool kWide = sizeof(void*) == 8;
constexpr const wchar_t* kPlatform = kWide ? L"\\0\\win64" : L"\\0\\win32";
constexpr const wchar_t* kOtherPlatform = kWide ? L"\\0\\win32" : L"\\0\\win64";

// The system's proxies: for interfaces described by a type library, and for those that have IDispatch only.
constexpr wchar_t kTypeLibraryProxy[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr wchar_t kDispatchProxy[] = L"{00020420-0000-0000-C000-000000000046}";

std::wstring text(const GUID& guid) {
    wchar_t buffer[40] = {};
    StringFromGUID2(guid, buffer, static_cast<int>(std::size(buffer)));
    return buffer;
}

class Rows {
  public:
    void add(std::wstring key, std::wstring name, std::wstring value) {
        rows_.push_back({std::move(key), std::move(name), std::move(value), {}});
    }
    void addShared(std::wstring key, std::wstring value, std::wstring keptBy) {
        rows_.push_back({std::move(key), {}, std::move(value), std::move(keptBy)});
    }
    void addKey(std::wstring key) { rows_.push_back({std::move(key), {}, std::nullopt, {}}); }
    std::vector<RegistryRow> take() { return std::move(rows_); }

  private:
    std::vector<RegistryRow> rows_;
};

GUID idOf(ITypeLib& library) {
    TLIBATTR* attributes = nullptr;
    throwIfFailed(library.GetLibAttr(&attributes));
    const GUID id = attributes->guid;
    library.ReleaseTLibAttr(attributes);
    return id;
}

std::wstring typeLibraryKey(const std::wstring& libraryId) {
    return L"TypeLib\\" + libraryId + L'\\' + kVersion;
}

void addClass(Rows& rows, const ClassRow& row, const std::wstring& path, const std::wstring& libraryId) {
    const std::wstring programId = std::wstring(kPublication.libraryName) + L'.' + row.name;
    const std::wstring versioned = programId + L".1";
    const std::wstring classId = text(row.classId);
    const std::wstring key = L"CLSID\\" + classId;
    rows.add(key, L"", row.description);
    rows.add(key + L"\\InprocServer32", L"", path);
    rows.add(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    rows.add(key + L"\\ProgID", L"", versioned);
    rows.add(key + L"\\VersionIndependentProgID", L"", programId);
    rows.add(key + L"\\TypeLib", L"", libraryId);
    rows.add(key + L"\\Version", L"", kVersion);
    rows.addKey(key + L"\\Programmable");
    const std::wstring keptBy = typeLibraryKey(libraryId) + kOtherPlatform;
    rows.addShared(programId, row.description, keptBy);
    rows.addShared(programId + L"\\CLSID", classId, keptBy);
    rows.addShared(programId + L"\\CurVer", versioned, keptBy);
    rows.addShared(versioned, row.description, keptBy);
    rows.addShared(versioned + L"\\CLSID", classId, keptBy);
}

/// Hosts look for these keys to offer a class in their tool boxes, and for the categories to know what it can
/// be saved with.
void addControl(Rows& rows, const ClassRow& row, const std::wstring& path) {
    const std::wstring key = L"CLSID\\" + text(row.classId);
    constexpr int kContent = DVASPECT_CONTENT;
    rows.addKey(key + L"\\Control");
    rows.add(key + L"\\MiscStatus", L"", L"0");
    rows.add(key + L"\\MiscStatus\\" + std::to_wstring(kContent), L"",
             std::to_wstring(row.control->miscStatus));
    rows.add(key + L"\\ToolboxBitmap32", L"", path + L", " + std::to_wstring(row.control->toolboxBitmap));
    for (const GUID* category : {&CATID_Control, &CATID_Programmable, &CATID_PersistsToPropertyBag,
                                 &CATID_PersistsToStreamInit, &CATID_PersistsToStorage}) {
        rows.addKey(key + L"\\Implemented Categories\\" + text(*category));
    }
}

void addTypeLibrary(Rows& rows, int number, const std::wstring& path) {
    ComPtr<ITypeLib> library;
    throwIfFailed(loadTypeLibrary(number, library));
    Bstr description;
    throwIfFailed(library->GetDocumentation(-1, nullptr, description.put(), nullptr, nullptr));
    const std::wstring key = typeLibraryKey(text(idOf(*library)));
    const std::wstring keptBy = key + kOtherPlatform;
    const std::wstring file = path + L'\\' + std::to_wstring(number);
    rows.addShared(key, description.get(), keptBy);
    rows.add(key + kPlatform, L"", file);
    rows.addShared(key + L"\\FLAGS", L"0", keptBy);
    rows.addShared(key + L"\\HELPDIR", folderOf(path), keptBy);
}

void addInterfaces(Rows& rows, ITypeLib& library, const std::wstring& libraryId) {
    for (UINT index = 0; index < library.GetTypeInfoCount(); ++index) {
        ComPtr<ITypeInfo> info;
        throwIfFailed(library.GetTypeInfo(index, info.put()));
        const TypeAttributes attributes(*info);
        if (attributes->typekind != TKIND_DISPATCH) continue;
        const bool dual = (attributes->wTypeFlags & TYPEFLAG_FDUAL) != 0;
        Bstr name;
        throwIfFailed(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr));
        const std::wstring key = L"Interface\\" + text(attributes->guid);
        rows.add(key, L"", name.get());
        rows.add(key + L"\\ProxyStubClsid32", L"", dual ? kTypeLibraryProxy : kDispatchProxy);
        rows.add(key + L"\\TypeLib", L"", libraryId);
        rows.add(key + L"\\TypeLib", L"Version", kVersion);
    }
}

}  // namespace

std::vector<RegistryRow> registryRows(const std::wstring& path) {
    ComPtr<ITypeLib> library;
    throwIfFailed(loadTypeLibrary(kOwnTypeLibrary, library));
    const std::wstring libraryId = text(idOf(*library));
    Rows rows;
    for (int number = kPublication.typeLibraryCount; number >= kOwnTypeLibrary; --number)
        addTypeLibrary(rows, number, path);
    addInterfaces(rows, *library, libraryId);
    for (const ClassRow& row : kPublication.classes) {
        addClass(rows, row, path, libraryId);
        if (row.control) addControl(rows, row, path);
    }
    return rows.take();
}

}  // namespace vrx
