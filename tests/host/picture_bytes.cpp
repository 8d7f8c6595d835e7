#include "picture_bytes.h"

#include <windows.h>

#include <cstring>

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

FileBytes iconFile() {
    FileBytes bytes = {0,  0,  1, 0, 1, 0,                                   // one icon
                       32, 32, 0, 0, 1, 0, 24, 0, 0, 0, 0, 0, 22, 0, 0, 0};  // of 24 bits, behind this
    FileBytes header(40);
    putDword(header, 0, 40);
    putDword(header, 4, 32);
    putDword(header, 8, 64);  // colours and mask
    putDword(header, 12, 1 + (24 << 16));
    bytes.insert(bytes.end(), header.begin(), header.end());
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            const std::uint8_t red = x < 16 ? 255 : 0;
            bytes.insert(bytes.end(), {0, 0, red});
        }
    }
    for (int y = 0; y < 32; ++y) bytes.insert(bytes.end(), {0, 0, 0xFF, 0xFF});
    putDword(bytes, 14, bytes.size() - 22);
    return bytes;
}

FileBytes metafile() {
    constexpr int kInch = 1440;
    const HDC dc = CreateMetaFileW(nullptr);
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowExtEx(dc, kInch, kInch, nullptr);
    const HBRUSH blue = CreateSolidBrush(RGB(0, 0, 255));
    SelectObject(dc, blue);
    PatBlt(dc, 0, 0, kInch / 2, kInch / 2, PATCOPY);
    const HMETAFILE recorded = CloseMetaFile(dc);
    DeleteObject(blue);

    // In front: a mark, the frame, units to the inch, and the sum of all these.
    std::vector<std::uint16_t> words = {0xCDD7, 0x9AC6, 0, 0, 0, kInch, kInch, kInch, 0, 0};
    std::uint16_t sum = 0;
    for (const std::uint16_t word : words) sum ^= word;
    words.push_back(sum);
    FileBytes bytes(words.size() * 2);
    std::memcpy(bytes.data(), words.data(), bytes.size());
    FileBytes records(GetMetaFileBitsEx(recorded, 0, nullptr));
    GetMetaFileBitsEx(recorded, static_cast<UINT>(records.size()), records.data());
    DeleteMetaFile(recorded);
    bytes.insert(bytes.end(), records.begin(), records.end());
    return bytes;
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
