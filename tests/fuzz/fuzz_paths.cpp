// Paths and keys: two texts with a zero byte between them, one byte for each character; the length of the
// second one is the position in the first one as a key. What is cut off a path must be what is given back.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ground/error.h"
#include "ground/keys.h"
#include "ground/paths.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

/// An error of the library is an answer too; anything else ends the program.
template <class Action>
void allowErrors(Action action) {
    try {
        action();
    } catch (const vrx::Error& error) {
        require(error.number == 9 || error.number == 79);
    }
}

void checkAppName(const std::u16string& path) {
    std::u16string folder = path;
    const std::u16string name = vrx::getAppName(folder, true);
    require(folder == path ? path.ends_with(name) : folder + name == path);
    require(name.find(u'\\') == std::u16string::npos);
    std::u16string cut = path;
    require(vrx::getAppName(cut, false).size() <= path.size());
}

void checkSplit(const std::u16string& path) {
    std::u16string folder = path;
    const std::u16string name = vrx::splitFileName(folder);
    require(path.starts_with(folder) && name.size() <= path.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string both(data, data + size);
    const std::size_t end = both.find(u'\0');
    const std::u16string file = both.substr(0, end);
    const std::u16string folder = end == std::u16string::npos ? u"" : both.substr(end + 1);
    const auto position = static_cast<std::int16_t>(folder.size());

    allowErrors([&] { require(vrx::getXPathStep(file, position).size() <= file.size()); });
    allowErrors([&] { require(vrx::getKey(file, position).size() <= file.size()); });
    allowErrors([&] { (void)vrx::getAbsolutePath(file, folder); });
    allowErrors([&] { (void)vrx::getRelativePath(file, folder); });
    require(vrx::getPathShortFormat(file).size() <= file.size() + 4);
    require(vrx::getPath(file).size() <= file.size());
    require(file.starts_with(vrx::getNameBeforeDot(file)));
    checkAppName(file);
    checkSplit(file);
    return 0;
}
