// ijl10.dll beside the test program, and its record by offsets, as a host of any language has them.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <string>

#include "picture.h"
#include "throwaway_folder.h"

namespace host {

class CodecLibrary {
  public:
    using RecordCall = std::int32_t(WINAPI*)(void* record, std::int32_t request);

    CodecLibrary();

    [[nodiscard]] HMODULE module() const { return module_; }

    std::int32_t(WINAPI* init)(void* record);
    std::int32_t(WINAPI* free)(void* record);
    RecordCall read;
    RecordCall write;
    const char*(WINAPI* getLibVersion)();
    const char*(WINAPI* getErrorString)(std::int32_t code);

  private:
    template <class Function>
    void find(Function& function, const char* name);

    HMODULE module_;
};

const CodecLibrary& codec();

/// Fields by their offsets.
enum class RecordField {
    DIBBytes = 4,
    DIBWidth = 8,
    DIBHeight = 12,
    DIBPadBytes = 16,
    JPGFile = 32,
    JPGBytes = 36,
    JPGSizeBytes = 40,
    JPGWidth = 44,
    JPGHeight = 48,
    JPGChannels = 52,
    jquality = 80,
};

/// 20084 bytes that the library has initialised.
class Record {
  public:
    Record();
    /// Describes pixels, and a JPEG of the same size and quality 90.
    explicit Record(vrx::test::HostPixels& pixels);

    [[nodiscard]] std::int32_t* data() { return fields_.data(); }
    std::int32_t& operator[](RecordField field) { return fields_[static_cast<std::size_t>(field) / 4]; }

    void setAddress(RecordField field, const void* address);
    void setFile(const std::string& name) { setAddress(RecordField::JPGFile, name.c_str()); }
    void setMemory(FileBytes& bytes);

  private:
    std::array<std::int32_t, 20084 / 4> fields_{};
};

/// A path in the system's 8-bit code page.
std::string ansi(const std::wstring& path);

}  // namespace host
