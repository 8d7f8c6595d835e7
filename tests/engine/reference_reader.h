// A reader of Radiance files that follows the format's description step by step, one byte at a time, for
// comparison.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
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

    static int numberOf(std::string token) {
        const std::string white = " \t\v\f";
        while (!token.empty() && white.find(token.back()) != std::string::npos) token.pop_back();
        token.erase(0, token.find_first_not_of(white));
        if (token.size() > 2 && token[0] == '&') return basedNumberOf(token);

        std::string around;
        while (!token.empty() && std::strchr("-+$(", token[0])) {
            around += token[0];
            token.erase(0, 1);
        }
        while (!token.empty() && std::strchr("-+$)", token.back())) {
            around += token.back();
            token.pop_back();
        }
        const auto countOf = [&](char c) { return std::count(around.begin(), around.end(), c); };
        const auto minuses = countOf('-') + countOf('(');
        if (minuses + countOf('+') > 1 || countOf('$') > 1 || countOf('(') != countOf(')')) throw Malformed();

        const double size = std::nearbyint(unsignedNumberOf(token));
        if (size > 2147483647.0 || (minuses > 0 && size > 0.0)) throw Malformed();
        return static_cast<int>(size);
    }

    /// Digits with commas and a point, then e or d with an exponent.
    static double unsignedNumberOf(std::string text) {
        if (text.empty() || std::strchr("0123456789.", text[0]) == nullptr) throw Malformed();
        const std::size_t exponent = std::min(text.find_first_of("eEdD"), text.size());
        if (text.find_first_not_of("0123456789.,") < exponent) throw Malformed();
        if (exponent < text.size()) text[exponent] = 'e';
        text.erase(std::remove(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(exponent), ','),
                   text.begin() + static_cast<std::ptrdiff_t>(exponent));
        char* end = nullptr;
        const double number = std::strtod(text.c_str(), &end);
        if (*end != '\0' || end != text.c_str() + text.size()) throw Malformed();
        return number;
    }

    /// The digits behind &H and &O.
    static int basedNumberOf(const std::string& token) {
        const bool isHexadecimal = token[1] == 'h' || token[1] == 'H';
        const bool isOctal = token[1] == 'o' || token[1] == 'O';
        const char* const digits = isHexadecimal ? "0123456789abcdefABCDEF" : "01234567";
        if ((!isHexadecimal && !isOctal) || token.find_first_not_of(digits, 2) != std::string::npos)
            throw Malformed();
        const std::uint64_t size = std::strtoull(token.c_str() + 2, nullptr, isHexadecimal ? 16 : 8);
        if (size > 2147483647) throw Malformed();
        return static_cast<int>(size);
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
