// Memory that a host hands over by address. It is asked of the system before it is touched: an address that
// leads nowhere must not take the host down.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "raster/engine/jpeg_core_properties.h"

namespace vrx::jpeg {

/// Fail with BadAddress where not all of the memory can be read or written.
[[nodiscard]] std::span<const std::uint8_t> readableBytes(Address address, std::size_t size);
[[nodiscard]] std::span<std::uint8_t> writableBytes(Address address, std::size_t size);

/// A zero-terminated file name of 8-bit characters; BadAddress too where it is empty or has no end.
[[nodiscard]] std::u16string fileNameAt(Address address);

}  // namespace vrx::jpeg
