// JPEG files that the codec itself does not write, made by the JPEG library directly.
#pragma once

#include "codec_run.h"

namespace vrx::test {

JpegFile progressiveFile(const Picture& picture);

/// An 8 x 8 picture of cyan, magenta, yellow and black.
JpegFile fourColorFile();

/// One scan for each component, the first of them again and again.
JpegFile fileOfRepeatedScans(const Picture& picture, int repetitions);

/// Puts other sizes into a file's frame header.
void setSizes(JpegFile& file, int width, int height);

}  // namespace vrx::test
