#include "ground/keys.h"

#include "ground/error.h"

namespace vrx {
namespace {

std::u16string partAt(std::u16string_view key, char16_t separator, std::int16_t position) {
    if (position < 0) throw platformError(Platform::SubscriptOutOfRange);
    for (std::int16_t i = 0; i < position; ++i) {
        const std::size_t end = key.find(separator);
        if (end == std::u16string_view::npos) return {};
        key.remove_prefix(end + 1);
    }
    return std::u16string(key.substr(0, key.find(separator)));
}

}  // namespace

std::u16string getXPathStep(std::u16string_view key, std::int16_t position) {
    return partAt(key, u'/', position);
}

std::u16string getKey(std::u16string_view key, std::int16_t position) { return partAt(key, u'-', position); }

}  // namespace vrx
