// The steps of automatic exposition in plain double arithmetic, and pictures to take them on.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "hdr/engine/auto_exposition.h"
#include "hdr/engine/rgbe_store.h"
#include "hdr/engine/tone_tables.h"

namespace vrx::test {

using Triple = std::array<double, 3>;
using Matrix = std::array<std::array<float, 3>, 3>;

inline constexpr Matrix kToXyz = {{{0.5141364F, 0.32387858F, 0.16036376F},
                                   {0.265068F, 0.67023426F, 0.06409157F},
                                   {0.0241188F, 0.1228178F, 0.84442663F}}};
inline constexpr Matrix kToRgb = {
    {{2.5651F, -1.1665F, -0.3986F}, {-1.0217F, 1.9777F, 0.0439F}, {0.0753F, -0.2543F, 1.1892F}}};

inline Triple operator*(const Matrix& m, const Triple& v) {
    Triple result{};
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = double{m[i][0]} * v[0] + double{m[i][1]} * v[1] + double{m[i][2]} * v[2];
    }
    return result;
}

/// The luminance and the chromaticities x and y.
inline Triple yxyOf(const Triple& rgb) {
    const auto [X, Y, Z] = kToXyz * rgb;
    const double W = X + Y + Z;
    if (!(W > 0.0)) return {0.0, 0.0, 0.0};
    const double inverse = 1.0 / W;
    return {Y, X * inverse, Y * inverse};
}

inline Triple rgbOf(const Triple& yxy) {
    const auto [Y, x, y] = yxy;
    double X = 0.0;
    double Z = 0.0;
    if (Y > 0.0 && x > 0.0 && y > 0.0) {
        X = x * Y / y;
        Z = X / x - X - Y;
    }
    return kToRgb * Triple{X, Y, Z};
}

inline int byteOf(double component) {
    const double v = component * 255.0;
    if (v < 0.0) return 0;
    if (v > 255.0) return 255;
    const double floor = std::floor(v);
    const double rest = v - floor;
    const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(floor, 2.0) == 1.0);
    return static_cast<int>(floor) + (up ? 1 : 0);
}

inline double exposed(double Y, ExpositionType type, const LuminanceRange& range) {
    if (type == ExpositionType::Max) return Y * (1.0 + Y * range.whitePoint) / (1.0 + Y);
    if (type == ExpositionType::MinMax) {
        return (Y - double{range.minimum}) / (double{range.maximum} - double{range.minimum});
    }
    return Y;
}

inline Triple colourAt(const ToneTables& tables, const RgbeStore& store, int x, int y) {
    const float* singles = tables.singles() + 256 * store.row(3, y)[x];
    return {singles[store.row(0, y)[x]], singles[store.row(1, y)[x]], singles[store.row(2, y)[x]]};
}

using Row = std::vector<int>;

inline Row modelRow(const ToneTables& tables, ExpositionType type, const LuminanceRange& range,
                    const RgbeStore& store, int y) {
    Row row;
    for (int x = 0; x < store.dimX(); ++x) {
        Triple yxy = yxyOf(colourAt(tables, store, x, y));
        yxy[0] = exposed(yxy[0], type, range);
        const Triple rgb = rgbOf(yxy);
        row.insert(row.end(), {byteOf(rgb[2]), byteOf(rgb[1]), byteOf(rgb[0])});
    }
    return row;
}

inline LuminanceRange modelRange(const ToneTables& tables, const RgbeStore& store) {
    LuminanceRange range;
    for (int y = 0; y < store.dimY(); ++y) {
        for (int x = 0; x < store.dimX(); ++x) {
            const double Y = yxyOf(colourAt(tables, store, x, y))[0];
            if (Y < double{range.minimum}) range.minimum = static_cast<float>(Y);
            if (Y > double{range.maximum}) range.maximum = static_cast<float>(Y);
        }
    }
    const double whitePoint = 1.0 / (double{range.maximum} * double{range.maximum});
    range.whitePoint = whitePoint > 3.40282347e38 ? whitePoint : double{static_cast<float>(whitePoint)};
    return range;
}

/// A picture of one row of pixels given as R, G, B, E.
inline RgbeStore rowOf(const std::vector<std::array<int, 4>>& pixels) {
    RgbeStore store(static_cast<int>(pixels.size()), 1);
    for (std::size_t x = 0; x < pixels.size(); ++x) {
        for (int c = 0; c < 4; ++c) {
            store.row(c, 0)[x] = static_cast<std::uint8_t>(pixels[x][static_cast<std::size_t>(c)]);
        }
    }
    return store;
}

/// R 50.5, G 200.5, B 50.5: X 98.99991, Y 151.00453, Z 68.48651. With Y scaled to 1, X is 0.655609 and Z
/// 0.453540, so R is 2.5651 X - 1.1665 - 0.3986 Z = 0.334422, G 1.327774 and B 0.334417; 255ths: 85.28, 338.6
/// and 85.28.
const std::array<int, 4> kGreenish = {50, 200, 50, 136};

/// Pictures to compare with the steps.
class StoreMaker {
  public:
    RgbeStore random(int dimX, int dimY, int lowestExponent, int highestExponent) {
        RgbeStore store(dimX, dimY);
        const auto exponents = static_cast<unsigned>(highestExponent - lowestExponent + 1);
        for (int y = 0; y < dimY; ++y) {
            for (int x = 0; x < dimX; ++x) {
                for (int c = 0; c < 3; ++c) store.row(c, y)[x] = static_cast<std::uint8_t>(random_() % 256);
                store.row(3, y)[x] =
                    static_cast<std::uint8_t>(static_cast<unsigned>(lowestExponent) + random_() % exponents);
            }
        }
        return store;
    }

    static RgbeStore plain(int dimX, int dimY, const std::array<int, 4>& pixel) {
        RgbeStore store(dimX, dimY);
        for (int y = 0; y < dimY; ++y) {
            for (int c = 0; c < 4; ++c) {
                std::fill_n(store.row(c, y), dimX,
                            static_cast<std::uint8_t>(pixel[static_cast<std::size_t>(c)]));
            }
        }
        return store;
    }

  private:
    std::mt19937 random_{99};
};

}  // namespace vrx::test
