#include "raster/raster_image.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "com/entry.h"
#include "com/module.h"
#include "com/variant_convert.h"
#include "common/clipboard.h"
#include "common/file_io.h"
#include "ground/error.h"
#include "ground/rounding.h"
#include "raster/cDIBSection.h"
#include "raster/mIntelJPEGLibrary.h"
#include "raster/picture_file.h"

namespace vrx {
namespace {

constexpr char16_t kTemporaryName[] = u"ImageTemp.bmp";
constexpr std::uint32_t kPaletteSize = 256;

static_assert(sizeof(BmpInfo) == 1064);
static_assert(sizeof(BmpInfo) == sizeof(BITMAPINFOHEADER) + kPaletteSize * sizeof(RGBQUAD));

bool hasPalette(const BmpInfo& info) {
    return info.biBitCount == 1 || info.biBitCount == 4 || info.biBitCount == 8;
}

/// Whether the record describes uncompressed rows that bits of this size hold whole.
bool describesRows(const BmpInfo& info, std::size_t bitsSize) {
    const bool words = info.biBitCount == 16 || info.biBitCount == 32;
    const bool masks = info.biCompression == BI_BITFIELDS && words;
    const bool plain = info.biCompression == BI_RGB && (hasPalette(info) || words || info.biBitCount == 24);
    if ((!plain && !masks) || info.biWidth <= 0 || info.biHeight == 0) return false;

    const std::uint64_t rowBits =
        static_cast<std::uint64_t>(info.biWidth) * static_cast<std::uint64_t>(info.biBitCount);
    const std::uint64_t stride = (rowBits + 31) / 32 * 4;
    const auto rows = static_cast<std::uint64_t>(std::llabs(info.biHeight));
    return stride <= bitsSize && rows <= bitsSize / stride;
}

/// The record as the drawing call can trust it: no field can lead it past the record or the bits. Error 481
/// for anything but uncompressed rows that the bits hold whole.
BmpInfo drawableInfo(BmpInfo info, std::size_t bitsSize) {
    if (!describesRows(info, bitsSize)) throw platformError(Platform::InvalidPicture);
    info.biSize = sizeof(BITMAPINFOHEADER);
    info.biPlanes = 1;
    info.biSizeImage = 0;
    const bool usesSome =
        hasPalette(info) && static_cast<std::uint32_t>(info.biClrUsed) <= (1U << info.biBitCount);
    if (!usesSome) info.biClrUsed = 0;
    info.biClrImportant = 0;
    return info;
}

/// What pixels without sizes are drawn as.
BitmapRows blackPixel() {
    return {1, 1, [](std::uint32_t, std::uint8_t* bgr) { std::fill_n(bgr, 3, std::uint8_t{0}); }};
}

BmpInfo infoOf(std::int32_t width, std::int32_t height) {
    BmpInfo info{};
    const BITMAPINFOHEADER header = header24(width, height);
    std::memcpy(&info, &header, sizeof header);
    return info;
}

using Encoder = std::function<void(ByteSink& file)>;

void replaceFile(const std::u16string& path, const Encoder& encode) {
    FileReplacement file(path);
    encode(file);
    file.commit();
}

/// The file to write; where none is asked for, the temporary one, of which an old one goes first.
std::u16string targetOf(const std::u16string& path) {
    if (!path.empty()) return path;
    const std::u16string own = fromWide(folderOf(modulePath()));
    std::u16string target = (takesFiles(own) ? own + u'\\' : temporaryFolder()) + kTemporaryName;
    deleteIfPossible(target);
    return target;
}

}  // namespace

void RasterImage::set(std::span<const std::uint8_t> bits, const BmpInfo& info) {
    Bytes copy(bits.size());
    if (!bits.empty()) std::memcpy(copy.data(), bits.data(), bits.size());
    bits_ = std::move(copy);
    info_ = info;
    dimX_ = static_cast<float>(info.biWidth);
    dimY_ = static_cast<float>(info.biHeight);
}

void RasterImage::load(const std::u16string& path) {
    PicturePixels loaded = loadPixels(path);
    bits_ = std::move(loaded.bits);
    info_ = infoOf(loaded.width, loaded.height);
    // What the system's own reading of pixels leaves there.
    info_.biSizeImage = static_cast<long>(bits_.size() - 1);
}

void RasterImage::clear() {
    bits_ = {};
    dimX_ = 0.0F;
    dimY_ = 0.0F;
}

std::int32_t RasterImage::dimX() const { return toInt32(dimX_); }
std::int32_t RasterImage::dimY() const { return toInt32(dimY_); }

void RasterImage::render() {
    const std::int32_t width = dimX();
    const std::int32_t rows = dimY();
    if (width < 0 || rows == INT32_MIN) throw platformError(Platform::InvalidPicture);
    const std::int32_t height = std::abs(rows);
    if (width == 0 || height == 0) return surface_.resize(width, height);
    const BmpInfo info = drawableInfo(info_, bits().size());
    surface_.resize(width, height);
    const PixelRect whole{0, 0, width, height};
    surface_.stretch(whole, whole, reinterpret_cast<const BITMAPINFO&>(info), bits_.data());
}

ComPtr<IPictureDisp> RasterImage::picture(const std::optional<PictureRectangles>& part) {
    try {
        renderPart(part);
    } catch (const Error&) {
        // What the surface shows is the answer all the same.
    }
    return lastPicture();
}

void RasterImage::renderPart(const std::optional<PictureRectangles>& part) {
    const std::int32_t width = dimX();
    const std::int32_t rows = dimY();
    if (rows == INT32_MIN) throw platformError(Platform::InvalidPicture);
    const std::int32_t height = std::abs(rows);
    BITMAPINFO info{};
    info.bmiHeader = header24(width, rows);
    const PixelRect whole{0, 0, width, height};
    // Without a rectangle the picture comes out moved up by one row, the bottom one black: hosts' pictures
    // have always looked so.
    PixelRect from = part ? part->source : PixelRect{0, -1, width, height};
    PixelRect to = part ? part->target : whole;
    // The height of an image whose rows run from the top is negative, and so is that of its whole rectangle.
    if (rows < 0 && from.height < 0 && to.height < 0 && to.height != INT32_MIN && from.height != INT32_MIN) {
        from.height = -from.height;
        to.height = -to.height;
    }
    surface_.resize(to.width, to.height);
    if (width <= 0 || height == 0 ||
        strideOf(static_cast<std::uint32_t>(width)) * static_cast<std::uint32_t>(height) > bits_.size())
        return;
    surface_.stretch(to, from, info, bits_.data());
}

std::u16string RasterImage::saveBmp(const std::u16string& path) {
    const std::u16string target = targetOf(path);
    render();
    replaceFile(target, [this](ByteSink& file) {
        encodeBmp(static_cast<std::uint32_t>(surface_.width()), static_cast<std::uint32_t>(surface_.height()),
                  surface_.bits(), file);
    });
    return target;
}

std::u16string RasterImage::saveRows(const std::u16string& path, const BitmapRows& rows) {
    const std::u16string target = targetOf(path);
    const BitmapRows drawn = rows.width == 0 || rows.height == 0 ? blackPixel() : rows;
    replaceFile(target, [&drawn](ByteSink& file) { encodeBmp(drawn, file); });
    return target;
}

void RasterImage::convertToJpg(const std::u16string& output, std::int32_t quality,
                               const std::u16string& input) {
    clearClipboard();
    const Held<std::u16string> source(input.empty() ? saveBmp({}) : input);
    const Held<cDIBSection> section;
    section->CreateFromPicture(loadPicture(*source).as<IPictureDisp>().get());
    if (SaveJPG(*section, output, quality)) return;
    throw Error{own_error::kJpegNotWritten, kClassName,
                u"Failed to save the picture: '" + *source + u"'\r\nTo the file: '" + output + u"'"};
}

}  // namespace vrx
