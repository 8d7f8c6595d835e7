#include "dialogs/engine/file_patterns.h"

#include <algorithm>
#include <cstddef>

#include "ground/blanks.h"
#include "ground/upper_case.h"

namespace vrx {
namespace {

constexpr std::size_t kNone = std::u16string_view::npos;

bool fits(char16_t pattern, char16_t character) {
    return pattern == u'?' || upperCase(pattern) == upperCase(character);
}

/// Only the last "*" is ever taken back: what an earlier one stands for need not grow once a later one is
/// met.
bool matches(std::u16string_view name, std::u16string_view pattern) {
    std::size_t at = 0;
    std::size_t next = 0;
    std::size_t star = kNone;
    std::size_t afterStar = 0;
    while (at < name.size()) {
        if (next < pattern.size() && pattern[next] == u'*') {
            star = next++;
            afterStar = at;
        } else if (next < pattern.size() && fits(pattern[next], name[at])) {
            ++next;
            ++at;
        } else if (star != kNone) {
            next = star + 1;
            at = ++afterStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', next) == kNone;
}

bool fitsPattern(std::u16string_view name, std::u16string_view pattern) {
    return pattern == u"*.*" || (!pattern.empty() && matches(name, pattern));
}

}  // namespace

bool matchesPatterns(std::u16string_view name, std::u16string_view patterns) {
    for (std::size_t start = 0; start <= patterns.size();) {
        const std::size_t end = std::min(patterns.find(u';', start), patterns.size());
        if (fitsPattern(name, trimBlanks(patterns.substr(start, end - start)))) return true;
        start = end + 1;
    }
    return false;
}

}  // namespace vrx
