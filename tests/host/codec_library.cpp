#include "codec_library.h"

#include <cstring>

#include "host.h"

namespace host {

CodecLibrary::CodecLibrary() : module_(LoadLibraryW((programFolder() + L"\\ijl10.dll").c_str())) {
    find(init, "ijlInit");
    find(free, "ijlFree");
    find(read, "ijlRead");
    find(write, "ijlWrite");
    find(getLibVersion, "ijlGetLibVersion");
    find(getErrorString, "ijlGetErrorString");
}

template <class Function>
void CodecLibrary::find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
}

const CodecLibrary& codec() {
    static const CodecLibrary library;
    return library;
}

Record::Record() { codec().init(data()); }

Record::Record(vrx::test::HostPixels& pixels) : Record() {
    const vrx::jpeg::PixelLayout& layout = pixels.layout;
    const auto height = static_cast<std::int32_t>(layout.height);
    setAddress(RecordField::DIBBytes, pixels.bytes.data());
    (*this)[RecordField::DIBWidth] = static_cast<std::int32_t>(layout.width);
    (*this)[RecordField::DIBHeight] = layout.bottomUp ? height : -height;
    (*this)[RecordField::DIBPadBytes] = static_cast<std::int32_t>(layout.stride - layout.rowSize());
    (*this)[RecordField::JPGWidth] = static_cast<std::int32_t>(layout.width);
    (*this)[RecordField::JPGHeight] = height;
    (*this)[RecordField::jquality] = 90;
}

void Record::setAddress(RecordField field, const void* address) {
    std::memcpy(&(*this)[field], &address, sizeof address);
}

void Record::setMemory(FileBytes& bytes) {
    setAddress(RecordField::JPGBytes, bytes.data());
    (*this)[RecordField::JPGSizeBytes] = static_cast<std::int32_t>(bytes.size());
}

std::string ansi(const std::wstring& path) {
    std::string name(path.size() * 2, '\0');
    const int size = WideCharToMultiByte(CP_ACP, 0, path.data(), static_cast<int>(path.size()), name.data(),
                                         static_cast<int>(name.size()), nullptr, nullptr);
    name.resize(static_cast<std::size_t>(size));
    return name;
}

}  // namespace host
