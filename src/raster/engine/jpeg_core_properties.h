// The record that a host and a JPEG codec library with the 1.x interface exchange. Its addresses are as wide
// as those of the process that both sides run in, and lie where a compiler puts them; other fields have 32
// bits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vrx {

using Address = std::uintptr_t;

struct JpegCoreProperties {
    std::int32_t UseJPEGPROPERTIES;

    Address DIBBytes;
    std::int32_t DIBWidth;
    std::int32_t DIBHeight;
    std::int32_t DIBPadBytes;
    std::int32_t DIBChannels;
    std::int32_t DIBColor;
    std::int32_t DIBSubsampling;

    Address JPGFile;
    Address JPGBytes;
    std::int32_t JPGSizeBytes;
    std::int32_t JPGWidth;
    std::int32_t JPGHeight;
    std::int32_t JPGChannels;
    std::int32_t JPGColor;
    std::int32_t JPGSubsampling;
    std::int32_t JPGThumbWidth;
    std::int32_t JPGThumbHeight;

    std::int32_t cconversion_reqd;
    std::int32_t upsampling_reqd;
    std::int32_t jquality;

    std::array<std::uint8_t, 20000> lowLevelProperties;
};

constexpr bool kWideAddresses = sizeof(Address) == 8;
static_assert(sizeof(JpegCoreProperties) == (kWideAddresses ? 20104 : 20084));
static_assert(offsetof(JpegCoreProperties, JPGFile) == (kWideAddresses ? 40 : 32));
static_assert(offsetof(JpegCoreProperties, cconversion_reqd) == (kWideAddresses ? 88 : 72));
static_assert(offsetof(JpegCoreProperties, jquality) == (kWideAddresses ? 96 : 80));

/// What a codec is asked to do with the record.
enum class JpegRequest : std::int32_t {
    ReadParametersFromFile = 0,
    ReadParametersFromMemory = 1,
    ReadWholeImageFromFile = 2,
    ReadWholeImageFromMemory = 3,
    WriteWholeImageToFile = 8,
    WriteWholeImageToMemory = 9,
};

}  // namespace vrx
