// A sink that keeps what encoders write.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ground/byte_sink.h"

namespace vrx::test {

class MemorySink final : public ByteSink {
  public:
    std::vector<std::uint8_t> bytes;

    void write(std::span<const std::uint8_t> block) override {
        bytes.insert(bytes.end(), block.begin(), block.end());
    }
};

}  // namespace vrx::test
