// The one exception type of the library, and the platform errors by the numbers and texts that VB hosts know.
// Texts are UTF-16, as automation hosts exchange them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vrx {

/// A failure as a host sees it: `Err.Number`, `Err.Source` and `Err.Description`.
/// An empty source is filled in with the class name where the error leaves the library.
struct Error {
    std::int32_t number;
    std::u16string source;
    std::u16string description;
};

/// Run-time error numbers of VB hosts.
enum class Platform : std::int32_t {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    ArrayLocked = 10,
    DivisionByZero = 11,
    TypeMismatch = 13,
    OutOfStackSpace = 28,
    InternalError = 51,
    BadFileName = 52,
    FileNotFound = 53,
    DeviceIoError = 57,
    FileAlreadyExists = 58,
    DiskFull = 61,
    PermissionDenied = 70,
    DiskNotReady = 71,
    PathFileAccess = 75,
    PathNotFound = 76,
    ObjectNotSet = 91,
    InvalidUseOfNull = 94,
    NoEntryPoint = 453,
    InvalidPicture = 481,
};

/// The error with the host's own text for it and no source.
[[nodiscard]] Error platformError(Platform number);

/// Numbers of the library's own errors, whose sources and texts stand where they are raised.
namespace own_error {
inline constexpr std::int32_t kHdrFile = 1;
inline constexpr std::int32_t kNoFolder = 79;
inline constexpr std::int32_t kJpegNotWritten = 123;
}  // namespace own_error

/// What stands in place of a file's name in a preview that could not show the file. No picture is loaded from
/// a file of this name.
inline constexpr std::u16string_view kErrorName = u"Error";

}  // namespace vrx
