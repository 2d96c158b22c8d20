#include "core/IsBlock.hpp"

namespace corvane::core {

bool isBlock(const ns::Value& value) {
    return value.isBlock();
}

} // namespace corvane::core
