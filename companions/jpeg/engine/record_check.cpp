#include "jpeg/engine/record_check.h"

#include <cstdlib>

#include "jpeg/engine/status.h"

namespace vrx::jpeg {
namespace {

constexpr std::uint64_t kMaxBufferSize = 0x7FFFFFFF;
constexpr std::int32_t kDefaultQuality = 75;

Color colorOf(std::int32_t channels, std::int32_t color) {
    require(color >= static_cast<std::int32_t>(Color::Rgb) && color <= static_cast<std::int32_t>(Color::Grey),
            Status::UnsupportedColor);
    const auto known = static_cast<Color>(color);
    require(channels == channelsOf(known), Status::UnsupportedColor);
    return known;
}

/// The options that ask for more than the codec does stay as they were given out.
void checkOptions(const JpegCoreProperties& record) {
    require(record.UseJPEGPROPERTIES == 0 && record.DIBSubsampling == 0 && record.cconversion_reqd == 1 &&
                record.upsampling_reqd == 1,
            Status::UnsupportedOption);
}

/// Rows follow each other directly, or begin at multiples of 4 bytes.
std::uint64_t strideOf(std::uint64_t rowSize, std::int32_t padding) {
    require(padding >= 0, Status::BadPadding);
    const std::uint64_t stride = rowSize + static_cast<std::uint64_t>(padding);
    require(padding == 0 || stride % 4 == 0, Status::BadPadding);
    return stride;
}

}  // namespace

void initialise(JpegCoreProperties& record) {
    record = {};
    record.DIBChannels = 3;
    record.DIBColor = static_cast<std::int32_t>(Color::Bgr);
    record.JPGChannels = 3;
    record.JPGColor = static_cast<std::int32_t>(Color::YCbCr);
    record.JPGSubsampling = static_cast<std::int32_t>(Subsampling::TwoByTwo);
    record.cconversion_reqd = 1;
    record.upsampling_reqd = 1;
    record.jquality = kDefaultQuality;
}

PixelLayout pixelLayoutOf(const JpegCoreProperties& record) {
    checkOptions(record);
    const Color color = colorOf(record.DIBChannels, record.DIBColor);
    require(record.DIBWidth > 0 && record.DIBHeight != 0, Status::BadSize);
    const auto width = static_cast<std::uint64_t>(record.DIBWidth);
    const auto height = static_cast<std::uint64_t>(std::llabs(record.DIBHeight));
    require(width <= kMaxSide && height <= kMaxSide && width * height <= kMaxPixels, Status::TooLarge);

    const std::uint64_t rowSize = width * static_cast<std::uint64_t>(channelsOf(color));
    const std::uint64_t stride = strideOf(rowSize, record.DIBPadBytes);
    require(stride <= kMaxBufferSize / height, Status::TooLarge);
    return {.width = static_cast<std::uint32_t>(width),
            .height = static_cast<std::uint32_t>(height),
            .color = color,
            .stride = static_cast<std::size_t>(stride),
            .bottomUp = record.DIBHeight > 0};
}

JpegFormat jpegFormatOf(const JpegCoreProperties& record) {
    const Color color = colorOf(record.JPGChannels, record.JPGColor);
    require(color == Color::YCbCr || color == Color::Grey, Status::UnsupportedColor);
    require(record.JPGSubsampling >= static_cast<std::int32_t>(Subsampling::None) &&
                record.JPGSubsampling <= static_cast<std::int32_t>(Subsampling::TwoByOne),
            Status::UnsupportedColor);
    require(record.JPGWidth > 0 && record.JPGHeight > 0, Status::BadSize);
    require(record.JPGWidth == record.DIBWidth && record.JPGHeight == std::llabs(record.DIBHeight),
            Status::SizesDiffer);
    require(record.jquality >= 1 && record.jquality <= 100, Status::BadQuality);
    return {color, static_cast<Subsampling>(record.JPGSubsampling), record.jquality};
}

void store(const JpegHeader& header, JpegCoreProperties& record) {
    record.JPGWidth = static_cast<std::int32_t>(header.width);
    record.JPGHeight = static_cast<std::int32_t>(header.height);
    record.JPGChannels = channelsOf(header.color);
    record.JPGColor = static_cast<std::int32_t>(header.color);
    record.JPGSubsampling = static_cast<std::int32_t>(header.subsampling);
}

}  // namespace vrx::jpeg
