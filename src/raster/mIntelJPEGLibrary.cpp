#include "raster/mIntelJPEGLibrary.h"

#include <windows.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "com/module.h"
#include "com/variant_convert.h"
#include "com/win_resource.h"
#include "common/message_box.h"
#include "ground/decimal_text.h"
#include "ground/error.h"
#include "raster/cDIBSection.h"
#include "raster/engine/jpeg_core_properties.h"

namespace vrx {
namespace {

constexpr wchar_t kLibraryName[] = L"ijl10.dll";
constexpr std::int32_t kOk = 0;

std::wstring systemFolder() {
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
    return folder;
}

/// Only full paths are tried, so that no other folder can slip a library in.
Module loadLibrary() {
    for (const std::wstring& folder : {folderOf(modulePath()), systemFolder()}) {
        const std::wstring path = folder + L'\\' + kLibraryName;
        Module library(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
        if (library) return library;
    }
    Error missing = platformError(Platform::FileNotFound);
    missing.description += u": ijl10.dll";
    throw missing;
}

/// The functions of the codec library.
class CodecLibrary {
  public:
    CodecLibrary() : library_(loadLibrary()) {
        find(init, "ijlInit");
        find(free, "ijlFree");
        find(read, "ijlRead");
        find(write, "ijlWrite");
        find(getLibVersion, "ijlGetLibVersion");
        find(getErrorString, "ijlGetErrorString");
    }

    std::int32_t(WINAPI* init)(JpegCoreProperties* record);
    std::int32_t(WINAPI* free)(JpegCoreProperties* record);
    std::int32_t(WINAPI* read)(JpegCoreProperties* record, JpegRequest request);
    std::int32_t(WINAPI* write)(JpegCoreProperties* record, JpegRequest request);
    const void*(WINAPI* getLibVersion)();
    const char*(WINAPI* getErrorString)(std::int32_t code);

  private:
    template <class Function>
    void find(Function& function, const char* name) {
        function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library_.get(), name)));
        if (function) return;
        const std::string_view text = name;
        Error missing = platformError(Platform::NoEntryPoint);
        missing.description += u' ' + std::u16string(text.begin(), text.end()) + u" in ijl10.dll";
        throw missing;
    }

    Module library_;
};

/// The codec stays loaded from its first use on: to load it takes longer than to write a small picture. Never
/// destroyed: a library must not let another one go while the system unloads it.
struct HeldCodec {
    std::mutex guard;
    std::shared_ptr<const CodecLibrary> library;
};

HeldCodec& heldCodec() {
    static auto* const held = new HeldCodec;
    return *held;
}

std::shared_ptr<const CodecLibrary> useCodec() {
    HeldCodec& held = heldCodec();
    const std::lock_guard lock(held.guard);
    if (!held.library) held.library = std::make_shared<const CodecLibrary>();
    return held.library;
}

/// In the system's 8-bit code page, which replaces what it does not have; with a zero behind.
std::vector<char> ansiName(const std::u16string& name) {
    // It would cut the name short, and mean another file.
    if (name.find(u'\0') != std::u16string::npos) throw platformError(Platform::BadFileName);
    const wchar_t* const wide = asWide(name.c_str());
    const int length = static_cast<int>(name.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, wide, length, nullptr, 0, nullptr, nullptr);
    std::vector<char> bytes(static_cast<std::size_t>(size) + 1);
    WideCharToMultiByte(CP_ACP, 0, wide, length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

Address addressOf(const void* memory) { return reinterpret_cast<Address>(memory); }

void fill(JpegCoreProperties& record, const cDIBSection& dib, std::int32_t padding,
          const std::vector<char>& fileName, std::int32_t quality) {
    record.DIBBytes = addressOf(dib.DIBSectionBitsPtr());
    record.DIBWidth = dib.Width();
    record.DIBHeight = dib.Height();
    record.DIBPadBytes = padding;
    record.JPGFile = addressOf(fileName.data());
    record.JPGWidth = dib.Width();
    record.JPGHeight = dib.Height();
    record.jquality = quality;
}

}  // namespace

void releaseCodec() noexcept {
    HeldCodec& held = heldCodec();
    const std::lock_guard lock(held.guard);
    held.library.reset();
}

namespace {

/// What the user is told; empty when the file is written.
std::u16string failureOfWriting(const cDIBSection& dib, const std::u16string& fileName,
                                std::int32_t quality) {
    const std::shared_ptr<const CodecLibrary> codec = useCodec();
    const std::int32_t padding = dib.BytesPerScanLine() - dib.Width() * 3;
    const std::vector<char> name = ansiName(fileName);
    JpegCoreProperties record{};
    const std::int32_t ready = codec->init(&record);
    if (ready != kOk) return u"Failed to initialise the IJL library: " + decimalText(ready);
    fill(record, dib, padding, name, quality);
    const bool written = codec->write(&record, JpegRequest::WriteWholeImageToFile) == kOk;
    codec->free(&record);
    return written ? std::u16string() : kSaveJpgFailure;
}

}  // namespace

bool SaveJPG(const cDIBSection& dib, const std::u16string& fileName, std::int32_t quality) {
    std::u16string failure = failureOfWriting(dib, fileName, quality);
    if (failure.empty()) return true;
    showMessage(std::move(failure), MB_ICONEXCLAMATION);
    return false;
}

}  // namespace vrx
