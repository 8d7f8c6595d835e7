#include "ground/paths.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "ground/error.h"
#include "ground/upper_case.h"

namespace vrx {
namespace {

constexpr std::u16string_view kNetworkPrefix = u"\\\\";
constexpr std::size_t kNone = std::u16string_view::npos;

using Parts = std::vector<std::u16string>;

Parts splitAt(std::u16string_view text, char16_t separator) {
    Parts parts;
    for (std::size_t start = 0;;) {
        const std::size_t end = text.find(separator, start);
        parts.emplace_back(text.substr(start, end - start));
        if (end == kNone) return parts;
        start = end + 1;
    }
}

/// An empty text has no parts.
Parts split(std::u16string_view path) {
    if (path.empty()) return {};
    return splitAt(path, path.find(u'\\') == kNone ? u'/' : u'\\');
}

void dropEmptyEnd(Parts& parts) {
    if (!parts.empty() && parts.back().empty()) parts.pop_back();
}

void markAsNetwork(Parts& parts) {
    if (parts.empty()) throw platformError(Platform::SubscriptOutOfRange);
    parts.front().insert(0, kNetworkPrefix);
}

/// Takes the prefix of a network path away; whether there was one.
bool dropNetworkPrefix(std::u16string_view& path) {
    if (!isNetworkPath(path)) return false;
    path.remove_prefix(kNetworkPrefix.size());
    return true;
}

/// Climbs for the ".." in front of a relative path; the index of its first other part, or 0 if there is none.
std::size_t climb(const Parts& relative, Parts& folder) {
    for (std::size_t i = 0; i < relative.size(); ++i) {
        if (relative[i] != u"..") return i;
        if (folder.size() > 1) folder.pop_back();
    }
    return 0;
}

void appendUnlessEmpty(std::u16string& path, const std::u16string& part) {
    if (!part.empty()) (path += part) += u'\\';
}

/// The parts of one side of a comparison. `network` is shared by both sides and stays set: a folder without
/// the prefix gets it where the file has it, and hosts rely on that.
Parts comparedParts(std::u16string_view path, bool& network) {
    if (dropNetworkPrefix(path)) network = true;
    Parts parts = split(path);
    dropEmptyEnd(parts);
    if (network) markAsNetwork(parts);
    return parts;
}

std::size_t commonParts(const Parts& a, const Parts& b) {
    const auto [end, ignored] = std::ranges::mismatch(a, b, equalInUpperCase);
    return static_cast<std::size_t>(end - a.begin());
}

}  // namespace

bool isNetworkPath(std::u16string_view path) {
    return path.starts_with(kNetworkPrefix) || path.starts_with(u"//");
}

std::u16string getAbsolutePath(std::u16string_view file, std::u16string_view folder) {
    if (file.empty()) return {};
    if ((file.size() > 1 && file[1] == u':') || isNetworkPath(file)) return std::u16string(file);
    const Parts relative = split(file);
    const bool network = dropNetworkPrefix(folder);
    Parts parts = split(folder);
    if (parts.size() < 2) throw Error{own_error::kNoFolder, u"CVrxFun", u"Path not found!"};
    dropEmptyEnd(parts);
    if (network) markAsNetwork(parts);

    const std::size_t start = climb(relative, parts);
    std::u16string path;
    for (const std::u16string& part : parts) appendUnlessEmpty(path, part);
    for (std::size_t i = start; i + 1 < relative.size(); ++i) appendUnlessEmpty(path, relative[i]);
    return path + relative.back();
}

std::u16string getRelativePath(std::u16string_view file, std::u16string_view folder) {
    if (file.empty()) return {};
    bool network = false;
    const Parts fileParts = comparedParts(file, network);
    const Parts folderParts = comparedParts(folder, network);
    const std::size_t common = commonParts(fileParts, folderParts);

    std::u16string path;
    if (common != 0) {
        for (std::size_t level = common; level < folderParts.size(); ++level) path += u"../";
    }
    for (std::size_t i = common; i + 1 < fileParts.size(); ++i) (path += fileParts[i]) += u'/';
    return path + fileParts.back();
}

std::u16string getPathShortFormat(std::u16string_view path) {
    const std::size_t first = path.find(u'\\');
    const std::size_t second = first == kNone ? kNone : path.find(u'\\', first + 1);
    const std::size_t third = second == kNone ? kNone : path.find(u'\\', second + 1);
    std::u16string shortened(path.substr(0, second == kNone ? 3 : second + 1));
    if (third != kNone) shortened += u"...\\";
    return shortened.append(path.substr(path.rfind(u'\\') + 1));
}

std::u16string getAppName(std::u16string& path, bool withExtension) {
    if (!withExtension) path.resize(std::min(path.size(), path.rfind(u'.')));
    const std::size_t nameStart = path.rfind(u'\\') + 1;
    std::u16string name = path.substr(nameStart);
    if (nameStart != 0) path.resize(nameStart);
    return name;
}

std::u16string getPath(std::u16string_view path) {
    Parts parts = split(path);
    if (!parts.empty()) parts.pop_back();
    std::u16string folder;
    for (const std::u16string& part : parts) (folder += part) += u'\\';
    return folder;
}

std::u16string getNameBeforeDot(std::u16string_view name) {
    const std::size_t dot = name.find(u'.');
    return std::u16string(name.substr(0, dot == kNone ? 0 : dot));
}

std::u16string splitFileName(std::u16string& path) {
    constexpr std::size_t kDropped = 4;
    path.resize(path.size() - std::min(path.size(), kDropped));
    return getAppName(path, true);
}

}  // namespace vrx
