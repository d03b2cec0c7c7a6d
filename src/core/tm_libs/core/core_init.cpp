#include "core.h"

#include "core_io.h"
#include "core_log_options.h"
#include "core_lzo.h"
#include "core_options.h"
#include "core_projects.h"
#include "core_settings.h"

namespace Core {

void init() {
    Detail::lzo_started();
    // The native name check comes next. Boost.Filesystem 3 checks no names at all: a path
    // takes every name the system takes, which is what the native check allowed.
    Detail::log_options();
    Options::instance();
    if (IOManager::get() == nullptr) new IOManager;
    if (Projects::get() == nullptr) new Projects;
    declare_bug_report_options();
}

void shutdown() {
    delete Projects::get();
    delete IOManager::get();
}

}  // namespace Core
