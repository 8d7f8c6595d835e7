#include "jpeg/engine/error_trap.h"

#include <jerror.h>

namespace vrx::jpeg {
namespace {

Status statusOf(int message) {
    switch (message) {
        case JERR_OUT_OF_MEMORY:
            return Status::OutOfMemory;
        case JERR_NO_BACKING_STORE:  // more memory than allowed
        case JERR_IMAGE_TOO_BIG:
        case JERR_WIDTH_OVERFLOW:
            return Status::TooLarge;
        case JERR_ARITH_NOTIMPL:
        case JERR_BAD_PRECISION:
        case JERR_CCIR601_NOTIMPL:
        case JERR_COMPONENT_COUNT:
        case JERR_CONVERSION_NOTIMPL:
        case JERR_FRACT_SAMPLE_NOTIMPL:
        case JERR_NOTIMPL:
        case JERR_SOF_UNSUPPORTED:
            return Status::UnsupportedJpeg;
        default:
            return Status::DamagedJpeg;
    }
}

/// Bytes between the segments before the picture, which some cameras leave there. Behind its first scan they
/// mean that the scan's own bytes led astray.
bool isBeforePicture(j_common_ptr codec) {
    return codec->is_decompressor != FALSE &&
           reinterpret_cast<j_decompress_ptr>(codec)->input_scan_number == 0;
}

/// Warnings about what many cameras and programs write, and every reader shows.
bool isHarmless(j_common_ptr codec) {
    switch (codec->err->msg_code) {
        case JWRN_EXTRANEOUS_DATA:
            return isBeforePicture(codec);
        case JWRN_ADOBE_XFORM:
        case JWRN_JFIF_MAJOR:
            return true;
        default:
            return false;
    }
}

}  // namespace

ErrorTrap::ErrorTrap() : jpeg_error_mgr() {
    jpeg_std_error(this);
    error_exit = handleError;
    emit_message = handleMessage;
    output_message = printNothing;
}

void ErrorTrap::leaveGuard(Status status) {
    status_ = status;
    std::longjmp(jump_, 1);
}

void ErrorTrap::handleError(j_common_ptr codec) { leave(codec, statusOf(codec->err->msg_code)); }

/// Levels below 0 are warnings: the library would go on with made-up pixels.
void ErrorTrap::handleMessage(j_common_ptr codec, int level) {
    if (level < 0 && !isHarmless(codec)) leave(codec, Status::DamagedJpeg);
}

}  // namespace vrx::jpeg
