// From RGBE bytes to 8-bit and floating-point colour by table: a component has only 256 exponents and 256
// mantissas, so one power per pair serves the whole picture.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace vrx {

/// 2^exposure as a Single, exposure in stops. Never fails: held at the largest finite value, 0 for what is no
/// number.
[[nodiscard]] float exposureMultiplier(float exposure);

/// What is painted from the tables: a plain picture needs no Singles, which take most of the time.
enum class ToneParts { Bytes, BytesAndSingles };

class ToneTables {
  public:
    /// For every exponent E and mantissa M: v = ((M + 0.5) * 2^(E - 136) * multiplier) ^ inverseGamma in
    /// double precision, 0 ^ 0 being 1. The byte is v rounded half to even and held to 0 .. 255; the Single
    /// is v / 255, held to the largest finite Single. Error 6 where the power overflows, 5 for 0 to a
    /// negative power; the tables then stay as they were. Singles that are not asked for are undefined.
    void build(float multiplier, float inverseGamma, ToneParts parts = ToneParts::BytesAndSingles);

    /// Whether there are tables yet. They take 320 kB, which an object that paints nothing does without.
    [[nodiscard]] bool built() const { return entries_ != nullptr; }

    /// The tables, 256 mantissas to an exponent.
    [[nodiscard]] const std::uint8_t* bytes() const { return entries_->bytes.data(); }
    [[nodiscard]] const float* singles() const { return entries_->singles.data(); }

  private:
    struct Entries {
        std::array<std::uint8_t, 65536> bytes;
        std::array<float, 65536> singles;
    };

    std::unique_ptr<Entries> entries_;
};

}  // namespace vrx
