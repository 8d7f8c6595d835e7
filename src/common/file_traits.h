// What a file has beside its bytes: attributes, the time of its creation, access rights. A new file that
// takes the place of an old one takes them over.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vrx {

class FileTraits {
  public:
    /// Those of an existing file with these attributes, opened for reading its rights. Fails with the
    /// platform's errors.
    FileTraits(DWORD attributes, HANDLE file);

    /// The attribute that a file can have only from its creation on, for CreateFile: encrypted.
    [[nodiscard]] DWORD creationAttributes() const { return attributes_ & FILE_ATTRIBUTE_ENCRYPTED; }

    /// Gives an opened new file the access rights and the storage of the old one, before any byte is in it:
    /// nobody who may not read the old file gets to see the new one. False where the system does not allow
    /// it.
    [[nodiscard]] bool giveRights(const std::wstring& path, HANDLE file) const;

    /// The rest, for the finished file: what is written changes attributes. The handle is for the time.
    void giveCreationTime(HANDLE file) const;
    /// Whether it has the attributes already, and will keep them when it is closed.
    [[nodiscard]] bool hasAttributes(const std::wstring& path) const;
    /// False where the system does not allow it.
    [[nodiscard]] bool giveAttributes(const std::wstring& path) const;

  private:
    using Rights = std::vector<std::uint8_t>;

    static Rights rightsOf(HANDLE file);

    DWORD attributes_ = 0;
    FILETIME created_{};
    Rights rights_;  // a security descriptor; none where the volume knows no rights
};

}  // namespace vrx
