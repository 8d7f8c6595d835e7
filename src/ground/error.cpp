#include "ground/error.h"

namespace vrx {
namespace {

const char16_t* platformText(Platform number) {
    switch (number) {
        case Platform::InvalidCall:
            return u"Invalid procedure call or argument";
        case Platform::Overflow:
            return u"Overflow";
        case Platform::OutOfMemory:
            return u"Out of memory";
        case Platform::SubscriptOutOfRange:
            return u"Subscript out of range";
        case Platform::ArrayLocked:
            return u"This array is fixed or temporarily locked";
        case Platform::DivisionByZero:
            return u"Division by zero";
        case Platform::TypeMismatch:
            return u"Type mismatch";
        case Platform::OutOfStackSpace:
            return u"Out of stack space";
        case Platform::InternalError:
            return u"Internal error";
        case Platform::BadFileName:
            return u"Bad file name or number";
        case Platform::FileNotFound:
            return u"File not found";
        case Platform::DeviceIoError:
            return u"Device I/O error";
        case Platform::FileAlreadyExists:
            return u"File already exists";
        case Platform::DiskFull:
            return u"Disk full";
        case Platform::PermissionDenied:
            return u"Permission denied";
        case Platform::DiskNotReady:
            return u"Disk not ready";
        case Platform::PathFileAccess:
            return u"Path/File access error";
        case Platform::PathNotFound:
            return u"Path not found";
        case Platform::ObjectNotSet:
            return u"Object variable not set";
        case Platform::InvalidUseOfNull:
            return u"Invalid use of Null";
        case Platform::NoEntryPoint:
            return u"Can't find DLL entry point";
        case Platform::InvalidPicture:
            return u"Invalid picture";
    }
    return u"Internal error";
}

}  // namespace

Error platformError(Platform number) { return {static_cast<std::int32_t>(number), {}, platformText(number)}; }

}  // namespace vrx
