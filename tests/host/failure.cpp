#include "failure.h"

#include <ostream>

namespace host {
namespace {

constexpr HRESULT kFirst = static_cast<HRESULT>(0x800A0000);

/// Automation hosts show the low half of these codes, and others as they are.
long numberOf(HRESULT code) { return (code & ~0xFFFF) == kFirst ? code & 0xFFFF : code; }

std::string narrow(const std::wstring& text) {
    std::string narrowed;
    for (const wchar_t c : text) narrowed += c < 128 ? static_cast<char>(c) : '?';
    return narrowed;
}

}  // namespace

Failure failureOf(HRESULT result) {
    vrx::ComPtr<IErrorInfo> info;
    GetErrorInfo(0, info.put());
    Failure failure{numberOf(result), {}, {}};
    if (SUCCEEDED(result) || !info) return failure;
    vrx::Bstr source;
    vrx::Bstr description;
    info->GetSource(source.put());
    info->GetDescription(description.put());
    if (source) failure.source = source.get();
    if (description) failure.description = description.get();
    return failure;
}

Failure failureOf(const Outcome& outcome) {
    if (outcome.code != DISP_E_EXCEPTION) return {outcome.code, {}, {}};
    return {numberOf(outcome.scode), outcome.source, outcome.description};
}

void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.number << " from '" << narrow(failure.source) << "': '" << narrow(failure.description)
         << "'";
}

}  // namespace host
