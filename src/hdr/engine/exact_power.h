// The power function to the last bit: the same result on every processor, compiler and run-time library.
#pragma once

namespace vrx {

/// base ^ exponent for a finite base > 0 and a finite exponent, rounded correctly to double; infinity on
/// overflow. Logarithm and exponential series in double-double arithmetic (Dekker, "A floating-point
/// technique for extending the available precision", 1971); about a microsecond a call.
[[nodiscard]] double exactPower(double base, double exponent);

}  // namespace vrx
