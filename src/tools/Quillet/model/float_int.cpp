#include "float_int.h"

#include <cmath>
#include <limits>

int32_t FloatToInt(float value) {
    constexpr int32_t kInvalid = std::numeric_limits<int32_t>::min();
    if (!std::isfinite(value)) return kInvalid;
    const double truncated = std::trunc(static_cast<double>(value));
    if (truncated < static_cast<double>(std::numeric_limits<int32_t>::min()) ||
        truncated > static_cast<double>(std::numeric_limits<int32_t>::max()))
        return kInvalid;
    return static_cast<int32_t>(truncated);
}
