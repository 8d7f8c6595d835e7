#include "com/dispatch_argument.h"

#include "BmpInfo.h"
#include "com/com_ptr.h"
#include "com/hresult_failure.h"
#include "com/type_library.h"
#include "common/engine/error.h"

namespace vrx {
namespace {

// The one record of the published interfaces.
constexpr GUID kBmpInfo = {0x7008D90C, 0x4753, 0x463B, {0x83, 0xDA, 0x3D, 0x8B, 0x32, 0xD9, 0x26, 0x9E}};

/// Hosts mark an argument that was left out by this error code.
bool isOmitted(const VARIANT& inner) {
    if (V_VT(&inner) == VT_ERROR) return V_ERROR(&inner) == DISP_E_PARAMNOTFOUND;
    return V_VT(&inner) == (VT_BYREF | VT_ERROR) && V_ERRORREF(&inner) &&
           *V_ERRORREF(&inner) == DISP_E_PARAMNOTFOUND;
}

[[noreturn]] void throwTypeMismatch() { throw platformError(Platform::TypeMismatch); }

Variant convertObject(const VARIANT& source, const Parameter& parameter) {
    Variant object = convert(source, parameter.type);
    IUnknown* old = V_UNKNOWN(&object.get());
    if (!old || parameter.iid == IID{}) return object;
    void* wanted = nullptr;
    if (FAILED(old->QueryInterface(parameter.iid, &wanted))) throwTypeMismatch();
    V_UNKNOWN(&object.get()) = static_cast<IUnknown*>(wanted);
    old->Release();
    return object;
}

/// A record of its own for a script's empty variable, all fields 0.
Variant makeBmpInfo() {
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> type;
    ComPtr<IRecordInfo> info;
    throwIfFailed(loadTypeLibrary(kRecordTypeLibrary, library));
    throwIfFailed(library->GetTypeInfoOfGuid(kBmpInfo, type.put()));
    throwIfFailed(GetRecordInfoFromTypeInfo(type.get(), info.put()));
    Variant record;
    V_RECORD(&record.get()) = info->RecordCreate();
    if (!V_RECORD(&record.get())) throw platformError(Platform::OutOfMemory);
    V_RECORDINFO(&record.get()) = info.detach();
    V_VT(&record.get()) = VT_RECORD;
    return record;
}

bool isObject(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN; }

}  // namespace

void DispatchArgument::bind(const Parameter& parameter, VARIANTARG* source) {
    if (!source || isOmitted(followReferences(*source))) {
        bindOmitted(parameter);
    } else if (parameter.byReference) {
        bindReference(parameter, *source);
    } else {
        bindValue(parameter, *source);
    }
}

void DispatchArgument::bindOmitted(const Parameter& parameter) {
    if (!parameter.optional) throw HresultFailure{DISP_E_PARAMNOTOPTIONAL};
    local_ = convert(parameter.defaultValue.get(), parameter.type);
    passed_ = local_.get();
    if (parameter.byReference) passAddress(parameter.type, &V_NONE(&local_.get()));
}

void DispatchArgument::bindValue(const Parameter& parameter, const VARIANT& source) {
    local_ = isObject(parameter.type) ? convertObject(source, parameter) : convert(source, parameter.type);
    passed_ = local_.get();
}

void DispatchArgument::bindReference(const Parameter& parameter, VARIANTARG& source) {
    VARIANT& inner = followReferences(source);
    if (V_ISBYREF(&inner) && !V_BYREF(&inner)) throwTypeMismatch();
    if (parameter.type == VT_VARIANT) return bindVariant(source, inner);
    if (parameter.type == VT_RECORD) return bindRecord(source, inner);
    if (parameter.type & VT_ARRAY) return bindArray(parameter, source, inner);
    local_ = convert(inner, parameter.type);
    passAddress(parameter.type, &V_NONE(&local_.get()));
    const bool variable = &inner != &source || V_ISBYREF(&inner);
    if (parameter.output && variable) receiver_ = &inner;
}

/// A member that takes a variant by reference writes through the references that it finds in it, as it must
/// for hosts that call it early-bound; so a host's own variable is handed over as it is.
void DispatchArgument::bindVariant(VARIANTARG& source, VARIANT& inner) {
    if (&inner != &source) return passAddress(VT_VARIANT, &inner);
    if (V_ISBYREF(&inner)) {
        local_.get() = inner;
    } else {
        local_ = Variant(inner);
    }
    passAddress(VT_VARIANT, &local_.get());
}

void DispatchArgument::bindArray(const Parameter& parameter, VARIANTARG& source, VARIANT& inner) {
    if (V_VT(&inner) == (VT_BYREF | parameter.type)) return passAddress(parameter.type, V_ARRAYREF(&inner));
    if (V_VT(&inner) == parameter.type && &inner != &source)
        return passAddress(parameter.type, &V_ARRAY(&inner));
    if (V_VT(&inner) == parameter.type) {
        local_ = Variant(inner);
    } else if (V_VT(&inner) == VT_EMPTY) {
        V_VT(&local_.get()) = parameter.type;
        V_ARRAY(&local_.get()) = nullptr;
        if (&inner != &source) receiver_ = &inner;
    } else {
        throwTypeMismatch();
    }
    passAddress(parameter.type, &V_ARRAY(&local_.get()));
}

/// A variant holds a record by its address in any case. Scripts cannot make one: their empty variables get it here.
void DispatchArgument::bindRecord(const VARIANT& source, VARIANT& inner) {
    if (V_VT(&inner) == VT_EMPTY && &inner != &source) {
        local_ = makeBmpInfo();
        receiver_ = &inner;
        return passAddress(VT_RECORD, V_RECORD(&local_.get()));
    }
    IRecordInfo* info = V_RECORDINFO(&inner);
    if ((V_VT(&inner) & ~VT_BYREF) != VT_RECORD || !info || !V_RECORD(&inner)) throwTypeMismatch();
    GUID guid{};
    ULONG size = 0;
    if (FAILED(info->GetGuid(&guid)) || guid != kBmpInfo) throwTypeMismatch();
    if (FAILED(info->GetSize(&size)) || size != sizeof(BmpInfo)) throwTypeMismatch();
    passAddress(VT_RECORD, V_RECORD(&inner));
}

void DispatchArgument::passAddress(VARTYPE type, void* address) {
    V_VT(&passed_) = VT_BYREF | type;
    V_BYREF(&passed_) = address;
}

void DispatchArgument::writeBack() {
    if (receiver_) putVariant(*receiver_, std::move(local_));
}

}  // namespace vrx
