#include "core.h"

#include <lzo/lzo1x.h>

#include "core_io.h"
#include "core_log_options.h"
#include "core_options.h"
#include "core_settings.h"

namespace Core {

void init() {
    lzo_init();
    Detail::log_options();
    Options::instance();
    if (IOManager::get() == nullptr) new IOManager;
    declare_bug_report_options();
}

void shutdown() {
    delete IOManager::get();
}

}  // namespace Core
