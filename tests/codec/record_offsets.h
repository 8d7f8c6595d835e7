// The codec's record by offsets, as hosts of any language know it: for 32-bit and for 64-bit processes.
#pragma once

#include <cstddef>

namespace vrx::test {

constexpr bool kWideAddresses = sizeof(void*) == 8;

constexpr std::size_t kRecordSize = kWideAddresses ? 20104 : 20084;

enum class RecordField : std::size_t {
    UseJPEGPROPERTIES = 0,
    DIBBytes = kWideAddresses ? 8 : 4,
    DIBWidth = kWideAddresses ? 16 : 8,
    DIBHeight = kWideAddresses ? 20 : 12,
    DIBPadBytes = kWideAddresses ? 24 : 16,
    DIBChannels = kWideAddresses ? 28 : 20,
    DIBColor = kWideAddresses ? 32 : 24,
    DIBSubsampling = kWideAddresses ? 36 : 28,
    JPGFile = kWideAddresses ? 40 : 32,
    JPGBytes = kWideAddresses ? 48 : 36,
    JPGSizeBytes = kWideAddresses ? 56 : 40,
    JPGWidth = kWideAddresses ? 60 : 44,
    JPGHeight = kWideAddresses ? 64 : 48,
    JPGChannels = kWideAddresses ? 68 : 52,
    JPGColor = kWideAddresses ? 72 : 56,
    JPGSubsampling = kWideAddresses ? 76 : 60,
    JPGThumbWidth = kWideAddresses ? 80 : 64,
    JPGThumbHeight = kWideAddresses ? 84 : 68,
    cconversion_reqd = kWideAddresses ? 88 : 72,
    upsampling_reqd = kWideAddresses ? 92 : 76,
    jquality = kWideAddresses ? 96 : 80,
};

/// Number of a field of 32 bits among the record's 32-bit words, or of the first word of an address.
constexpr std::size_t wordOf(RecordField field) { return static_cast<std::size_t>(field) / 4; }

/// Words that hold nothing: those before the first address and at the end of the wider record.
constexpr bool isPadding(std::size_t word) { return kWideAddresses && (word == 1 || word == 20100 / 4); }

/// What a record holds that the library has initialised; zero everywhere else.
struct RecordDefault {
    RecordField field;
    int value;
};
constexpr RecordDefault kRecordDefaults[] = {
    {RecordField::DIBChannels, 3},      {RecordField::DIBColor, 2},  // blue, green, red
    {RecordField::JPGChannels, 3},      {RecordField::JPGColor, 3},  // luminance and two colors
    {RecordField::JPGSubsampling, 1},                                // colors for 2 x 2 pixels
    {RecordField::cconversion_reqd, 1}, {RecordField::upsampling_reqd, 1}, {RecordField::jquality, 75},
};

}  // namespace vrx::test
