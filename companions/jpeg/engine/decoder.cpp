#include "jpeg/engine/decoder.h"

#include <algorithm>
#include <array>

#include "jpeg/engine/error_trap.h"
#include "jpeg/engine/library_color.h"

namespace vrx::jpeg {
namespace {

constexpr std::uint32_t kRowsAtOnce = 16;
// A progressive picture keeps all its coefficients, and each scan goes over them again.
constexpr long kMaxLibraryMemory = 768L << 20;
constexpr int kMaxScans = 100;

/// Gives the library the bytes of a file. When it looks for a marker behind the last one, it finds the end of
/// the picture: some writers leave that out, and scans that are cut short warn of the end that comes too
/// early.
class Source : public jpeg_source_mgr {
  public:
    explicit Source(std::span<const std::uint8_t> file) : jpeg_source_mgr() {
        next_input_byte = file.data();
        bytes_in_buffer = file.size();
        init_source = nothing;
        fill_input_buffer = fill;
        skip_input_data = skip;
        resync_to_restart = jpeg_resync_to_restart;
        term_source = nothing;
    }

    [[nodiscard]] bool endIsMissing() const { return endIsMissing_; }

  private:
    static void nothing(j_decompress_ptr) {}

    static boolean fill(j_decompress_ptr codec) {
        static constexpr JOCTET kEnd[] = {0xFF, JPEG_EOI};
        // A marker is known and its segment is being read.
        if (codec->unread_marker != 0) ErrorTrap::leave(codec, Status::DamagedJpeg);
        auto* const self = static_cast<Source*>(codec->src);
        self->endIsMissing_ = true;
        self->next_input_byte = kEnd;
        self->bytes_in_buffer = sizeof kEnd;
        return TRUE;
    }

    static void skip(j_decompress_ptr codec, long count) {
        if (count <= 0) return;
        const auto skipped = static_cast<std::size_t>(count);
        if (skipped > codec->src->bytes_in_buffer) ErrorTrap::leave(codec, Status::DamagedJpeg);
        codec->src->next_input_byte += skipped;
        codec->src->bytes_in_buffer -= skipped;
    }

    bool endIsMissing_ = false;
};

class Decompressor {
  public:
    explicit Decompressor(std::span<const std::uint8_t> file) : source_(file) {
        codec_.err = &trap_;
        scanLimit_.progress_monitor = countScans;
    }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;
    ~Decompressor() { jpeg_destroy_decompress(&codec_); }

    [[nodiscard]] JpegHeader readHeader() {
        trap_.guard([&] {
            jpeg_create_decompress(&codec_);
            codec_.src = &source_;
            codec_.progress = &scanLimit_;
            codec_.mem->max_memory_to_use = kMaxLibraryMemory;
            jpeg_read_header(&codec_, TRUE);
        });
        const std::uint64_t pixels = std::uint64_t{codec_.image_width} * codec_.image_height;
        require(pixels <= kMaxPixels, Status::TooLarge);
        return {codec_.image_width, codec_.image_height, color(), subsampling()};
    }

    void readPixels(const PixelLayout& layout, std::uint8_t* pixels) {
        trap_.guard([&] {
            codec_.out_color_space = libraryColorOf(layout.color);
            jpeg_start_decompress(&codec_);
            readRows(layout, pixels);
            if (source_.endIsMissing() && !hasAllScans()) ErrorTrap::leave(&codec_, Status::DamagedJpeg);
            jpeg_finish_decompress(&codec_);
        });
    }

  private:
    static void countScans(j_common_ptr codec) {
        const auto* decompressor = reinterpret_cast<j_decompress_ptr>(codec);
        if (decompressor->input_scan_number > kMaxScans) ErrorTrap::leave(codec, Status::TooLarge);
    }

    void readRows(const PixelLayout& layout, std::uint8_t* pixels) {
        std::array<JSAMPROW, kRowsAtOnce> rows;
        while (codec_.output_scanline < layout.height) {
            const std::uint32_t count = std::min(kRowsAtOnce, layout.height - codec_.output_scanline);
            for (std::uint32_t i = 0; i < count; ++i) {
                rows[i] = pixels + layout.rowOffset(codec_.output_scanline + i);
            }
            jpeg_read_scanlines(&codec_, rows.data(), count);
        }
    }

    /// Whether nothing of the picture can have stood behind its last scan: each part has been scanned and,
    /// where scans refine each other, to the last bit.
    [[nodiscard]] bool hasAllScans() const {
        // Arithmetic codes end without a warning.
        if (codec_.arith_code != FALSE) return false;
        for (int i = 0; i < codec_.num_components; ++i) {
            // The library notes the table at the part's first scan.
            if (codec_.comp_info[i].quant_table == nullptr) return false;
            for (int k = 0; codec_.progressive_mode != FALSE && k < DCTSIZE2; ++k) {
                if (codec_.coef_bits[i][k] != 0) return false;
            }
        }
        return true;
    }

    [[nodiscard]] Color color() const {
        switch (codec_.jpeg_color_space) {
            case JCS_GRAYSCALE:
                return Color::Grey;
            case JCS_YCbCr:
                return Color::YCbCr;
            case JCS_RGB:
                return Color::Rgb;
            default:
                throw Failure{Status::UnsupportedJpeg};
        }
    }

    [[nodiscard]] Subsampling subsampling() const {
        if (codec_.num_components == 1) return Subsampling::None;
        const jpeg_component_info* parts = codec_.comp_info;
        for (int i = 1; i < codec_.num_components; ++i) {
            if (parts[i].h_samp_factor != 1 || parts[i].v_samp_factor != 1) return Subsampling::Other;
        }
        if (parts[0].h_samp_factor == 1 && parts[0].v_samp_factor == 1) return Subsampling::None;
        if (parts[0].h_samp_factor == 2 && parts[0].v_samp_factor == 2) return Subsampling::TwoByTwo;
        if (parts[0].h_samp_factor == 2 && parts[0].v_samp_factor == 1) return Subsampling::TwoByOne;
        return Subsampling::Other;
    }

    ErrorTrap trap_;
    Source source_;
    jpeg_progress_mgr scanLimit_{};
    jpeg_decompress_struct codec_{};
};

}  // namespace

JpegHeader readHeader(std::span<const std::uint8_t> file) { return Decompressor(file).readHeader(); }

JpegHeader decode(std::span<const std::uint8_t> file, const PixelLayout& layout,
                  std::span<std::uint8_t> pixels) {
    Decompressor decompressor(file);
    const JpegHeader header = decompressor.readHeader();
    require(header.width == layout.width && header.height == layout.height, Status::SizesDiffer);
    require(pixels.size() >= layout.size(), Status::BadSize);
    decompressor.readPixels(layout, pixels.data());
    return header;
}

}  // namespace vrx::jpeg
