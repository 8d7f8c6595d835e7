#include "pattern/engine/CVrxPatternColor.h"

#include "ground/error.h"

namespace vrx {

void CVrxPatternColor::setPosition(std::int32_t position) {
    position_ = position;
    if (maxPos_ == 0) throw platformError(Platform::DivisionByZero);
    percPosition_ = static_cast<float>(static_cast<double>(position) / maxPos_);
}

}  // namespace vrx
