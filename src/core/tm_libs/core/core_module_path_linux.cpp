#include <dlfcn.h>
#include <link.h>

#include <boost/filesystem/operations.hpp>

#include "core_paths.h"

namespace fs = boost::filesystem;

namespace Core {

fs::path module_path(const void* address) {
    if (address != nullptr) {
        Dl_info info{};
        link_map* module = nullptr;
        if (::dladdr1(address, &info, reinterpret_cast<void**>(&module), RTLD_DL_LINKMAP) == 0 ||
            module == nullptr)
            return {};
        // The loader names every library by the path it was loaded from; the program
        // itself has no name there.
        if (module->l_name[0] != '\0') return module->l_name;
    }
    boost::system::error_code error;
    fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path() : program;
}

}  // namespace Core
