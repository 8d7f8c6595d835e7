// A picture with the statistics of a photograph: smooth light over several stops, and sensor noise in every
// pixel.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

#include "hdr/engine/rgbe_store.h"

namespace vrx::bench {

inline void setPixel(RgbeStore& store, int x, int y, const float (&rgb)[3]) {
    int exponent = 0;
    const float largest = std::max({rgb[0], rgb[1], rgb[2]});
    const float scale = std::frexp(largest, &exponent) * 256.0F / largest;
    for (int c = 0; c < 3; ++c) store.row(c, y)[x] = static_cast<std::uint8_t>(rgb[c] * scale);
    store.row(3, y)[x] = static_cast<std::uint8_t>(exponent + 128);
}

inline RgbeStore noisePicture(int width, int height) {
    RgbeStore store(width, height);
    std::mt19937 random(12345);
    std::normal_distribution<float> noise(1.0F, 0.02F);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float u = static_cast<float>(x) / static_cast<float>(width);
            const float v = static_cast<float>(y) / static_cast<float>(height);
            const float light = std::exp2(4.0F * std::sin(6.0F * u) * std::cos(4.0F * v) - 1.0F);
            const float rgb[] = {light * noise(random), 0.8F * light * noise(random),
                                 0.5F * light * (1.0F + v) * noise(random)};
            setPixel(store, x, y, rgb);
        }
    }
    return store;
}

}  // namespace vrx::bench
