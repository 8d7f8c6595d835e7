// ijl10.dll beside the test program, and its record by offsets, as a host of any language has them.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <string>

#include "picture.h"
#include "record_offsets.h"
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

using vrx::test::RecordField;

/// A record that the library has initialised.
class Record {
  public:
    Record();
    /// Describes pixels, and a JPEG of the same size and quality 90.
    explicit Record(vrx::test::HostPixels& pixels);

    [[nodiscard]] std::int32_t* data() { return words_.data(); }
    std::int32_t& operator[](RecordField field) { return words_[vrx::test::wordOf(field)]; }

    void setAddress(RecordField field, const void* address);
    void setFile(const std::string& name) { setAddress(RecordField::JPGFile, name.c_str()); }
    void setMemory(FileBytes& bytes);

  private:
    alignas(void*) std::array<std::int32_t, vrx::test::kRecordSize / 4> words_{};
};

/// A path in the system's 8-bit code page.
std::string ansi(const std::wstring& path);

}  // namespace host
