// LZO wants to be started once before it is used. Core::init starts it; the pack code asks
// again, so that it also works for callers that never ran Core::init.
#pragma once

#include <lzo/lzo1x.h>

namespace Core::Detail {

inline bool lzo_started() {
    static const bool started = lzo_init() == LZO_E_OK;
    return started;
}

}  // namespace Core::Detail
