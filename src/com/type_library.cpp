#include "com/type_library.h"

#include <map>
#include <memory>
#include <mutex>

#include "com/hresult_failure.h"
#include "com/member_table.h"
#include "com/module.h"

namespace vrx {
namespace {

struct GuidLess {
    bool operator()(const GUID& left, const GUID& right) const {
        return memcmp(&left, &right, sizeof left) < 0;
    }
};

struct TypeInformation {
    ComPtr<ITypeLib> library;
    std::map<IID, std::unique_ptr<const MemberTable>, GuidLess> tables;
};

std::mutex guard;

// Never destroyed with the module: other modules may be gone by then.
TypeInformation* shared = nullptr;

HRESULT openLocked(ITypeLib*& library) {
    if (!shared) {
        auto opened = std::make_unique<TypeInformation>();
        const HRESULT result = loadTypeLibrary(kOwnTypeLibrary, opened->library);
        if (FAILED(result)) return result;
        shared = opened.release();
    }
    library = shared->library.get();
    return S_OK;
}

HRESULT findLocked(const GUID& guid, ComPtr<ITypeInfo>& info) {
    ITypeLib* library = nullptr;
    const HRESULT result = openLocked(library);
    return FAILED(result) ? result : library->GetTypeInfoOfGuid(guid, info.put());
}

}  // namespace

HRESULT loadTypeLibrary(int number, ComPtr<ITypeLib>& library) {
    const std::wstring path = modulePath() + L'\\' + std::to_wstring(number);
    return LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put());
}

HRESULT findTypeInfo(const GUID& guid, ComPtr<ITypeInfo>& info) {
    const std::lock_guard lock(guard);
    return findLocked(guid, info);
}

const MemberTable& memberTableOf(const IID& iid) {
    const std::lock_guard lock(guard);
    ComPtr<ITypeInfo> info;
    throwIfFailed(findLocked(iid, info));
    auto& table = shared->tables[iid];
    if (!table) table = std::make_unique<const MemberTable>(*info);
    return *table;
}

bool releaseTypeInformationIfUnused() {
    const std::lock_guard lock(guard);
    if (moduleInUse()) return false;
    delete shared;
    shared = nullptr;
    return true;
}

}  // namespace vrx
