// The benchmarks' built-in pictures: whether their codes are those of real photographs.
#include "sample_picture.h"

#include <gtest/gtest.h>

#include <vector>

#include "plane_codes.h"

namespace vrx::test {
namespace {

struct Codes {
    std::vector<std::size_t> runs;
    std::vector<std::size_t> literals;

    explicit Codes(const RgbeStore& store) {
        for (std::int32_t y = 0; y < store.dimY(); ++y) {
            for (int c = 0; c < kRgbeComponents; ++c)
                add(store.row(c, y), static_cast<std::size_t>(store.dimX()));
        }
    }
    [[nodiscard]] double count() const { return static_cast<double>(runs.size() + literals.size()); }

  private:
    void add(const std::uint8_t* plane, std::size_t width) {
        const std::vector<std::uint8_t> codes = codesBy(baseline::encodePlane, {plane, width});
        for (const EncodePlane encode : planeEncoders()) EXPECT_EQ(codesBy(encode, {plane, width}), codes);
        for (std::size_t i = 0; i<codes.size(); i += codes[i]> 128 ? 2U : 1U + codes[i]) {
            if (codes[i] > 128) {
                runs.push_back(codes[i] - 128U);
            } else {
                literals.push_back(codes[i]);
            }
        }
    }
};

std::size_t medianOf(std::vector<std::size_t> lengths) {
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    return *middle;
}

TEST(SamplePicture, HasTheCodeStatisticsOfRealPhotographs) {
    for (unsigned seed = 1; seed <= 4; ++seed) {
        const Codes codes(bench::samplePicture(1024, 128, seed));
        const double perPixel = codes.count() / (1024.0 * 128.0);
        EXPECT_GE(perPixel, 0.15);
        EXPECT_LE(perPixel, 0.27);
        const double runs = static_cast<double>(codes.runs.size()) / codes.count();
        EXPECT_GE(runs, 0.55);
        EXPECT_LE(runs, 0.65);
        EXPECT_EQ(medianOf(codes.runs), 5U);
        EXPECT_GE(medianOf(codes.literals), 6U);
        EXPECT_LE(medianOf(codes.literals), 16U);
    }
}

}  // namespace
}  // namespace vrx::test
