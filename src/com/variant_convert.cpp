#include "com/variant_convert.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "com/entry.h"
#include "com/native_call.h"
#include "ground/bytes.h"
#include "ground/error.h"

namespace vrx {
namespace {

constexpr int kDeepestReference = 4;

[[noreturn]] void throwTypeMismatch() { throw platformError(Platform::TypeMismatch); }

void check(HRESULT result) {
    switch (result) {
        case S_OK:
            return;
        case DISP_E_OVERFLOW:
            throw platformError(Platform::Overflow);
        case E_OUTOFMEMORY:
            throw platformError(Platform::OutOfMemory);
        default:
            throwTypeMismatch();
    }
}

/// The value of an object is its default property, which is the host's code. Asked for here, for the system
/// would keep the object when that code does not return.
Variant defaultValue(Variant object) {
    const Held<Variant> source(std::move(object));
    const Held<Variant> value;
    IDispatch* asked = V_DISPATCH(&source->get());
    if (!asked) throwTypeMismatch();
    HRESULT result = S_OK;
    {
        const HostCall host;
        DISPPARAMS none{};
        result = asked->Invoke(DISPID_VALUE, IID_NULL, kConversionLocale, DISPATCH_PROPERTYGET, &none,
                               &value->get(), nullptr, nullptr);
    }
    if (FAILED(result)) throwTypeMismatch();
    return std::move(*value);
}

/// Some hosts' arrays carry no element type; the size of an element must do for them.
bool holdsBytes(SAFEARRAY* array) {
    VARTYPE type = VT_UI1;
    if (array->fFeatures & FADF_HAVEVARTYPE) SafeArrayGetVartype(array, &type);
    return type == VT_UI1 && SafeArrayGetElemsize(array) == 1;
}

/// Fixed-size and locked arrays belong to their variable and cannot be replaced.
bool canReplace(const SAFEARRAY* array) {
    constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
    return !array || (array->cLocks == 0 && (array->fFeatures & kFixed) == 0);
}

void checkReplaceable(const SAFEARRAY* array) {
    if (!canReplace(array)) throw platformError(Platform::ArrayLocked);
}

void storeBits(void* place, const VARIANT& source) {
    const std::size_t size = passedSize(V_VT(&source));
    if (size == 0) throwTypeMismatch();
    std::memcpy(place, &V_NONE(&source), size);
}

/// Moves the content of `value`, which has the type of the reference, to where the reference points.
void storeThrough(const VARIANT& reference, Variant& value) {
    VARIANT& source = value.get();
    if (V_ISARRAY(&source)) {
        replaceArray(V_ARRAYREF(&reference), SafeArray(value.release().parray));
        return;
    }
    switch (V_VT(&source)) {
        case VT_DECIMAL:
            *V_DECIMALREF(&reference) = V_DECIMAL(&source);
            break;
        case VT_BSTR:
            SysFreeString(*V_BSTRREF(&reference));
            *V_BSTRREF(&reference) = V_BSTR(&source);
            (void)value.release();
            break;
        case VT_UNKNOWN:
        case VT_DISPATCH:
            if (IUnknown* old = std::exchange(*V_UNKNOWNREF(&reference), V_UNKNOWN(&source))) old->Release();
            (void)value.release();
            break;
        default:
            storeBits(V_BYREF(&reference), source);
    }
}

std::vector<SAFEARRAYBOUND> safeArrayBounds(std::span<const Bounds> dimensions) {
    std::vector<SAFEARRAYBOUND> bounds;
    for (const Bounds& dimension : dimensions) {
        if (dimension.upper < dimension.lower - 1LL) throw platformError(Platform::SubscriptOutOfRange);
        bounds.push_back({static_cast<ULONG>(dimension.upper - 0LL - dimension.lower + 1), dimension.lower});
    }
    return bounds;
}

/// Bytes that belong to somebody else, described as an array to be read.
class BorrowedArray {
  public:
    BorrowedArray(std::span<const SAFEARRAYBOUND> bounds, const std::uint8_t* bytes) {
        check(SafeArrayAllocDescriptorEx(VT_UI1, static_cast<UINT>(bounds.size()), &array_));
        array_->cbElements = 1;
        array_->pvData = const_cast<std::uint8_t*>(bytes);
        // The descriptor has the last dimension first.
        std::copy(bounds.rbegin(), bounds.rend(), array_->rgsabound);
    }
    BorrowedArray(const BorrowedArray&) = delete;
    BorrowedArray& operator=(const BorrowedArray&) = delete;
    ~BorrowedArray() {
        array_->pvData = nullptr;
        SafeArrayDestroyDescriptor(array_);
    }

    [[nodiscard]] SAFEARRAY* get() const { return array_; }

  private:
    SAFEARRAY* array_ = nullptr;
};

}  // namespace

Variant::Variant(const VARIANT& source) { check(VariantCopy(&value_, const_cast<VARIANT*>(&source))); }

Variant& Variant::operator=(Variant&& other) noexcept {
    if (this != &other) {
        VariantClear(&value_);
        value_ = other.release();
    }
    return *this;
}

VARIANT Variant::release() { return std::exchange(value_, VARIANT{}); }

std::wstring toWide(std::u16string_view text) { return {text.begin(), text.end()}; }

std::u16string fromWide(std::wstring_view text) { return {text.begin(), text.end()}; }

std::u16string toText(BSTR text) { return {text, text + SysStringLen(text)}; }

std::u16string toText(const VARIANT& value) { return toText(V_BSTR(&convert(value, VT_BSTR).get())); }

Bstr toBstr(std::u16string_view text) {
    if (text.size() > std::numeric_limits<UINT>::max() / sizeof(OLECHAR))
        throw platformError(Platform::OutOfMemory);
    Bstr copy(SysAllocStringLen(asWide(text.data()), static_cast<UINT>(text.size())));
    if (!copy) throw platformError(Platform::OutOfMemory);
    return copy;
}

VARIANT& followReferences(VARIANT& value) {
    VARIANT* inner = &value;
    for (int depth = 0; V_VT(inner) == (VT_BYREF | VT_VARIANT); ++depth) {
        inner = V_VARIANTREF(inner);
        if (!inner || depth == kDeepestReference) throwTypeMismatch();
    }
    return *inner;
}

Variant convert(const VARIANT& value, VARTYPE type) {
    VARIANT& source = followReferences(const_cast<VARIANT&>(value));
    if (V_ISBYREF(&source) && !V_BYREF(&source)) throwTypeMismatch();
    Variant direct;
    check(VariantCopyInd(&direct.get(), &source));
    const bool isObject = type == VT_DISPATCH || type == VT_UNKNOWN;
    for (int depth = 0; V_VT(&direct.get()) == VT_DISPATCH && !isObject; ++depth) {
        if (depth == kDeepestReference) throwTypeMismatch();
        direct = defaultValue(std::move(direct));
    }
    Variant converted;
    check(VariantChangeTypeEx(&converted.get(), &direct.get(), kConversionLocale, VARIANT_NOUSEROVERRIDE,
                              type));
    return converted;
}

IUnknown* objectIn(const VARIANT& value) {
    const VARIANT& inner = followReferences(const_cast<VARIANT&>(value));
    const VARTYPE type = V_VT(&inner) & static_cast<VARTYPE>(~VT_BYREF);
    if (type != VT_DISPATCH && type != VT_UNKNOWN) throwTypeMismatch();
    if (!V_ISBYREF(&inner)) return V_UNKNOWN(&inner);
    if (!V_BYREF(&inner)) throwTypeMismatch();
    return *V_UNKNOWNREF(&inner);
}

void putVariant(VARIANT& target, Variant value) {
    VARIANT& place = followReferences(target);
    if (!V_ISBYREF(&place)) {
        if (V_ISARRAY(&place)) checkReplaceable(V_ARRAY(&place));
        // What was there may be an object, whose end is the host's code.
        VARIANT before = std::exchange(place, value.release());
        VariantClear(&before);
        return;
    }
    if (!V_BYREF(&place)) throwTypeMismatch();
    const VARTYPE type = V_VT(&place) & static_cast<VARTYPE>(~VT_BYREF);
    if (V_VT(&value.get()) == type) return storeThrough(place, value);
    Variant converted = convert(value.get(), type);
    storeThrough(place, converted);
}

Variant makeInteger(std::int16_t value) {
    Variant made;
    V_VT(&made.get()) = VT_I2;
    V_I2(&made.get()) = value;
    return made;
}

Variant makeLong(std::int32_t value) {
    Variant made;
    V_VT(&made.get()) = VT_I4;
    V_I4(&made.get()) = value;
    return made;
}

Variant makeDouble(double value) {
    Variant made;
    V_VT(&made.get()) = VT_R8;
    V_R8(&made.get()) = value;
    return made;
}

Variant makeText(std::u16string_view text) {
    Variant made;
    V_BSTR(&made.get()) = toBstr(text).release();
    V_VT(&made.get()) = VT_BSTR;
    return made;
}

Variant makeArray(SafeArray array) {
    Variant made;
    VARTYPE type = VT_EMPTY;
    check(SafeArrayGetVartype(array.get(), &type));
    V_VT(&made.get()) = VT_ARRAY | type;
    V_ARRAY(&made.get()) = array.release();
    return made;
}

SafeArray makeByteArray(std::span<const Bounds> dimensions) {
    std::vector<SAFEARRAYBOUND> bounds = safeArrayBounds(dimensions);
    SafeArray array(SafeArrayCreate(VT_UI1, static_cast<UINT>(bounds.size()), bounds.data()));
    if (!array) throw platformError(Platform::OutOfMemory);
    return array;
}

SafeArray copyOfBytes(std::span<const Bounds> dimensions, const std::uint8_t* bytes) {
    const std::vector<SAFEARRAYBOUND> bounds = safeArrayBounds(dimensions);
    const BorrowedArray source(bounds, bytes);
    SAFEARRAY* copy = nullptr;
    check(SafeArrayCopy(source.get(), &copy));
    return SafeArray(copy);
}

SafeArray makeByteArray(std::span<const std::uint8_t> bytes) {
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw platformError(Platform::OutOfMemory);
    }
    const Bounds dimension{0, static_cast<std::int32_t>(bytes.size()) - 1};
    SafeArray array = makeByteArray(std::span(&dimension, 1));
    const ByteArrayView view(array.get());
    std::ranges::copy(bytes, view.bytes().begin());
    return array;
}

SafeArray makeVariantArray(std::size_t count) {
    if (count > kMaxByteCount / sizeof(VARIANT)) throw platformError(Platform::OutOfMemory);
    SAFEARRAYBOUND bound{static_cast<ULONG>(count), 0};
    SafeArray array(SafeArrayCreate(VT_VARIANT, 1, &bound));
    if (!array) throw platformError(Platform::OutOfMemory);
    return array;
}

void fillVariantArray(SAFEARRAY& array, std::span<const std::int32_t> values) {
    void* data = nullptr;
    check(SafeArrayAccessData(&array, &data));
    auto* element = static_cast<VARIANT*>(data);
    for (const std::int32_t value : values) {
        V_VT(element) = VT_I4;
        V_I4(element++) = value;
    }
    check(SafeArrayUnaccessData(&array));
}

void replaceArray(SAFEARRAY** target, SafeArray array) {
    checkReplaceable(*target);
    SafeArrayDestroy(std::exchange(*target, array.release()));
}

bool holdsArray(const VARIANT& value) {
    const VARIANT& inner = followReferences(const_cast<VARIANT&>(value));
    return V_ISARRAY(&inner);
}

Variant nothingFor(const VARIANT& variable) {
    const VARIANT& inner = followReferences(const_cast<VARIANT&>(variable));
    if (V_VT(&inner) != (VT_BYREF | VT_ARRAY | VT_UI1)) return {};
    return makeArray(makeByteArray(std::span<const std::uint8_t>()));
}

ByteArrayView::ByteArrayView(const VARIANT& value) {
    const VARIANT& inner = followReferences(const_cast<VARIANT&>(value));
    if (V_VT(&inner) == (VT_ARRAY | VT_UI1)) {
        open(V_ARRAY(&inner));
    } else if (V_VT(&inner) == (VT_BYREF | VT_ARRAY | VT_UI1) && V_ARRAYREF(&inner)) {
        open(*V_ARRAYREF(&inner));
    } else {
        throwTypeMismatch();
    }
}

ByteArrayView::ByteArrayView(SAFEARRAY* array) { open(array); }

ByteArrayView::~ByteArrayView() {
    if (array_) SafeArrayUnaccessData(array_);
}

Bounds ByteArrayView::bounds(unsigned dimension) const {
    LONG lower = 0;
    LONG upper = 0;
    if (dimension >= rank_ || FAILED(SafeArrayGetLBound(array_, dimension + 1, &lower)) ||
        FAILED(SafeArrayGetUBound(array_, dimension + 1, &upper))) {
        throw platformError(Platform::SubscriptOutOfRange);
    }
    return {lower, upper};
}

void ByteArrayView::open(SAFEARRAY* array) {
    if (!array) return;
    if (!holdsBytes(array)) throwTypeMismatch();
    std::uint64_t count = array->cDims == 0 ? 0 : 1;
    for (unsigned dimension = 0; dimension < array->cDims; ++dimension) {
        count *= array->rgsabound[dimension].cElements;
        if (count > std::numeric_limits<std::uint32_t>::max())
            throw platformError(Platform::SubscriptOutOfRange);
    }
    void* data = nullptr;
    check(SafeArrayAccessData(array, &data));
    array_ = array;
    rank_ = array->cDims;
    bytes_ = {static_cast<std::uint8_t*>(data), data ? static_cast<std::size_t>(count) : 0};
}

}  // namespace vrx
