#include "com/native_call.h"

#include <bit>
#include <cstring>
#include <utility>

namespace vrx {
namespace {

#ifdef _WIN64
/// A function of this kind is given each of its arguments in both kinds of registers, so the method finds
/// numbers and pointers as well as Singles and Doubles where it looks for them.
template <std::size_t>
using Passed = double;
using Method = HRESULT (*)(void*, ...);

template <std::size_t... I>
HRESULT callMethod(void* method, void* object, const std::uintptr_t* words, std::index_sequence<I...>) {
    return reinterpret_cast<Method>(method)(object, std::bit_cast<Passed<I>>(words[I])...);
}
#else
/// All arguments are on the stack, in words; the method takes them away by its own count.
template <std::size_t>
using Passed = std::uintptr_t;

template <std::size_t... I>
HRESULT callMethod(void* method, void* object, const std::uintptr_t* words, std::index_sequence<I...>) {
    using Method = HRESULT(__stdcall*)(void*, Passed<I>...);
    return reinterpret_cast<Method>(method)(object, words[I]...);
}
#endif

template <std::size_t Count>
HRESULT callWith(void* method, void* object, const std::uintptr_t* words) {
    return callMethod(method, object, words, std::make_index_sequence<Count>());
}

using Caller = HRESULT (*)(void*, void*, const std::uintptr_t*);

template <std::size_t... Count>
constexpr std::array<Caller, sizeof...(Count)> callersFor(std::index_sequence<Count...>) {
    return {callWith<Count>...};
}

template <class T>
T read(const void* value) {
    T content;
    std::memcpy(&content, value, sizeof content);
    return content;
}

}  // namespace

std::size_t passedSize(VARTYPE type) {
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_ERROR:
        case VT_R4:
            return 4;
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
            return 8;
        case VT_BSTR:
        case VT_UNKNOWN:
        case VT_DISPATCH:
            return sizeof(void*);
        default:
            return 0;
    }
}

void NativeCall::pass(VARTYPE type, const void* value) {
    const std::size_t size = passedSize(type);
    switch (size) {
        case 1:
            return passBits(read<std::uint8_t>(value), size);
        case 2:
            return passBits(static_cast<std::uint64_t>(read<std::int16_t>(value)), size);
        case 4:
            return passBits(read<std::uint32_t>(value), size);
        default:
            return passBits(read<std::uint64_t>(value), size);
    }
}

void NativeCall::passAddress(const void* address) { words_[count_++] = reinterpret_cast<Word>(address); }

void NativeCall::passBits(std::uint64_t bits, std::size_t size) {
    words_[count_++] = static_cast<Word>(bits);
    if (size > sizeof(Word)) words_[count_++] = static_cast<Word>(bits >> 32);
}

HRESULT NativeCall::make(IUnknown& object, std::size_t slot) const {
    static constexpr auto kCallers = callersFor(std::make_index_sequence<kMostArguments * kWordsEach + 1>());
    void* const table = *reinterpret_cast<void**>(&object);
    void* const method = *reinterpret_cast<void**>(static_cast<std::byte*>(table) + slot);
    return kCallers[count_](method, &object, words_.data());
}

}  // namespace vrx
