// make_seeds FOLDER - writes files for the fuzz targets to begin with, FOLDER/TARGET/NAME.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "library_files.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

void append(Bytes& bytes, std::initializer_list<int> values) {
    for (const int value : values) bytes.push_back(static_cast<std::uint8_t>(value));
}

void append(Bytes& bytes, const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

class SeedFolder {
  public:
    SeedFolder(const std::filesystem::path& parent, std::string_view target) : folder_(parent / target) {
        std::filesystem::create_directories(folder_);
    }

    void write(const std::string& name, const Bytes& bytes) const {
        std::ofstream file(folder_ / name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        file.exceptions(std::ios::failbit | std::ios::badbit);
    }

  private:
    std::filesystem::path folder_;
};

// Radiance files.

Bytes header(std::string_view resolution, std::string_view lineEnd = "\n") {
    Bytes file;
    for (const std::string_view line :
         {std::string_view("#?RADIANCE"), std::string_view("FORMAT=32-bit_rle_rgbe"), std::string_view(""),
          resolution}) {
        file.insert(file.end(), line.begin(), line.end());
        file.insert(file.end(), lineEnd.begin(), lineEnd.end());
    }
    return file;
}

void appendRepeats(Bytes& file, int width) {
    append(file, {2, 2, width >> 8, width & 255});
    for (const int value : {20, 30, 40, 136}) append(file, {128 + width, value});
}

void appendLiterals(Bytes& file, int width) {
    append(file, {2, 2, width >> 8, width & 255});
    for (int c = 0; c < 4; ++c) {
        append(file, {width});
        for (int x = 0; x < width; ++x) append(file, {c == 3 ? 130 + x % 3 : 10 * c + x});
    }
}

void appendSingleRuns(Bytes& file, int width) {
    append(file, {2, 2, width >> 8, width & 255});
    for (int i = 0; i < 4 * width; ++i) append(file, {1, i & 255});
}

Bytes picture(std::string_view resolution, int rows, int width, void (*appendRow)(Bytes&, int)) {
    Bytes file = header(resolution);
    for (int y = 0; y < rows; ++y) appendRow(file, width);
    return file;
}

Bytes flatPicture() {
    Bytes file = header("-Y 1 +X 2");
    append(file, {1, 2, 3, 136, 4, 5, 6, 136});
    return file;
}

/// A file as a full load, an inverted one and a preview, by a host that acts as the control bytes say: those
/// from 64 on end, restart, replace or use the picture (fuzz_rgbe_reader.cpp).
void writeLoads(const SeedFolder& seeds, const std::string& name, const Bytes& file,
                const Bytes& controls = {}) {
    for (int mode = 0; mode < 3; ++mode) {
        Bytes seed;
        append(seed, {mode, static_cast<int>(controls.size())});
        append(seed, controls);
        append(seed, file);
        seeds.write(name + '_' + std::to_string(mode), seed);
    }
}

void writeReaderSeeds(const SeedFolder& seeds) {
    const Bytes repeats = picture("-Y 3 +X 5", 3, 5, appendRepeats);
    const Bytes manyRuns = picture("-Y 2 +X 60", 2, 60, appendSingleRuns);
    writeLoads(seeds, "repeats", repeats);
    writeLoads(seeds, "ended", repeats, {0, 0, 0, 64});
    writeLoads(seeds, "restarted", repeats, {0, 66});
    writeLoads(seeds, "renamed", repeats, {0, 0, 67});
    writeLoads(seeds, "nested", repeats, {0, 0, 69, 0, 66});
    writeLoads(seeds, "cleared", repeats, {0, 0, 0, 160});
    writeLoads(seeds, "exchanged", repeats, {0, 161});
    writeLoads(seeds, "painted", repeats, {0, 163, 0, 166, 164, 167});
    writeLoads(seeds, "failed", repeats, {0, 0, 71});
    writeLoads(seeds, "literals", picture("+X 5 -Y 3", 3, 5, appendLiterals));
    writeLoads(seeds, "many_runs", manyRuns);
    writeLoads(seeds, "many_runs_ended", manyRuns, {0, 64});
    writeLoads(seeds, "high", picture("-Y 82 +X 1", 82, 1, appendRepeats));
    writeLoads(seeds, "flat", flatPicture());
    writeLoads(seeds, "cr_lf", header("-Y 1 +X 1", "\r\n"));
    writeLoads(seeds, "no_rows", header("-Y 0 +X 4"));
    writeLoads(seeds, "size_bomb", header("-Y 12000 +X 12000"), {0, 66});
    writeLoads(seeds, "too_large", header("-Y 40000 +X 40000"));
}

void writeDecoderSeeds(const SeedFolder& seeds) {
    seeds.write("repeats", picture("-Y 3 +X 5", 3, 5, appendRepeats));
    seeds.write("literals", picture("+X 5 -Y 3", 3, 5, appendLiterals));
    seeds.write("many_runs", picture("-Y 2 +X 60", 2, 60, appendSingleRuns));
    seeds.write("long_runs", picture("-Y 4 +X 127", 4, 127, appendRepeats));
    seeds.write("long_literals", picture("-Y 4 +X 127", 4, 127, appendLiterals));
    seeds.write("high", picture("-Y 82 +X 1", 82, 1, appendRepeats));
    seeds.write("run_passes_the_end", picture("-Y 3 +X 5", 3, 9, appendRepeats));
    seeds.write("wide", picture("-Y 1 +X 5000", 8, 127, appendLiterals));
    seeds.write("flat", flatPicture());
    seeds.write("cr_lf", picture("-Y 1 +X 1\r", 1, 1, appendLiterals));
    seeds.write("no_rows", header("-Y 0 +X 4"));
    seeds.write("too_large", header("-Y 40000 +X 40000"));
}

// Pixels: two bytes of width, then planes.

void writeRoundTripSeeds(const SeedFolder& seeds) {
    for (const int width : {1, 7, 127, 128, 200, 300}) {
        Bytes equal;
        append(equal, {width & 255, width >> 8});
        Bytes counting = equal;
        Bytes runs = equal;
        for (int i = 0; i < 8 * width; ++i) {
            append(equal, {9});
            append(counting, {i & 255});
            append(runs, {(i * i / 40) & 255});
        }
        seeds.write("equal_" + std::to_string(width), equal);
        seeds.write("counting_" + std::to_string(width), counting);
        seeds.write("runs_" + std::to_string(width), runs);
    }
}

// Pattern strings: a byte for the size of the table, then the text.

void writePatternSeeds(const SeedFolder& seeds) {
    constexpr std::string_view kPatterns[] = {
        "0-255;",
        "0-255;500-65280;1000-16711680;",
        "0-0;1-255;3-65280;5-16777215;20-16711680;",
        "1000-255;500-16711680",
        "-1-2;;x-y;1e3-0.5; 7 - 8 ;",
    };
    int number = 0;
    for (const std::string_view pattern : kPatterns) {
        for (const int numItem : {0, 1, 10, 255}) {
            Bytes seed;
            append(seed, {numItem});
            seed.insert(seed.end(), pattern.begin(), pattern.end());
            seeds.write("pattern_" + std::to_string(number++), seed);
        }
    }
}

// JPEG files: a byte for the layout of the pixels, then the file.

void writeJpegs(const SeedFolder& seeds, const std::string& name, const Bytes& file) {
    for (int layout = 0; layout < 8; ++layout) {
        Bytes seed;
        append(seed, {layout});
        append(seed, file);
        seeds.write(name + '_' + std::to_string(layout), seed);
    }
}

void writeJpegSeeds(const SeedFolder& seeds) {
    using vrx::jpeg::Color;
    using vrx::jpeg::Subsampling;
    const vrx::test::Picture picture = vrx::test::landscape(19, 11);
    writeJpegs(seeds, "none", encoded(picture, {Color::YCbCr, Subsampling::None, 90}));
    writeJpegs(seeds, "two_by_two", encoded(picture, {Color::YCbCr, Subsampling::TwoByTwo, 50}));
    writeJpegs(seeds, "two_by_one", encoded(picture, {Color::YCbCr, Subsampling::TwoByOne, 10}));
    writeJpegs(seeds, "grey", encoded(picture, {Color::Grey, Subsampling::None, 90}));
    writeJpegs(seeds, "progressive", vrx::test::progressiveFile(picture));
    writeJpegs(seeds, "scans", vrx::test::fileOfRepeatedScans(picture, 3));
    writeJpegs(seeds, "four_colors", vrx::test::fourColorFile());
}

// Bitmap files.

void appendNumber(Bytes& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) append(bytes, {static_cast<int>(value >> (8 * i) & 255)});
}

/// 5 x 3 pixels; `colours` are palette or masks.
Bytes bmpFile(int bitCount, std::uint32_t compression, const Bytes& colours, std::size_t bitsSize, int used) {
    Bytes file = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0};
    appendNumber(file, static_cast<std::uint32_t>(54 + colours.size()), 4);
    for (const std::uint32_t field : {40U, 5U, 3U}) appendNumber(file, field, 4);
    append(file, {1, 0, bitCount, 0});
    appendNumber(file, compression, 4);
    appendNumber(file, static_cast<std::uint32_t>(bitsSize), 4);
    appendNumber(file, 0, 4);
    appendNumber(file, 0, 4);
    appendNumber(file, static_cast<std::uint32_t>(used), 4);
    appendNumber(file, 0, 4);
    append(file, colours);
    for (std::size_t i = 0; i < bitsSize; ++i) append(file, {static_cast<int>(i * 37 & 255)});
    return file;
}

void writeBmpSeeds(const SeedFolder& seeds) {
    seeds.write("bits_1", bmpFile(1, 0, Bytes(8, 9), 12, 2));
    seeds.write("bits_4", bmpFile(4, 0, Bytes(64, 9), 12, 0));
    seeds.write("bits_8", bmpFile(8, 0, Bytes(12, 9), 24, 3));
    seeds.write("bits_16", bmpFile(16, 0, {}, 36, 0));
    seeds.write("bits_16_masks", bmpFile(16, 3, {0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0x1F, 0, 0, 0}, 36, 0));
    seeds.write("bits_24", bmpFile(24, 0, {}, 48, 0));
    seeds.write("bits_32_short", bmpFile(32, 0, {}, 57, 7));
    seeds.write("runs_8", bmpFile(8, 1, Bytes(8, 9), 12, 2));
    Bytes core = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 32, 0, 0, 0, 12, 0, 0, 0, 3, 0, 2, 0, 1, 0, 1, 0};
    append(core, Bytes(14, 64));
    seeds.write("core", core);
}

// Paths: a file, a zero byte, a folder.

void writePathSeeds(const SeedFolder& seeds) {
    constexpr std::pair<std::string_view, std::string_view> kPaths[] = {
        {"..\\..\\x.hdr", "C:\\A\\B\\C"},
        {"C:\\Work\\Img\\a.hdr", "c:\\work\\Pat"},
        {"\\\\srv\\share\\a.b", "//SRV/share"},
        {"../a/b.hdr", "C:/A/"},
        {"a-b-c", "12"},
        {"C:\\Programs\\Sub\\Dir\\file.txt", "\\\\"},
    };
    int number = 0;
    for (const auto& [file, folder] : kPaths) {
        Bytes seed(file.begin(), file.end());
        append(seed, {0});
        seed.insert(seed.end(), folder.begin(), folder.end());
        seeds.write("path_" + std::to_string(number++), seed);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make_seeds FOLDER\n";
        return 2;
    }
    try {
        writePatternSeeds(SeedFolder(argv[1], "fuzz_pattern"));
        writeBmpSeeds(SeedFolder(argv[1], "fuzz_bmp_check"));
        writeJpegSeeds(SeedFolder(argv[1], "fuzz_jpeg_reader"));
        writePathSeeds(SeedFolder(argv[1], "fuzz_paths"));
        writeDecoderSeeds(SeedFolder(argv[1], "fuzz_rgbe_decoder"));
        writeReaderSeeds(SeedFolder(argv[1], "fuzz_rgbe_reader"));
        writeRoundTripSeeds(SeedFolder(argv[1], "fuzz_rgbe_round_trip"));
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
