// Results of the codec's functions: 0 for success, a negative number for each way to fail.
#pragma once

#include <cstdint>

namespace vrx::jpeg {

enum class Status : std::int32_t {
    Ok = 0,
    BadRecord = -1,
    BadRequest = -2,
    BadAddress = -3,
    BadSize = -4,
    BadPadding = -5,
    UnsupportedColor = -6,
    UnsupportedOption = -7,
    BadQuality = -8,
    TooLarge = -9,
    SizesDiffer = -10,
    BufferTooSmall = -11,
    NotReadable = -12,
    NotWritable = -13,
    UnsupportedJpeg = -14,
    DamagedJpeg = -15,
    OutOfMemory = -16,
    InternalError = -17,
};

/// What happened, in English.
[[nodiscard]] const char* textOf(Status status);

/// The one thing that the codec throws.
struct Failure {
    Status status;
};

inline void require(bool condition, Status otherwise) {
    if (!condition) throw Failure{otherwise};
}

}  // namespace vrx::jpeg
