#include "jpeg/engine/encoder.h"

#include <algorithm>
#include <array>

#include "jpeg/engine/error_trap.h"
#include "jpeg/engine/library_color.h"

namespace vrx::jpeg {
namespace {

constexpr std::size_t kFirstRoom = 1U << 16;
constexpr std::uint32_t kRowsAtOnce = 16;

/// Lets the library write into a growing file.
class Destination : public jpeg_destination_mgr {
  public:
    explicit Destination(GrowingFile& file) : jpeg_destination_mgr(), file_(file) {
        init_destination = begin;
        empty_output_buffer = growFile;
        term_destination = end;
    }

  private:
    static Destination& of(j_compress_ptr codec) { return *static_cast<Destination*>(codec->dest); }

    void continueAt(std::size_t position) {
        const std::span<std::uint8_t> rest = file_.room().subspan(position);
        next_output_byte = rest.data();
        free_in_buffer = rest.size();
    }

    static void begin(j_compress_ptr codec) { of(codec).continueAt(0); }

    /// The library calls this when all the room is used, whatever its counters say.
    static boolean growFile(j_compress_ptr codec) {
        Destination& self = of(codec);
        const std::size_t position = self.file_.room().size();
        if (!self.file_.grow()) ErrorTrap::leave(codec, Status::OutOfMemory);
        self.continueAt(position);
        return TRUE;
    }

    static void end(j_compress_ptr codec) {
        Destination& self = of(codec);
        self.file_.setSize(self.file_.room().size() - self.free_in_buffer);
    }

    GrowingFile& file_;
};

class Compressor {
  public:
    explicit Compressor(GrowingFile& file) : destination_(file) { codec_.err = &trap_; }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;
    ~Compressor() { jpeg_destroy_compress(&codec_); }

    void run(const std::uint8_t* pixels, const PixelLayout& layout, const JpegFormat& format) {
        trap_.guard([&] {
            jpeg_create_compress(&codec_);
            codec_.dest = &destination_;
            configure(layout, format);
            jpeg_start_compress(&codec_, TRUE);
            writeRows(pixels, layout);
            jpeg_finish_compress(&codec_);
        });
    }

  private:
    void configure(const PixelLayout& layout, const JpegFormat& format) {
        codec_.image_width = layout.width;
        codec_.image_height = layout.height;
        codec_.input_components = channelsOf(layout.color);
        codec_.in_color_space = libraryColorOf(layout.color);
        jpeg_set_defaults(&codec_);
        jpeg_set_colorspace(&codec_, libraryColorOf(format.color));
        jpeg_set_quality(&codec_, format.quality, TRUE);
        codec_.comp_info[0].h_samp_factor = format.subsampling == Subsampling::None ? 1 : 2;
        codec_.comp_info[0].v_samp_factor = format.subsampling == Subsampling::TwoByTwo ? 2 : 1;
        if (format.color == Color::Grey) {
            codec_.comp_info[0].h_samp_factor = 1;
            codec_.comp_info[0].v_samp_factor = 1;
        }
    }

    void writeRows(const std::uint8_t* pixels, const PixelLayout& layout) {
        std::array<JSAMPROW, kRowsAtOnce> rows;
        while (codec_.next_scanline < layout.height) {
            const std::uint32_t count = std::min(kRowsAtOnce, layout.height - codec_.next_scanline);
            for (std::uint32_t i = 0; i < count; ++i) {
                // The library takes rows to read from as writable ones.
                rows[i] = const_cast<JSAMPROW>(pixels + layout.rowOffset(codec_.next_scanline + i));
            }
            jpeg_write_scanlines(&codec_, rows.data(), count);
        }
    }

    ErrorTrap trap_;
    Destination destination_;
    jpeg_compress_struct codec_{};
};

}  // namespace

bool GrowingFile::grow() {
    const std::size_t capacity = capacity_ == 0 ? kFirstRoom : capacity_ * 2;
    if (capacity < capacity_) return false;
    auto* const bytes = static_cast<std::uint8_t*>(std::realloc(bytes_.get(), capacity));
    if (bytes == nullptr) return false;
    (void)bytes_.release();
    bytes_.reset(bytes);
    capacity_ = capacity;
    return true;
}

void encode(std::span<const std::uint8_t> pixels, const PixelLayout& layout, const JpegFormat& format,
            GrowingFile& file) {
    require(pixels.size() >= layout.size(), Status::BadSize);
    file = {};
    require(file.grow(), Status::OutOfMemory);
    Compressor(file).run(pixels.data(), layout, format);
}

}  // namespace vrx::jpeg
