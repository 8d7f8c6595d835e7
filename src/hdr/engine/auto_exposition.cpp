#include "hdr/engine/auto_exposition.h"

#include <algorithm>
#include <limits>

#include "common/engine/error.h"
#include "hdr/engine/auto_exposition_rows.h"

namespace vrx {
namespace {

ExposureRow rowOf(const ToneTables& tables, const RgbeStore& store, std::int32_t y) {
    return {tables.allSingles(), store.row(0, y), store.row(1, y),
            store.row(2, y),     store.row(3, y), static_cast<std::size_t>(store.dimX())};
}

bool hasAvx2() {
    static const bool answer = __builtin_cpu_supports("avx2") != 0;
    return answer;
}

RowExposition operatorOf(const Exposition& exposition) {
    const double minimum = exposition.range.minimum;
    const double span = double{exposition.range.maximum} - minimum;
    switch (exposition.type) {
        case ExpositionType::Max:
            return {RowOperator::WhitePoint, 0.0, 1.0, exposition.range.whitePoint};
        case ExpositionType::MinMax:
            if (span == 0.0) throw platformError(Platform::DivisionByZero);
            return {RowOperator::Stretch, minimum, span, 0.0};
    }
    return {RowOperator::Keep, 0.0, 1.0, 0.0};
}

}  // namespace

LuminanceRange measureLuminance(const ToneTables& tables, const RgbeStore& store) {
    const auto widen = hasAvx2() ? avx2::widenLuminance : baseline::widenLuminance;
    LuminanceRange range;
    RowLuminance luminance{range.minimum, range.maximum};
    for (std::int32_t y = 0; y < store.dimY(); ++y) widen(rowOf(tables, store, y), luminance);
    // Rounding the extremes once gives the same Singles as rounding at every new extreme: rounding keeps
    // order.
    range.minimum = static_cast<float>(luminance.minimum);
    range.maximum = static_cast<float>(luminance.maximum);
    if (range.maximum == 0.0F) throw platformError(Platform::DivisionByZero);
    const double maximum = range.maximum;
    // Of a picture that is all but black it would be beyond a Single.
    constexpr double kMost = std::numeric_limits<float>::max();
    range.whitePoint = static_cast<float>(std::min(1.0 / (maximum * maximum), kMost));
    return range;
}

void paintExposedRow(const ToneTables& tables, const Exposition& exposition, const RgbeStore& store,
                     std::int32_t y, std::uint8_t* bgr) {
    const auto expose = hasAvx2() ? avx2::exposeRow : baseline::exposeRow;
    expose(rowOf(tables, store, y), operatorOf(exposition), bgr);
}

}  // namespace vrx
