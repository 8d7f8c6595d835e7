// The pixels of 24-bit sections, for tests.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "com/com_ptr.h"
#include "ground/error.h"
#include "raster/cDIBSection.h"

namespace host {

/// Bytes of a row without its padding.
using Row = std::vector<std::uint8_t>;

/// Rows count from the bottom.
Row rowOf(const vrx::cDIBSection& section, int y);
std::vector<Row> rowsOf(const vrx::cDIBSection& section);
std::unique_ptr<vrx::cDIBSection> sectionOf(const std::vector<Row>& rows);

/// A picture object with a bitmap of its own.
vrx::ComPtr<IPictureDisp> pictureOf(const vrx::cDIBSection& section);

/// The number of the library's error that an action ends with; 0 for none.
template <class Action>
int errorOf(Action action) {
    try {
        action();
    } catch (const vrx::Error& error) {
        return error.number;
    }
    return 0;
}

}  // namespace host
