// Whole files in, whole files out. A file that is written replaces the old one in one step, or leaves it as
// it was. Where the folder takes no new file, the old one is overwritten when all bytes are there and have
// room.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "common/engine/byte_sink.h"
#include "common/engine/bytes.h"
#include "common/win_resource.h"

namespace vrx {

/// The content of a file and one zero byte behind it. Fails with the platform's errors: 53 for a file that is
/// not there, 76 for a folder that is not, 75 for a folder or a device, 70 for a file that is locked, 7 for
/// one that is too large.
[[nodiscard]] Bytes readFileAndZero(const std::u16string& path);

/// Copies a file over another one as FileReplacement does. Error 70 for a file onto itself.
void copyFile(const std::u16string& source, const std::u16string& target);

/// Whether there is a file of this name, which may hold wildcards. Folders do not count.
[[nodiscard]] bool findsFile(const std::u16string& path);

/// Whether new files can be made in a folder; true as well where something else keeps them from being
/// written, like a full disk.
[[nodiscard]] bool takesFiles(const std::u16string& folder);

/// The user's folder for temporary files, with a backslash at its end.
[[nodiscard]] std::u16string temporaryFolder();

/// An empty file in that folder, which goes with its owner.
class TemporaryFile {
  public:
    TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    /// The short form, which programs of the system's 8-bit code page can open as well.
    [[nodiscard]] std::u16string path() const;

  private:
    std::wstring path_;
};

/// Collects the bytes of a new file in a temporary one beside it. Without `commit` nothing has happened.
class FileReplacement final : public ByteSink {
  public:
    /// Fails where the target cannot be replaced: a folder, a read-only file, a path that is not there.
    explicit FileReplacement(const std::u16string& path);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    ~FileReplacement();

    void write(std::span<const std::uint8_t> bytes) override;
    /// Puts the new file in the place of the old one.
    void commit();

  private:
    [[nodiscard]] bool openSibling();
    void overwriteTarget();

    std::wstring path_;
    std::wstring sibling_;
    KernelHandle file_;
    // In a folder that takes no new files, the bytes wait here until they are complete.
    std::vector<std::uint8_t> waiting_;
};

}  // namespace vrx
