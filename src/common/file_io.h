// Whole files in, whole files out. A file that is written replaces the old one in one step, when all its
// bytes are on the disk, or leaves it as it was: whatever fails, and a power cut too, leaves the old file or
// the new one. The new file keeps the old one's attributes and access rights. Where that cannot be, since the
// folder takes no new file or the old one's rights forbid it to go, the old file is overwritten when all
// bytes are there and have room.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "com/win_resource.h"
#include "common/file_traits.h"
#include "ground/byte_sink.h"
#include "ground/bytes.h"

namespace vrx {

/// A file opened for reading. Fails with the platform's errors: 53 for a file that is not there, 76 for a
/// folder that is not, 75 for a folder or a device, 70 for a file that is locked.
class InputFile {
  public:
    explicit InputFile(const std::u16string& path);

    [[nodiscard]] std::uint64_t size() const;
    /// How many bytes there are from a place on, as many as fit at most.
    [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const;

  private:
    KernelHandle file_;
};

/// The content of a file and one zero byte behind it. Error 7 for a file that is too large.
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

/// Deletes a file where that can be done.
void deleteIfPossible(const std::u16string& path);

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
    /// Puts the new file in the place of the old one, when the disk has it.
    void commit();

  private:
    /// Nothing is open yet. Once an object is made, its destructor takes a sibling away, whatever fails.
    struct Unopened {};
    FileReplacement(Unopened, const std::u16string& path);
    [[nodiscard]] bool openSibling();
    void dropSibling();
    void moveSibling();
    void overwriteTarget();

    std::wstring path_;
    std::wstring sibling_;
    KernelHandle file_;
    std::optional<FileTraits> traits_;  // of the old file
    // Without a sibling, the bytes wait here until they are complete.
    std::vector<std::uint8_t> waiting_;
};

}  // namespace vrx
