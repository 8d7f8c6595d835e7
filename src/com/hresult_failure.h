// A failure with a code of COM's own, thrown inside the COM layer and turned back into that code at its
// seams.
#pragma once

#include <windows.h>

namespace vrx {

/// Stands for "no particular argument".
constexpr UINT kNoArgument = static_cast<UINT>(-1);

struct HresultFailure {
    HRESULT code;
    UINT argument = kNoArgument;  ///< index in rgvarg of the argument at fault
};

inline void throwIfFailed(HRESULT result) {
    if (FAILED(result)) throw HresultFailure{result};
}

}  // namespace vrx
