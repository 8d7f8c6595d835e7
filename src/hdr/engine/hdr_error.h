// The two errors that the HDR engine itself raises.
#pragma once

#include "ground/error.h"

namespace vrx {

/// Whatever is wrong with the content of a file that is read.
[[nodiscard]] inline Error wrongFileType() {
    return {own_error::kHdrFile, u"CVrxHDR::Import", u"File Type Wrong!"};
}

/// Whatever keeps a picture from being written.
[[nodiscard]] inline Error fileError() { return {own_error::kHdrFile, u"CVrxHDR::Export", u"File Error!"}; }

}  // namespace vrx
