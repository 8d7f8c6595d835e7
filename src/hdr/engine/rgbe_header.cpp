#include "hdr/engine/rgbe_header.h"

#include <optional>
#include <string>
#include <string_view>

#include "ground/long_text.h"

namespace vrx {
namespace {

constexpr std::size_t kMaxLineLength = 1000;
constexpr std::size_t kLastLineStart = 10000;

/// Ends at a CR or LF, which is consumed, or at 1000 characters. CR LF therefore gives one more, empty line.
std::string readLine(RgbeCursor& file) {
    std::string line;
    while (line.size() < kMaxLineLength) {
        const char character = static_cast<char>(file.next());
        if (character == '\r' || character == '\n') break;
        line.push_back(character);
    }
    return line;
}

std::string_view trimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// Cuts the part before the first blank off the front of the text. Tabs are no blanks.
std::string_view nextToken(std::string_view& text) {
    text = trimBlanks(text);
    const std::size_t end = text.find(' ');
    const std::string_view token = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    return token;
}

std::int32_t parseSize(std::string_view token) {
    const std::optional<std::int32_t> size = longOfText(token);
    if (!size || *size < 0) throw wrongFileType();
    return *size;
}

bool isAxisX(std::string_view token) { return token == "+X" || token == "-X"; }
bool isAxisY(std::string_view token) { return token == "+Y" || token == "-Y"; }

/// The axis that comes first decides which number is the width; the name of the second axis is not looked at.
std::optional<Resolution> parseResolution(std::string_view line) {
    const std::string_view axis = nextToken(line);
    if (!isAxisX(axis) && !isAxisY(axis)) return std::nullopt;
    const std::int32_t first = parseSize(nextToken(line));
    nextToken(line);
    const std::int32_t second = parseSize(nextToken(line));
    return isAxisX(axis) ? Resolution{first, second} : Resolution{second, first};
}

}  // namespace

Resolution readResolution(RgbeCursor& file) {
    while (file.position() <= kLastLineStart) {
        const std::string line = readLine(file);
        if (line.size() >= kMaxLineLength) break;
        if (const auto resolution = parseResolution(line)) return *resolution;
    }
    throw wrongFileType();
}

}  // namespace vrx
