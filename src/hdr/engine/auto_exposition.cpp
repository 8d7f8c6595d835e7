#include "hdr/engine/auto_exposition.h"

#include <cmath>
#include <limits>

#include "ground/error.h"
#include "ground/processor.h"

namespace vrx {
namespace {

ExposureRow rowOf(const ToneTables& tables, const RgbeStore& store, std::int32_t y) {
    return {tables.singles(), store.row(0, y), store.row(1, y),
            store.row(2, y),     store.row(3, y), static_cast<std::size_t>(store.dimX())};
}

/// 1 / peak squared, which makes the brightest pixel white. A Single wherever it fits one; of a picture that
/// is all but black only a double holds it.
double whitePointOf(double peak) {
    const double exact = 1.0 / (peak * peak);
    const bool fits = exact <= std::numeric_limits<float>::max();
    return fits ? static_cast<double>(static_cast<float>(exact)) : exact;
}

}  // namespace

LuminanceRange measureLuminance(const ToneTables& tables, const RgbeStore& store) {
    const auto widen = hasAvx2() ? avx2::widenLuminance : baseline::widenLuminance;
    LuminanceRange range;
    RowLuminance luminance{range.minimum, range.maximum};
    for (std::int32_t y = 0; y < store.dimY(); ++y) widen(rowOf(tables, store, y), luminance);
    if (luminance.maximum == 0.0) throw platformError(Platform::DivisionByZero);
    // Rounding the extremes once gives the same Singles as rounding at every new extreme: rounding keeps
    // order.
    range.minimum = static_cast<float>(luminance.minimum);
    range.maximum = static_cast<float>(luminance.maximum);
    // Below its normal range a Single has lost digits, so that its square is not that of the luminance.
    range.whitePoint = whitePointOf(std::isnormal(range.maximum) ? range.maximum : luminance.maximum);
    return range;
}

RowExposition expositionOf(ExpositionType type, const LuminanceRange& range) {
    const double minimum = range.minimum;
    const double span = double{range.maximum} - minimum;
    switch (type) {
        case ExpositionType::Max:
            return {RowOperator::WhitePoint, 0.0, 1.0, range.whitePoint};
        case ExpositionType::MinMax:
            if (span == 0.0) throw platformError(Platform::DivisionByZero);
            return {RowOperator::Stretch, minimum, span, 0.0};
    }
    return {RowOperator::Keep, 0.0, 1.0, 0.0};
}

void paintExposedRow(const ToneTables& tables, const RowExposition& exposition, const RgbeStore& store,
                     std::int32_t y, std::uint8_t* bgr) noexcept {
    const auto expose = hasAvx2() ? avx2::exposeRow : baseline::exposeRow;
    expose(rowOf(tables, store, y), exposition, bgr);
}

}  // namespace vrx
