// A call of an interface's method whose arguments are known at run time only.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace vrx {

/// What one of these calls can pass, the object not counted.
constexpr std::size_t kMostArguments = 12;

/// How many bytes a value of this type has; 0 for types that are not passed by value.
[[nodiscard]] std::size_t passedSize(VARTYPE type);

class NativeCall {
  public:
    /// `value` is the content of a variant of the type.
    void pass(VARTYPE type, const void* value);
    void passAddress(const void* address);

    /// Calls the method at `slot`, an offset in bytes, in the table of the interface `object`.
    [[nodiscard]] HRESULT make(IUnknown& object, std::size_t slot) const;

  private:
    // Arguments as the processor's stack or registers take them.
    using Word = std::uintptr_t;
    static constexpr std::size_t kWordsEach = sizeof(std::uint64_t) / sizeof(Word);

    void passBits(std::uint64_t bits, std::size_t size);

    std::array<Word, kMostArguments * kWordsEach> words_;
    std::size_t count_ = 0;
};

}  // namespace vrx
