// The power function: the same result to the last bit on every processor, compiler and run-time library.
#pragma once

namespace vrx {

/// base ^ exponent for a finite base > 0 and a finite exponent; infinity on overflow. What is rounded to
/// double is off by less than 2^-90 of itself, so the result is the nearest double but for the one argument
/// in some 2^36 whose power lies so close to the middle between two. Below 2^-1022, where no tone curve
/// comes, it is rounded once more. Logarithm and exponential series in double-double arithmetic (Dekker, "A
/// floating-point technique for extending the available precision", 1971); about a microsecond a call.
[[nodiscard]] double exactPower(double base, double exponent);

}  // namespace vrx
