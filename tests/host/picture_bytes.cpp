#include "picture_bytes.h"

namespace host {
namespace {

void putDword(FileBytes& bytes, std::size_t offset, std::size_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

}  // namespace

FileBytes bmpFile(const std::vector<std::vector<Colour>>& rows) {
    constexpr std::size_t kHeaderSize = 54;
    const std::size_t stride = (rows[0].size() * 3 + 3) / 4 * 4;
    FileBytes bytes(kHeaderSize + stride * rows.size());
    bytes[0] = 'B';
    bytes[1] = 'M';
    putDword(bytes, 2, bytes.size());
    putDword(bytes, 10, kHeaderSize);
    putDword(bytes, 14, 40);
    putDword(bytes, 18, rows[0].size());
    putDword(bytes, 22, rows.size());
    putDword(bytes, 26, 1 + (24 << 16));
    for (std::size_t y = 0; y < rows.size(); ++y) {
        std::size_t place = kHeaderSize + (rows.size() - 1 - y) * stride;
        for (const Colour& colour : rows[y]) {
            bytes[place++] = colour.b;
            bytes[place++] = colour.g;
            bytes[place++] = colour.r;
        }
    }
    return bytes;
}

FileBytes bmpFile(int width, int height, Colour colour) {
    return bmpFile(std::vector(static_cast<std::size_t>(height),
                               std::vector<Colour>(static_cast<std::size_t>(width), colour)));
}

FileBytes gifFile() {
    return {'G',  'I', 'F',  '8',  '9',  'a',              //
            2,    0,   1,    0,    0x80, 0,   0,           // 2 x 1 pixels, two colours
            255,  0,   0,    0,    0,    255,              // red, blue
            0x2C, 0,   0,    0,    0,    2,   0, 1, 0, 0,  // the whole picture
            2,    2,   0x44, 0x0A, 0,                      // codes of 3 bits: clear, 0, 1, end
            0x3B};
}

FileBytes jpegFile() {
    FileBytes bytes = {0xFF, 0xD8};
    const auto append = [&](const FileBytes& part) {
        for (const std::uint8_t byte : part) bytes.push_back(byte);
    };
    append({0xFF, 0xDB, 0, 67, 0});
    append(FileBytes(64, 1));                                   // nothing is quantised
    append({0xFF, 0xC0, 0, 11, 8, 0, 8, 0, 8, 1, 1, 0x11, 0});  // 8 x 8, one component
    for (const std::uint8_t table : {std::uint8_t{0x00}, std::uint8_t{0x10}}) {
        // One code of one bit: no change of the constant part, or the end of a block.
        append({0xFF, 0xC4, 0, 20, table, 1});
        append(FileBytes(16, 0));
    }
    append({0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0, 0x3F, 0xFF, 0xD9});
    return bytes;
}

}  // namespace host
