// The codec's core in short: what it makes, and how it fails.
#pragma once

#include <cstdint>
#include <ostream>
#include <vector>

#include "jpeg/engine/decoder.h"
#include "jpeg/engine/encoder.h"
#include "jpeg/engine/status.h"
#include "picture.h"

namespace vrx::jpeg {

inline void PrintTo(Status status, std::ostream* out) { *out << textOf(status); }

}  // namespace vrx::jpeg

namespace vrx::test {

using JpegFile = std::vector<std::uint8_t>;

constexpr jpeg::JpegFormat kUsualFormat{jpeg::Color::YCbCr, jpeg::Subsampling::TwoByTwo, 90};

inline jpeg::JpegFormat usualFormat(int quality) {
    return {kUsualFormat.color, kUsualFormat.subsampling, quality};
}

inline JpegFile encoded(const HostPixels& pixels, const jpeg::JpegFormat& format = kUsualFormat) {
    jpeg::GrowingFile file;
    jpeg::encode(pixels.bytes, pixels.layout, format, file);
    return {file.span().begin(), file.span().end()};
}

/// From a section as the component makes them.
inline JpegFile encoded(const Picture& picture, const jpeg::JpegFormat& format = kUsualFormat) {
    return encoded(hostPixels(picture, jpeg::Color::Bgr, true), format);
}

template <class Action>
jpeg::Status statusOf(Action action) {
    try {
        action();
    } catch (const jpeg::Failure& failure) {
        return failure.status;
    }
    return jpeg::Status::Ok;
}

inline jpeg::Status decodeStatus(const JpegFile& file, HostPixels& room) {
    return statusOf([&] { jpeg::decode(file, room.layout, room.bytes); });
}

}  // namespace vrx::test
