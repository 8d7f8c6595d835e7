// Why a call failed, as a host finds it: number, source and description.
#pragma once

#include <iosfwd>
#include <string>

#include "host.h"

namespace host {

struct Failure {
    /// As in a host's error object; 0 for a call that succeeded.
    long number = 0;
    std::wstring source;
    std::wstring description;

    bool operator==(const Failure&) const = default;
};

/// Of an early-bound call, from the error information of the thread.
Failure failureOf(HRESULT result);

/// Of a late-bound call, from its EXCEPINFO.
Failure failureOf(const Outcome& outcome);

void PrintTo(const Failure& failure, std::ostream* out);

inline const Failure kNone;

}  // namespace host
