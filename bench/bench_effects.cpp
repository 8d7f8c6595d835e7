// Speed of the effects and of resampling, in nanoseconds per pixel of the result on one thread, beside OpenCV
// where it is installed.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "benchmarks.h"
#include "effects/engine/grey.h"
#include "effects/engine/smoothing.h"
#include "raster/engine/noise.h"
#include "raster/engine/pixel_rows.h"
#include "raster/engine/resample.h"
#include "report.h"

#ifdef VRX_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace vrx::bench {
namespace {

using Pixels = std::vector<std::uint8_t>;

Pixels makePixels(std::int32_t width, std::int32_t height) {
    return Pixels(rowStride(width) * static_cast<std::size_t>(height));
}

/// Smooth light with sensor noise, twice as wide as high.
Pixels photograph(std::int32_t width) {
    std::mt19937 random(12345);
    std::normal_distribution<double> noise(0.0, 4.0);
    Pixels pixels = makePixels(width, width / 2);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const double x = static_cast<double>(i % rowStride(width)) / static_cast<double>(rowStride(width));
        const double y = static_cast<double>(i) / static_cast<double>(pixels.size());
        const double light = 128.0 + 90.0 * std::sin(30.0 * x) * std::cos(20.0 * y) + noise(random);
        pixels[i] = static_cast<std::uint8_t>(std::clamp(light, 0.0, 255.0));
    }
    return pixels;
}

std::int32_t widthOf(const benchmark::State& state) { return static_cast<std::int32_t>(state.range(0)); }

void reportPerPixel(benchmark::State& state, std::int32_t width, std::int32_t height) {
    const double pixels = static_cast<double>(width) * height;
    const std::string picture = "photograph " + std::to_string(widthOf(state)) + " wide";
    state.counters[picture] = benchmark::Counter(
        pixels / 1e9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// `action(pixels, width, height)` on a fresh copy each time. Its own clock, as the library's would count the
/// switching off and on as well: it looks at the thread's time, which takes long on Windows.
template <class Action>
void inPlace(benchmark::State& state, Action action) {
    using Clock = std::chrono::steady_clock;
    const std::int32_t width = widthOf(state);
    const Pixels original = photograph(width);
    Pixels pixels = original;
    for (auto _ : state) {
        std::copy(original.begin(), original.end(), pixels.begin());
        const Clock::time_point start = Clock::now();
        action(pixels, width, width / 2);
        benchmark::DoNotOptimize(pixels.data());
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    }
    reportPerPixel(state, width, width / 2);
}

void blurPixels(benchmark::State& state) { inPlace(state, blur); }

void medianCutPixels(benchmark::State& state) { inPlace(state, medianCut); }

void greyPixels(benchmark::State& state) {
    inPlace(state, [](Pixels& pixels, std::int32_t width, std::int32_t height) {
        convertToGrey(pixels, width, height, {});
    });
}

void noisePixels(benchmark::State& state) {
    inPlace(state, [](Pixels& pixels, std::int32_t width, std::int32_t height) {
        randomisePixels(pixels, width, height, false, 1.0F);
    });
}

void resamplePixels(benchmark::State& state, double factor) {
    const std::int32_t width = widthOf(state);
    const Pixels source = photograph(width);
    const auto targetWidth = static_cast<std::int32_t>(width * factor);
    const auto targetHeight = static_cast<std::int32_t>(width / 2 * factor);
    Pixels target = makePixels(targetWidth, targetHeight);
    for (auto _ : state) {
        resample({source, width, width / 2}, {target, targetWidth, targetHeight});
        benchmark::DoNotOptimize(target.data());
    }
    reportPerPixel(state, targetWidth, targetHeight);
}

void resampleToHalf(benchmark::State& state) { resamplePixels(state, 0.5); }
void resampleToDouble(benchmark::State& state) { resamplePixels(state, 2.0); }

#ifdef VRX_BENCH_OPENCV

cv::Mat matrixOf(Pixels& pixels, std::int32_t width) {
    return {width / 2, width, CV_8UC3, pixels.data(), rowStride(width)};
}

/// The same weights; OpenCV rounds halves up and blurs to the edges.
void opencvGaussianBlur(benchmark::State& state) {
    cv::setNumThreads(1);
    const std::int32_t width = widthOf(state);
    Pixels pixels = photograph(width);
    const cv::Mat source = matrixOf(pixels, width);
    cv::Mat target;
    for (auto _ : state) cv::GaussianBlur(source, target, cv::Size(3, 3), 0);
    reportPerPixel(state, width, width / 2);
}

/// Averages that hold back where the neighbours differ, as the smoothing does.
void opencvBilateral(benchmark::State& state) {
    cv::setNumThreads(1);
    const std::int32_t width = widthOf(state);
    Pixels pixels = photograph(width);
    const cv::Mat source = matrixOf(pixels, width);
    cv::Mat target;
    for (auto _ : state) cv::bilateralFilter(source, target, 3, 20, 20);
    reportPerPixel(state, width, width / 2);
}

/// Pixel centres in place of corners, and weights of 11 bits. Exactly half the size would be a mean of four
/// pixels, which OpenCV has a short cut for.
void opencvResize(benchmark::State& state, double factor) {
    cv::setNumThreads(1);
    const std::int32_t width = widthOf(state);
    Pixels pixels = photograph(width);
    const cv::Mat source = matrixOf(pixels, width);
    const cv::Size size(static_cast<int>(width * factor) - 1, static_cast<int>(width / 2 * factor) - 1);
    cv::Mat target;
    for (auto _ : state) cv::resize(source, target, size, 0, 0, cv::INTER_LINEAR);
    reportPerPixel(state, size.width, size.height);
}

void opencvResizeToHalf(benchmark::State& state) { opencvResize(state, 0.5); }
void opencvResizeToDouble(benchmark::State& state) { opencvResize(state, 2.0); }

#endif

void addSizes(const char* work, const char* library, void (*function)(benchmark::State&)) {
    add(work, library, function)->Arg(1024)->Arg(4096);
}

void addInPlace(const char* work, void (*function)(benchmark::State&)) {
    addTimed(work, "vrx", function)->Arg(1024)->Arg(4096);
}

}  // namespace

void addEffectsBenchmarks() {
    addInPlace("blur", blurPixels);
    addInPlace("variance smoothing", medianCutPixels);
    addInPlace("grey", greyPixels);
    addInPlace("noise", noisePixels);
    addSizes("resample to half", "vrx", resampleToHalf);
    addSizes("resample to double", "vrx", resampleToDouble);
#ifdef VRX_BENCH_OPENCV
    addSizes("blur", "OpenCV", opencvGaussianBlur);
    addSizes("variance smoothing", "OpenCV bilateral", opencvBilateral);
    addSizes("resample to half", "OpenCV", opencvResizeToHalf);
    addSizes("resample to double", "OpenCV", opencvResizeToDouble);
#endif
}

}  // namespace vrx::bench
