// What all public methods of the library share: its error record, one for each thread that objects live on.
// The tables that all objects share are made by the compiler (hdr/engine/modHDR.h): nothing runs at start-up.
#pragma once

#include <string_view>
#include <utility>

#include "ground/error_record.h"

namespace vrx {

/// The record of the thread that runs. Throws std::bad_alloc where there is no memory for one.
[[nodiscard]] ErrorRecord& errorRecord();

/// Runs the body of a public method under it. The class name becomes the source of errors that carry none.
/// The host's code runs in the body only, never while an error is travelling: so a frame that it leaves
/// without returning leaves no error behind.
template <class Body>
void recordErrors(std::u16string_view className, Body&& body) {
    recordErrors(errorRecord(), className, std::forward<Body>(body));
}

}  // namespace vrx
