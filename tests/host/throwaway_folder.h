// Files of a test, in a folder of its own that is deleted with everything in it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace host {

using FileBytes = std::vector<std::uint8_t>;

class ThrowawayFolder {
  public:
    ThrowawayFolder();
    ThrowawayFolder(const ThrowawayFolder&) = delete;
    ThrowawayFolder& operator=(const ThrowawayFolder&) = delete;
    ~ThrowawayFolder();

    [[nodiscard]] const std::wstring& path() const { return path_; }
    /// Full path of a file or folder in it.
    [[nodiscard]] std::wstring operator/(const std::wstring& name) const { return path_ + L"\\" + name; }
    /// Writes a file and returns its full path.
    std::wstring write(const std::wstring& name, const FileBytes& bytes) const;
    /// Names of everything in it, sorted.
    [[nodiscard]] std::vector<std::wstring> names() const;

  private:
    std::wstring path_;
};

/// The bytes of a file; none when it cannot be read.
FileBytes readBytes(const std::wstring& path);
void writeBytes(const std::wstring& path, const FileBytes& bytes);
bool exists(const std::wstring& path);

}  // namespace host
