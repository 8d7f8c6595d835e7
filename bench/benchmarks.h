// The benchmarks by subject; each of these registers its own, beside other libraries where these are
// installed.
#pragma once

namespace vrx::bench {

void addHdrBenchmarks();
void addHdrPeers();
void addEffectsBenchmarks();
void addJpegBenchmarks();
void addPatternBenchmarks();
/// Whole calls through COM, on Windows.
void addCallBenchmarks();

}  // namespace vrx::bench
