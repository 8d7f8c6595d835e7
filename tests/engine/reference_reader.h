// A reader of Radiance files that follows the format's description step by step, one byte at a time, for
// comparison.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "radiance_file.h"

namespace vrx::test {

class ReferenceReader {
  public:
    /// The sizes, once the resolution line has been read.
    bool sizesKnown = false;
    int dimX = 0;
    int dimY = 0;
    /// Whether the file is good to its end, and the rows that were decoded before it was not.
    bool good = false;
    int rows = 0;

    explicit ReferenceReader(const FileBytes& file) : file_(withZeroByte(file)) {
        if (file.empty()) return;
        try {
            readSizes();
            store_.assign(static_cast<std::size_t>(4 * dimX * dimY), 0);
            for (; rows < dimY; ++rows) readRow(rows);
            good = true;
        } catch (const Malformed&) {
            good = false;
        }
    }

    [[nodiscard]] int at(int x, int y, int c) const { return store_[index(x, y, c)]; }

  private:
    struct Malformed {};

    [[nodiscard]] std::size_t index(int x, int y, int c) const {
        return static_cast<std::size_t>((c * dimY + y) * dimX + x);
    }

    int nextByte() {
        if (position_ >= file_.size()) throw Malformed();
        return file_[position_++];
    }

    std::string nextLine() {
        std::string line;
        while (line.size() < 1000) {
            const int byte = nextByte();
            if (byte == 13 || byte == 10) break;
            line += static_cast<char>(byte);
        }
        return line;
    }

    static std::vector<std::string> tokensOf(const std::string& line) {
        std::vector<std::string> tokens(1);
        for (const char character : line) {
            if (character != ' ') {
                tokens.back() += character;
            } else if (!tokens.back().empty()) {
                tokens.emplace_back();
            }
        }
        tokens.resize(4);
        return tokens;
    }

    static int numberOf(const std::string& token) {
        const std::size_t start = !token.empty() && (token[0] == '+' || token[0] == '-') ? 1 : 0;
        if (token.size() == start || token.size() > 10) throw Malformed();
        std::int64_t number = 0;
        for (std::size_t i = start; i < token.size(); ++i) {
            if (token[i] < '0' || token[i] > '9') throw Malformed();
            number = 10 * number + (token[i] - '0');
        }
        if (number > 2147483647 || (token[0] == '-' && number > 0)) throw Malformed();
        return static_cast<int>(number);
    }

    void readSizes() {
        while (position_ <= 10000) {
            const std::string line = nextLine();
            if (line.size() >= 1000) break;
            const std::vector<std::string> tokens = tokensOf(line);
            const bool xFirst = tokens[0] == "+X" || tokens[0] == "-X";
            if (!xFirst && tokens[0] != "+Y" && tokens[0] != "-Y") continue;
            const int first = numberOf(tokens[1]);
            const int second = numberOf(tokens[3]);
            dimX = xFirst ? first : second;
            dimY = xFirst ? second : first;
            sizesKnown = true;
            return;
        }
        throw Malformed();
    }

    void readRow(int y) {
        const int mark = nextByte();
        for (int i = 0; i < 3; ++i) nextByte();
        if (mark != 2) throw Malformed();
        for (int c = 0; c < 4; ++c) {
            for (int x = 0; x < dimX;) x = readRun(x, y, c);
        }
    }

    int readRun(int x, int y, int c) {
        const int n = nextByte();
        const int length = n <= 128 ? n : n - 128;
        const int value = n <= 128 ? 0 : nextByte();
        for (int i = 0; i < length; ++i) {
            if (x + i >= dimX) {
                if (n <= 128) ++position_;  // passed over, wherever it lies
                continue;
            }
            store_[index(x + i, y, c)] = static_cast<std::uint8_t>(n <= 128 ? nextByte() : value);
        }
        return x + length;
    }

    FileBytes file_;
    std::size_t position_ = 1;
    std::vector<std::uint8_t> store_;
};

}  // namespace vrx::test
