// Pictures with the code statistics of real photographs.
//
// Panoramas as cameras and photo editors write them have 0.15 to 0.27 run-length codes per pixel, all four
// planes counted; 55 to 65 of 100 codes are runs, of a median of 5 bytes; literals have a median of 6 to 16
// bytes and a long tail. Smooth light with noise in every pixel has far fewer and longer codes, which
// flatters a decoder. These pictures are made from codes of those lengths: mantissas drift, and rest where a
// run is wanted; the exponent rests longer and moves by one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

#include "hdr/engine/rgbe_store.h"

namespace vrx::bench {

/// One plane's codes, drawn one after another.
class PlaneMaker {
  public:
    PlaneMaker(std::mt19937& random, bool exponents) : random_(random), exponents_(exponents) {}

    void fill(std::span<std::uint8_t> plane) {
        value_ = exponents_ ? 130 : 160;
        for (std::size_t x = 0; x < plane.size();) {
            x = putLiterals(plane, x);
            do x = putRun(plane, x);
            while (chance(0.35));
        }
    }

  private:
    bool chance(double probability) { return uniform_(random_) < probability; }

    std::size_t lengthAround(double mean) {
        return static_cast<std::size_t>(std::exponential_distribution(1.0 / mean)(random_));
    }

    std::size_t literalLength() {
        if (exponents_) return 1 + lengthAround(5.0);
        const double kind = uniform_(random_);
        if (kind < 0.5) return 1 + lengthAround(9.0);
        return kind < 0.8 ? 8 + lengthAround(26.0) : 60 + lengthAround(90.0);
    }

    std::size_t runLength() {
        const double kind = uniform_(random_);
        if (kind < (exponents_ ? 0.6 : 0.8)) return 4 + lengthAround(1.6);
        return 6 + lengthAround(exponents_ ? 34.0 : 9.0);
    }

    /// Another value close to the last one.
    void step() {
        if (exponents_) {
            value_ = value_ <= 127 ? 128 : value_ >= 134 ? 133 : value_ + (chance(0.5) ? 1 : -1);
            return;
        }
        const int distance = 1 + static_cast<int>(random_() % 5);
        value_ = value_ < 134 ? value_ + distance : value_ > 249 ? value_ - distance : drifted(distance);
    }
    int drifted(int distance) { return value_ + (chance(0.5) ? distance : -distance); }

    std::size_t putLiterals(std::span<std::uint8_t> plane, std::size_t x) {
        const std::size_t end = std::min(plane.size(), x + literalLength());
        for (; x < end; ++x) {
            // Neighbours are equal now and then, too seldom for a run.
            if (!chance(0.08)) step();
            plane[x] = static_cast<std::uint8_t>(value_);
        }
        return x;
    }

    std::size_t putRun(std::span<std::uint8_t> plane, std::size_t x) {
        const std::size_t end = std::min(plane.size(), x + runLength());
        step();
        std::fill(plane.begin() + static_cast<std::ptrdiff_t>(x),
                  plane.begin() + static_cast<std::ptrdiff_t>(end), static_cast<std::uint8_t>(value_));
        return end;
    }

    std::mt19937& random_;
    std::uniform_real_distribution<double> uniform_;
    bool exponents_;
    int value_ = 0;
};

/// The same picture for the same seed.
inline RgbeStore samplePicture(int width, int height, unsigned seed) {
    RgbeStore store(width, height);
    std::mt19937 random(seed);
    for (int y = 0; y < height; ++y) {
        for (int c = 0; c < kRgbeComponents; ++c) {
            PlaneMaker(random, c == 3).fill({store.row(c, y), static_cast<std::size_t>(width)});
        }
    }
    return store;
}

}  // namespace vrx::bench
