// The row kernels of automatic exposition. They are compiled once for every processor and once for those with
// AVX2; both do the same operations in the same order, hence give the same bits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vrx {

struct ExposureRow {
    const float* singles;  ///< 256 mantissas for each of 256 exponents
    const std::uint8_t* r;
    const std::uint8_t* g;
    const std::uint8_t* b;
    const std::uint8_t* e;
    std::size_t width;
};

struct RowLuminance {
    double minimum;
    double maximum;
};

enum class RowOperator { WhitePoint, Stretch, Keep };

struct RowExposition {
    RowOperator op;
    double minimum;     ///< of the luminance, for Stretch
    double span;        ///< maximum - minimum, for Stretch
    double whitePoint;  ///< 1 / maximum squared, for WhitePoint
};

namespace baseline {
void widenLuminance(const ExposureRow& row, RowLuminance& luminance);
void exposeRow(const ExposureRow& row, const RowExposition& exposition, std::uint8_t* bgr);
}  // namespace baseline

namespace avx2 {
void widenLuminance(const ExposureRow& row, RowLuminance& luminance);
void exposeRow(const ExposureRow& row, const RowExposition& exposition, std::uint8_t* bgr);
}  // namespace avx2

}  // namespace vrx
