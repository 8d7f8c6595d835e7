#include "jpeg/engine/status.h"

namespace vrx::jpeg {

const char* textOf(Status status) {
    switch (status) {
        case Status::Ok:
            return "No error";
        case Status::BadRecord:
            return "The record cannot be read or written";
        case Status::BadRequest:
            return "No such kind of reading or writing";
        case Status::BadAddress:
            return "An address is null, or the memory there is not all accessible";
        case Status::BadSize:
            return "Width or height is zero, or negative where it must not be";
        case Status::BadPadding:
            return "The padding is negative, or does not fill rows up to a multiple of 4 bytes";
        case Status::UnsupportedColor:
            return "Unsupported channels, color space or subsampling";
        case Status::UnsupportedOption:
            return "Unsupported option";
        case Status::BadQuality:
            return "The quality is not between 1 and 100";
        case Status::TooLarge:
            return "The picture is too large";
        case Status::SizesDiffer:
            return "The sizes of the pixels and of the JPEG picture differ";
        case Status::BufferTooSmall:
            return "The buffer is too small for the JPEG data";
        case Status::NotReadable:
            return "The file cannot be read";
        case Status::NotWritable:
            return "The file cannot be written";
        case Status::UnsupportedJpeg:
            return "Unsupported kind of JPEG data";
        case Status::DamagedJpeg:
            return "The JPEG data is damaged or incomplete";
        case Status::OutOfMemory:
            return "Out of memory";
        case Status::InternalError:
            return "Internal error";
    }
    return "Unknown error";
}

}  // namespace vrx::jpeg
