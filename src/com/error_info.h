// Failures as automation hosts see them: IErrorInfo for early-bound calls, EXCEPINFO for late-bound ones.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "ground/error.h"

namespace vrx {

/// HRESULT of an error number as automation hosts turn it back into the number.
[[nodiscard]] constexpr HRESULT hresultOf(std::int32_t number) {
    return static_cast<HRESULT>(0x800A0000u + (static_cast<std::uint32_t>(number) & 0xFFFFu));
}

/// Inside a catch block: leaves the exception as the thread's error information and returns its HRESULT.
/// An error without a source gets the name of the class.
HRESULT publishCurrentException(const IID& iid, const char16_t* className) noexcept;

/// Inside a catch block: the exception's HRESULT alone, for interfaces that carry no error information.
HRESULT hresultOfCurrentException() noexcept;

/// Moves the thread's error information into `exception` and returns DISP_E_EXCEPTION. Without an `exception`
/// the information stays with the thread.
HRESULT reportFailure(HRESULT failure, EXCEPINFO* exception);

/// The same for an error that is not the thread's.
HRESULT reportError(const Error& error, const char16_t* className, EXCEPINFO& exception) noexcept;

/// Throws the failure of a call together with the information that it left with the thread.
void checkCall(HRESULT result);

}  // namespace vrx
