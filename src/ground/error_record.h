// The record by which a failed public method reports the innermost error to its host: number, source and
// description of the first failure win, whatever outer methods add on the way out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ground/error.h"

namespace vrx {

struct ErrorRecord {
    std::int32_t ErrNumber = 0;
    std::u16string ErrSource;
    std::u16string ErrDescription;
    bool ErrRecorded = false;  ///< a recorded error is travelling outward

    /// Empties the record, unless a recorded error is travelling outward.
    void Clear_Error();
    /// Records an error, unless one is travelling already. A number other than 0 and texts that are not empty
    /// stand in place of the error's own. A source that is stored already stays.
    void Record_Error(const Error& current, std::int32_t number = 0, std::u16string_view source = {},
                      std::u16string_view description = {});
    /// Throws the recorded error; the record is then free for the next one.
    [[noreturn]] void Raise_Error();
};

/// Runs the body of a public method under a record. The class name becomes the source of errors that carry
/// none.
template <class Body>
void recordErrors(ErrorRecord& record, std::u16string_view className, Body body) {
    record.Clear_Error();
    try {
        body();
    } catch (const Error& current) {
        // What another method has recorded meanwhile was caught on its way: its source is not this error's.
        record.Clear_Error();
        record.Record_Error(current, 0, current.source.empty() ? className : std::u16string_view{});
        record.Raise_Error();
    }
}

}  // namespace vrx
