// Where encoders put their bytes, block by block: a file, or memory.
#pragma once

#include <cstdint>
#include <span>

namespace vrx {

class ByteSink {
  public:
    virtual void write(std::span<const std::uint8_t> bytes) = 0;

  protected:
    ~ByteSink() = default;
};

}  // namespace vrx
