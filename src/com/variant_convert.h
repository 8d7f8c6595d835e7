// The one place where texts, variants and byte arrays of automation become C++ values and back.
// Conversions use the English locale, so that nothing depends on the user's; failures throw vrx::Error.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "com/win_resource.h"

namespace vrx {

constexpr LCID kConversionLocale = 0x0409;

/// A variant that clears itself.
class Variant {
  public:
    Variant() = default;
    explicit Variant(const VARIANT& source);
    Variant(Variant&& other) noexcept : value_(other.release()) {}
    Variant& operator=(Variant&& other) noexcept;
    ~Variant() {
        // Most are numbers or nothing by then.
        if (V_VT(&value_) > VT_DATE) VariantClear(&value_);
    }

    [[nodiscard]] VARIANT& get() { return value_; }
    [[nodiscard]] const VARIANT& get() const { return value_; }
    VARIANT* operator->() { return &value_; }
    /// Hands the content over to the caller.
    [[nodiscard]] VARIANT release();

  private:
    VARIANT value_{};
};

/// The same characters under the other name that the platform has for UTF-16.
[[nodiscard]] inline const wchar_t* asWide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}
[[nodiscard]] std::wstring toWide(std::u16string_view text);
[[nodiscard]] std::u16string fromWide(std::wstring_view text);

[[nodiscard]] std::u16string toText(BSTR text);
/// Numbers and Empty become text as well; Null, objects and arrays are a type mismatch.
[[nodiscard]] std::u16string toText(const VARIANT& value);
[[nodiscard]] Bstr toBstr(std::u16string_view text);

/// The innermost variant of a chain of references to variants. A null or endless chain is a type mismatch.
[[nodiscard]] VARIANT& followReferences(VARIANT& value);

/// `value`, which may be a reference, as a variant of `type`.
[[nodiscard]] Variant convert(const VARIANT& value, VARTYPE type);

/// The object in a variant, which may be a reference and keeps it; null for none. A type mismatch for
/// everything that is no object.
[[nodiscard]] IUnknown* objectIn(const VARIANT& value);

/// Gives a host's variant a new value: through the reference that it holds, converted to the type there, or
/// in its place.
void putVariant(VARIANT& target, Variant value);

/// A variant of the given scalar type.
[[nodiscard]] Variant makeInteger(std::int16_t value);
[[nodiscard]] Variant makeLong(std::int32_t value);
[[nodiscard]] Variant makeDouble(double value);
[[nodiscard]] Variant makeText(std::u16string_view text);
[[nodiscard]] Variant makeArray(SafeArray array);

/// Bounds of one dimension of an array, both inclusive.
struct Bounds {
    std::int32_t lower;
    std::int32_t upper;
};

/// A new byte array; the first dimension varies fastest.
[[nodiscard]] SafeArray makeByteArray(std::span<const Bounds> dimensions);
/// The same with the bytes of all elements in their order in memory, which are not cleared first.
[[nodiscard]] SafeArray copyOfBytes(std::span<const Bounds> dimensions, const std::uint8_t* bytes);
/// A new one-dimensional byte array from index 0 with these bytes; no bytes make an array without elements.
[[nodiscard]] SafeArray makeByteArray(std::span<const std::uint8_t> bytes);

/// A new one-dimensional array of so many variants from index 0, each Empty.
[[nodiscard]] SafeArray makeVariantArray(std::size_t count);
/// Puts these values into its first elements, which are Empty, as VT_I4.
void fillVariantArray(SAFEARRAY& array, std::span<const std::int32_t> values);

/// Gives a host's array variable a new array. Error 10 for an array that is fixed in size or locked.
void replaceArray(SAFEARRAY** target, SafeArray array);

/// Whether the variant holds an array of whatever kind, directly or by reference.
[[nodiscard]] bool holdsArray(const VARIANT& value);

/// What a host's variable holds when there is nothing to give it: an array without elements where it can
/// hold nothing but arrays of bytes, otherwise Empty.
[[nodiscard]] Variant nothingFor(const VARIANT& variable);

/// The bytes of a host's byte array, locked in their place as long as the view exists.
/// An array that is not dimensioned has rank 0 and no bytes. Elements other than bytes are a type mismatch.
class ByteArrayView {
  public:
    explicit ByteArrayView(const VARIANT& value);
    explicit ByteArrayView(SAFEARRAY* array);
    ByteArrayView(const ByteArrayView&) = delete;
    ByteArrayView& operator=(const ByteArrayView&) = delete;
    ~ByteArrayView();

    [[nodiscard]] unsigned rank() const { return rank_; }
    /// Bounds of a dimension, counted from 0. Subscript out of range when there is no such dimension.
    [[nodiscard]] Bounds bounds(unsigned dimension) const;
    /// All elements in their order in memory, whatever the lower bounds are.
    [[nodiscard]] std::span<std::uint8_t> bytes() const { return bytes_; }

  private:
    void open(SAFEARRAY* array);

    SAFEARRAY* array_ = nullptr;
    unsigned rank_ = 0;
    std::span<std::uint8_t> bytes_;
};

}  // namespace vrx
