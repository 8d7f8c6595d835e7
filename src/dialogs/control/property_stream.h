// The kept properties as bytes in a stream:
//
//   4 bytes  "VrxP"
//   4 bytes  version, 1
//   2 bytes  MousePointer
//   4 bytes  how many bytes of MouseIcon follow, 0 for none
//   ...      MouseIcon as picture objects save themselves
//
// All numbers are little-endian.
#pragma once

#include <windows.h>

#include <objidl.h>

#include <cstdint>
#include <vector>

#include "dialogs/control/control_body.h"

namespace vrx {

/// Throws HresultFailure: of the picture where it cannot be saved.
[[nodiscard]] std::vector<std::uint8_t> propertyBytes(const KeptProperties& properties);
/// Throws HresultFailure: of the stream where it refuses bytes.
void writeProperties(IStream& stream, const KeptProperties& properties);

/// Throws HresultFailure: STG_E_INVALIDHEADER for bytes of another kind, STG_E_OLDDLL for a later version,
/// STG_E_READFAULT for a stream that ends too early, and the failures of the stream and of the picture.
[[nodiscard]] KeptProperties readProperties(IStream& stream);

}  // namespace vrx
