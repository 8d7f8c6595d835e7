// Most codes are short, and no processor can predict how short: what is done for each has as few branches as
// can be.
#include "hdr/engine/run_length_rows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <type_traits>

#include "ground/lanes.h"

namespace vrx::VRX_ROWS {
namespace {

constexpr std::size_t kMaxRun = 127;
constexpr std::size_t kMaxLiteral = 128;

std::uint8_t* writeRun(std::size_t length, std::uint8_t value, std::uint8_t* out) {
    *out++ = static_cast<std::uint8_t>(128 + length);
    *out++ = value;
    return out;
}

/// At most kMaxLiteral bytes; nothing for none.
std::uint8_t* writeLiteral(std::span<const std::uint8_t> bytes, std::uint8_t* out) {
    if (bytes.empty()) return out;
    *out++ = static_cast<std::uint8_t>(bytes.size());
    std::memcpy(out, bytes.data(), bytes.size());
    return out + bytes.size();
}

/// Two or three equal bytes. No branch goes by their number, which no processor can predict.
bool isShortRun(const std::uint8_t* bytes, std::size_t count) {
    const bool isShort = (count & ~std::size_t{1}) == 2;
    const std::size_t last = isShort ? count - 1 : 0;
    return isShort & (bytes[0] == bytes[last / 2]) & (bytes[0] == bytes[last]);
}

/// What stands before a long run, or before the end of the row: one short run, or literals. From `bytes` on,
/// `left` bytes of the plane are still to be written.
///
/// Most literals are short, and no processor can predict how short: a copy of just so many bytes is a call
/// and a branch that goes wrong. So kMaxLiteral bytes are copied, however few or none are meant, where the
/// plane has as many left, and the next code writes over the others. There is room for them: before a code
/// the output is never longer than literal chunks of the same bytes, and has room for chunks of the whole
/// plane.
std::uint8_t* writeBeforeRun(const std::uint8_t* bytes, std::size_t count, std::size_t left,
                             std::uint8_t* out) {
    const bool isRun = isShortRun(bytes, count);
    for (; count >= kMaxLiteral; count -= kMaxLiteral, left -= kMaxLiteral, bytes += kMaxLiteral) {
        *out = kMaxLiteral;
        std::memcpy(out + 1, bytes, kMaxLiteral);
        out += 1 + kMaxLiteral;
    }
    if (left < kMaxLiteral) [[unlikely]]
        return isRun ? writeRun(count, *bytes, out) : writeLiteral({bytes, count}, out);
    *out = static_cast<std::uint8_t>(isRun ? 128 + count : count);
    std::memcpy(out + 1, bytes, kMaxLiteral);
    return out + (isRun ? 2 : count + (count != 0 ? 1 : 0));
}

#if defined(VRX_LANES)

constexpr std::size_t kByteLanes = sizeof(Integers);
using LaneBits = std::conditional_t<kByteLanes == 32, std::uint32_t, std::uint16_t>;

/// One bit for each of kByteLanes bytes: whether it equals the next one.
LaneBits equalToNext(const std::uint8_t* bytes) {
    const Integers equal = VRX_LANES(cmpeq_epi8)(loadIntegers(bytes), loadIntegers(bytes + 1));
    return static_cast<LaneBits>(VRX_LANES(movemask_epi8)(equal));
}

#endif

/// One bit for each byte of a plane: whether it equals the next one. Runs are then found by their bits.
class EqualNeighbours {
  public:
    explicit EqualNeighbours(std::span<const std::uint8_t> plane) : size_(plane.size()) {
        const std::uint8_t* p = plane.data();
        std::size_t i = 0;
#if defined(VRX_LANES)
        for (; i + kByteLanes < size_; i += kByteLanes) put(i, equalToNext(p + i));
#endif
        std::memset(&bits_[i / 8], 0, (size_ - i) / 8 + 1 + sizeof(Window));
#if defined(VRX_LANES)
        if (i != 0) {
            // The last block ends with the plane; the bits of bytes before `i` are shifted out.
            const std::size_t last = size_ - 1 - kByteLanes;
            put(i, static_cast<LaneBits>(std::uint64_t{equalToNext(p + last)} >> (i - last)));
            return;
        }
#endif
        for (; i + 1 < size_; ++i)
            bits_[i / 8] |= static_cast<std::uint8_t>((p[i] == p[i + 1] ? 1 : 0) << i % 8);
    }

    struct Run {
        std::size_t begin;
        std::size_t length;
    };

    /// The next run of four equal bytes or more, 127 at most, from `from` on; at the plane's end where there
    /// is none.
    [[nodiscard]] Run nextLongRun(std::size_t from) const {
        for (std::size_t i = from; i < size_; i += kWindowBits - 2) {
            const Window window = windowAt(i);
            const Window starts = window & window >> 1 & window >> 2;
            if (starts == 0) continue;
            const auto begin = static_cast<std::size_t>(std::countr_zero(starts));
            const auto equal = static_cast<std::size_t>(std::countr_one(window >> begin));
            const bool ends = begin + equal < kWindowBits;
            return {i + begin, ends ? 1 + equal : lengthOf(i + begin)};
        }
        return {size_, 0};
    }

  private:
    using Window = std::size_t;
    static constexpr std::size_t kWindowBits = 8 * sizeof(Window) - 7;
    static_assert(std::endian::native == std::endian::little);

    template <class Bits>
    void put(std::size_t i, Bits bits) {
        std::memcpy(&bits_[i / 8], &bits, sizeof bits);
    }

    /// The bits from `i` on, of which kWindowBits are always there; those of what lies beyond the plane are
    /// 0.
    [[nodiscard]] Window windowAt(std::size_t i) const {
        Window window;
        std::memcpy(&window, &bits_[i / 8], sizeof window);
        return window >> i % 8;
    }

    /// How many bytes from `from` on equal the first of them, 127 at most.
    [[nodiscard]] std::size_t lengthOf(std::size_t from) const {
        std::size_t length = 1;
        while (length < kMaxRun) {
            const auto equal = static_cast<std::size_t>(std::countr_one(windowAt(from + length - 1)));
            length += std::min(equal, kWindowBits);
            if (equal < kWindowBits) break;
        }
        return std::min(length, kMaxRun);
    }

    std::size_t size_;
    std::array<std::uint8_t, kMaxScanlineWidth / 8 + 4 + sizeof(Window)> bits_;
};

}  // namespace

std::uint8_t* encodePlane(std::span<const std::uint8_t> plane, std::uint8_t* out) {
    const EqualNeighbours neighbours(plane);
    for (std::size_t current = 0; current < plane.size();) {
        const EqualNeighbours::Run run = neighbours.nextLongRun(current);
        out = writeBeforeRun(plane.data() + current, run.begin - current, plane.size() - current, out);
        if (run.length == 0) break;
        out = writeRun(run.length, plane[run.begin], out);
        current = run.begin + run.length;
    }
    return out;
}

}  // namespace vrx::VRX_ROWS
