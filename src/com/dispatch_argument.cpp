#include "com/dispatch_argument.h"

#include <algorithm>
#include <cfloat>
#include <cstring>

#include "com/class_table.h"
#include "com/com_ptr.h"
#include "com/entry.h"
#include "com/hresult_failure.h"
#include "com/type_library.h"
#include "ground/error.h"

namespace vrx {
namespace {

/// Hosts mark an argument that was left out by this error code.
bool isOmitted(const VARIANT& inner) {
    if (V_VT(&inner) == VT_ERROR) return V_ERROR(&inner) == DISP_E_PARAMNOTFOUND;
    return V_VT(&inner) == (VT_BYREF | VT_ERROR) && V_ERRORREF(&inner) &&
           *V_ERRORREF(&inner) == DISP_E_PARAMNOTFOUND;
}

[[noreturn]] void throwTypeMismatch() { throw platformError(Platform::TypeMismatch); }

const IID& interfaceIdOf(const Parameter& parameter) {
    if (parameter.iid != IID{}) return parameter.iid;
    return parameter.type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
}

/// The host's object is asked while nothing is held for it here.
Variant convertObject(const VARIANT& source, const Parameter& parameter) {
    IUnknown* given = objectIn(source);
    void* wanted = nullptr;
    if (given && FAILED(callHost([&] { return given->QueryInterface(interfaceIdOf(parameter), &wanted); })))
        throwTypeMismatch();
    Variant object;
    V_VT(&object.get()) = parameter.type;
    V_UNKNOWN(&object.get()) = static_cast<IUnknown*>(wanted);
    return object;
}

const RecordRow& publishedRecord() {
    if (!kPublication.record) throwTypeMismatch();
    return *kPublication.record;
}

/// A record of its own for a script's empty variable, all fields 0.
Variant makeRecord() {
    const RecordRow& row = publishedRecord();
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> type;
    ComPtr<IRecordInfo> info;
    throwIfFailed(loadTypeLibrary(row.typeLibrary, library));
    throwIfFailed(library->GetTypeInfoOfGuid(row.recordId, type.put()));
    throwIfFailed(GetRecordInfoFromTypeInfo(type.get(), info.put()));
    Variant record;
    V_RECORD(&record.get()) = info->RecordCreate();
    if (!V_RECORD(&record.get())) throw platformError(Platform::OutOfMemory);
    V_RECORDINFO(&record.get()) = info.detach();
    V_VT(&record.get()) = VT_RECORD;
    return record;
}

bool isObject(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN; }

/// What owns nothing, so that its bits are all of it.
bool isScalar(VARTYPE type) { return passedSize(type) != 0 && type != VT_BSTR && !isObject(type); }

template <class T>
T contentOf(const void* content) {
    T value;
    std::memcpy(&value, content, sizeof value);
    return value;
}

/// Whole numbers of scripts; false for everything else.
bool readWhole(VARTYPE type, const void* content, std::int32_t& value) noexcept {
    switch (type) {
        case VT_UI1:
            value = contentOf<std::uint8_t>(content);
            return true;
        case VT_I2:
            value = contentOf<std::int16_t>(content);
            return true;
        case VT_I4:
            value = contentOf<std::int32_t>(content);
            return true;
        default:
            return false;
    }
}

bool storeWhole(VARTYPE from, std::int32_t value, VARTYPE type, VARIANT& target) noexcept {
    if (type == VT_I2 && from == VT_UI1) {
        V_I2(&target) = static_cast<SHORT>(value);
    } else if (type == VT_I4) {
        V_I4(&target) = value;
    } else if (type == VT_R4 && from != VT_I4) {
        V_R4(&target) = static_cast<float>(value);
    } else if (type == VT_R8) {
        V_R8(&target) = value;
    } else {
        return false;
    }
    V_VT(&target) = type;
    return true;
}

/// What a script's numbers become without the system's help: where that is exact, and a Double in a Single's
/// range.
bool widen(VARTYPE from, const void* content, VARTYPE type, VARIANT& target) noexcept {
    std::int32_t whole = 0;
    if (readWhole(from, content, whole)) return storeWhole(from, whole, type, target);
    if (from != VT_R8 || type != VT_R4) return false;
    const auto real = contentOf<double>(content);
    if (!(real >= -FLT_MAX && real <= FLT_MAX)) return false;
    V_VT(&target) = VT_R4;
    V_R4(&target) = static_cast<float>(real);
    return true;
}

VARTYPE referredType(const VARIANT& inner) { return V_VT(&inner) & static_cast<VARTYPE>(~VT_BYREF); }

const void* contentOf(const VARIANT& inner) { return V_ISBYREF(&inner) ? V_BYREF(&inner) : &V_NONE(&inner); }

/// A scalar's content into `target`: as it is, or widened.
bool takeScalar(const VARIANT& inner, VARTYPE type, VARIANT& target) noexcept {
    const void* content = contentOf(inner);
    if (!content || !isScalar(type)) return false;
    if (referredType(inner) != type) return widen(referredType(inner), content, type, target);
    std::memcpy(&V_NONE(&target), content, passedSize(type));
    V_VT(&target) = type;
    return true;
}

/// The innermost variant; null for one that cannot be found, which is an error of its own.
VARIANT* innermost(VARIANTARG& source) noexcept {
    VARIANT* inner = &source;
    if (V_VT(inner) == (VT_BYREF | VT_VARIANT)) inner = V_VARIANTREF(inner);
    return inner && V_VT(inner) != (VT_BYREF | VT_VARIANT) ? inner : nullptr;
}

std::uint64_t bitsOf(const VARIANT& value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &V_NONE(&value), sizeof bits);
    return bits;
}

bool isSameText(BSTR left, BSTR right) {
    const UINT bytes = SysStringByteLen(left);
    return bytes == SysStringByteLen(right) && (bytes == 0 || std::memcmp(left, right, bytes) == 0);
}

bool isBlankRecord(const void* record) {
    const auto* bytes = static_cast<const unsigned char*>(record);
    return std::all_of(bytes, bytes + publishedRecord().size, [](unsigned char byte) { return byte == 0; });
}

}  // namespace

bool DispatchArgument::bindAsItIs(const Parameter& parameter, VARIANTARG* source) noexcept {
    if (!source) {
        if (!parameter.optional || parameter.byReference) return false;
        passValue(parameter.type, &V_NONE(&parameter.defaultValue.get()));
        return true;
    }
    if (parameter.byReference) return bindReferenceAsItIs(parameter, *source);
    const VARIANT* inner = innermost(*source);
    if (!inner || isObject(parameter.type)) return false;
    if (referredType(*inner) == parameter.type && contentOf(*inner)) {
        passValue(parameter.type, contentOf(*inner));
        return true;
    }
    if (!takeScalar(*inner, parameter.type, local_.get())) return false;
    passValue(parameter.type, &V_NONE(&local_.get()));
    return true;
}

bool DispatchArgument::bindReferenceAsItIs(const Parameter& parameter, VARIANTARG& source) noexcept {
    VARIANT* inner = innermost(source);
    if (!inner) return false;
    if (parameter.type == VT_VARIANT && inner != &source) {
        passAddress(inner);
        return true;
    }
    if (!takeScalar(*inner, parameter.type, local_.get())) return false;
    passAddress(&V_NONE(&local_.get()));
    receiveIn(parameter, source, *inner);
    return true;
}

void DispatchArgument::bind(const Parameter& parameter, VARIANTARG* source) {
    if (!source || isOmitted(followReferences(*source))) return bindOmitted(parameter);
    if (parameter.byReference) return bindReference(parameter, *source);
    local_ = isObject(parameter.type) ? convertObject(*source, parameter) : convert(*source, parameter.type);
    passValue(parameter.type, &V_NONE(&local_.get()));
}

void DispatchArgument::bindOmitted(const Parameter& parameter) {
    if (!parameter.optional) throw HresultFailure{DISP_E_PARAMNOTOPTIONAL};
    local_ = convert(parameter.defaultValue.get(), parameter.type);
    if (parameter.byReference) return passAddress(&V_NONE(&local_.get()));
    passValue(parameter.type, &V_NONE(&local_.get()));
}

void DispatchArgument::bindReference(const Parameter& parameter, VARIANTARG& source) {
    VARIANT& inner = followReferences(source);
    if (V_ISBYREF(&inner) && !V_BYREF(&inner)) throwTypeMismatch();
    if (parameter.type == VT_VARIANT) return bindVariant(source, inner);
    if (parameter.type == VT_RECORD) return bindRecord(source, inner);
    if (parameter.type & VT_ARRAY) return bindArray(parameter, source, inner);
    local_ = convert(inner, parameter.type);
    if (parameter.type == VT_BSTR) before_ = Variant(local_.get());
    passAddress(&V_NONE(&local_.get()));
    receiveIn(parameter, source, inner);
}

/// A host's variable, as opposed to a value, gets what the member leaves.
void DispatchArgument::receiveIn(const Parameter& parameter, VARIANTARG& source, VARIANT& inner) noexcept {
    const bool variable = &inner != &source || V_ISBYREF(&inner);
    if (parameter.output && variable) receiver_ = &inner;
    bitsBefore_ = bitsOf(local_.get());
}

/// A member that takes a variant by reference writes through the references that it finds in it, as it must
/// for hosts that call it early-bound; so a host's own variable is handed over as it is.
void DispatchArgument::bindVariant(VARIANTARG& source, VARIANT& inner) {
    if (&inner != &source) return passAddress(&inner);
    if (V_ISBYREF(&inner)) {
        local_.get() = inner;
    } else {
        local_ = Variant(inner);
    }
    passAddress(&local_.get());
}

void DispatchArgument::bindArray(const Parameter& parameter, VARIANTARG& source, VARIANT& inner) {
    if (V_VT(&inner) == (VT_BYREF | parameter.type)) return passAddress(V_ARRAYREF(&inner));
    if (V_VT(&inner) == parameter.type && &inner != &source) return passAddress(&V_ARRAY(&inner));
    if (V_VT(&inner) == parameter.type) {
        local_ = Variant(inner);
    } else if (V_VT(&inner) == VT_EMPTY) {
        V_VT(&local_.get()) = parameter.type;
        V_ARRAY(&local_.get()) = nullptr;
        if (&inner != &source) receiver_ = &inner;
        bitsBefore_ = bitsOf(local_.get());
    } else {
        throwTypeMismatch();
    }
    passAddress(&V_ARRAY(&local_.get()));
}

/// A variant holds a record by its address in any case. Scripts cannot make one: their empty variables get it
/// here.
void DispatchArgument::bindRecord(const VARIANT& source, VARIANT& inner) {
    if (V_VT(&inner) == VT_EMPTY && &inner != &source) {
        local_ = makeRecord();
        receiver_ = &inner;
        return passAddress(V_RECORD(&local_.get()));
    }
    IRecordInfo* info = V_RECORDINFO(&inner);
    if ((V_VT(&inner) & ~VT_BYREF) != VT_RECORD || !info || !V_RECORD(&inner)) throwTypeMismatch();
    const RecordRow& row = publishedRecord();
    GUID guid{};
    ULONG size = 0;
    if (FAILED(info->GetGuid(&guid)) || guid != row.recordId) throwTypeMismatch();
    if (FAILED(info->GetSize(&size)) || size != row.size) throwTypeMismatch();
    passAddress(V_RECORD(&inner));
}

void DispatchArgument::passValue(VARTYPE type, const void* content) {
    type_ = type;
    content_ = content;
}

void DispatchArgument::passAddress(void* address) { content_ = address; }

void DispatchArgument::pass(NativeCall& call) const {
    if (type_ == VT_EMPTY) return call.passAddress(content_);
    call.pass(type_, content_);
}

bool DispatchArgument::isChanged() const {
    const VARIANT& value = local_.get();
    if (V_VT(&value) == VT_RECORD) return !isBlankRecord(V_RECORD(&value));
    if (V_VT(&value) == VT_BSTR) return !isSameText(V_BSTR(&value), V_BSTR(&before_.get()));
    return bitsOf(value) != bitsBefore_;
}

void DispatchArgument::writeBack() {
    if (receiver_ && isChanged()) putVariant(*receiver_, std::move(local_));
}

}  // namespace vrx
