#include "jpeg/codec_calls.h"

#include <cstring>

#include "common/file_io.h"
#include "jpeg/engine/decoder.h"
#include "jpeg/engine/encoder.h"
#include "jpeg/engine/record_check.h"
#include "jpeg/engine/status.h"
#include "jpeg/host_memory.h"

namespace vrx::jpeg {
namespace {

enum class Source { File, Memory };

/// The JPEG data that a record points to: a file's content, or the host's own memory.
class InputBytes {
  public:
    InputBytes(const JpegCoreProperties& record, Source source) {
        if (source == Source::File) {
            file_ = readFileAndZero(fileNameAt(record.JPGFile));
            bytes_ = file_.span().first(file_.size() - 1);
        } else {
            require(record.JPGSizeBytes > 0, Status::BadSize);
            bytes_ = readableBytes(record.JPGBytes, static_cast<std::size_t>(record.JPGSizeBytes));
        }
    }

    [[nodiscard]] std::span<const std::uint8_t> span() const { return bytes_; }

  private:
    Bytes file_;
    std::span<const std::uint8_t> bytes_;
};

JpegHeader readWholeImage(const JpegCoreProperties& record, Source source) {
    const PixelLayout layout = pixelLayoutOf(record);
    const std::span<std::uint8_t> pixels = writableBytes(record.DIBBytes, layout.size());
    const InputBytes input(record, source);
    return decode(input.span(), layout, pixels);
}

GrowingFile encodeImage(const JpegCoreProperties& record) {
    const PixelLayout layout = pixelLayoutOf(record);
    const JpegFormat format = jpegFormatOf(record);
    GrowingFile jpeg;
    encode(readableBytes(record.DIBBytes, layout.size()), layout, format, jpeg);
    return jpeg;
}

void writeToFile(const JpegCoreProperties& record) {
    const std::u16string name = fileNameAt(record.JPGFile);
    const GrowingFile jpeg = encodeImage(record);
    FileReplacement file(name);
    file.write(jpeg.span());
    file.commit();
}

void writeToMemory(JpegCoreProperties& record) {
    require(record.JPGSizeBytes > 0, Status::BadSize);
    const auto room = writableBytes(record.JPGBytes, static_cast<std::size_t>(record.JPGSizeBytes));
    const GrowingFile jpeg = encodeImage(record);
    const std::span<const std::uint8_t> bytes = jpeg.span();
    require(bytes.size() <= room.size(), Status::BufferTooSmall);
    std::memcpy(room.data(), bytes.data(), bytes.size());
    record.JPGSizeBytes = static_cast<std::int32_t>(bytes.size());
}

}  // namespace

void read(JpegCoreProperties& record, JpegRequest request) {
    switch (request) {
        case JpegRequest::ReadParametersFromFile:
            return store(readHeader(InputBytes(record, Source::File).span()), record);
        case JpegRequest::ReadParametersFromMemory:
            return store(readHeader(InputBytes(record, Source::Memory).span()), record);
        case JpegRequest::ReadWholeImageFromFile:
            return store(readWholeImage(record, Source::File), record);
        case JpegRequest::ReadWholeImageFromMemory:
            return store(readWholeImage(record, Source::Memory), record);
        default:
            throw Failure{Status::BadRequest};
    }
}

void write(JpegCoreProperties& record, JpegRequest request) {
    switch (request) {
        case JpegRequest::WriteWholeImageToFile:
            return writeToFile(record);
        case JpegRequest::WriteWholeImageToMemory:
            return writeToMemory(record);
        default:
            throw Failure{Status::BadRequest};
    }
}

}  // namespace vrx::jpeg
