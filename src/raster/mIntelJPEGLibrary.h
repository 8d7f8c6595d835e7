// Writing JPEG files through the codec library ijl10.dll.
#pragma once

#include <cstdint>
#include <string>

namespace vrx {

class cDIBSection;

/// What the user reads when a JPEG file cannot be written.
inline constexpr char16_t kSaveJpgFailure[] = u"Failed to save to JPG";

/// Writes what the section holds. True when the file was written; otherwise the user has been told by a
/// message. The library is looked for in the component's own folder, then in the system's: error 53 where it
/// is in neither, 453 where it lacks an entry point. The codec knows qualities from 1 to 100. It stays
/// loaded.
bool SaveJPG(const cDIBSection& dib, const std::u16string& fileName, std::int32_t quality);

/// Lets the codec library go, for when the component itself may be unloaded. It is loaded again at the next
/// use.
void releaseCodec() noexcept;

}  // namespace vrx
