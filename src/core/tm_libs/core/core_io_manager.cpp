#include <algorithm>
#include <boost/format.hpp>
#include <cstring>
#include <fstream>
#include <ios>
#include <set>

#include "core_file_provider.h"
#include "core_io.h"
#include "core_log.h"
#include "core_pack_provider.h"
#include "core_path_match.h"
#include "core_settings.h"
#include "core_text.h"

namespace Core {
namespace {

constexpr size_t kFilterLineLimit = 1023;
constexpr size_t kMessagePathLimit = 260;

void mount_into(std::vector<std::shared_ptr<InputBufferProvider>>& providers,
                std::shared_ptr<InputBufferProvider> provider) {
    CORE_LOG(io_log(), info) << boost::format("mounting: %1%") % provider->name();
    if (io_options().file_first)
        providers.push_back(std::move(provider));
    else
        providers.insert(providers.begin(), std::move(provider));
}

std::string trimmed_filter_line(std::string line) {
    while (!line.empty() && std::strchr("\r\n \t", line.back()) != nullptr)
        line.pop_back();
    return line;
}

// `head` and `tail` as one path; an empty head adds nothing.
std::string join_path(const std::string& head, const std::string& tail) {
    if (head.empty()) return tail;
    return head.back() == '/' ? head + tail : head + "/" + tail;
}

[[noreturn]] void throw_unable_to_open(const std::string& path) {
    throw std::ios_base::failure((boost::format("Unable to open %s") % path).str());
}

}  // namespace

IOProviders::IOProviders() : file_provider(std::make_shared<FileBufferProvider>()) {
    mount_into(providers, file_provider);
}

IOManager::IOManager() : providers_(std::make_unique<IOProviders>()) {}

IOManager::~IOManager() {
    filter_rules_.clear();
    providers_.reset();
}

std::shared_ptr<InputBufferImpl> IOManager::open(const std::string& path) {
    for (const auto& provider : providers_->providers) {
        std::shared_ptr<InputBufferImpl> buffer = provider->open(path);
        if (!buffer) continue;
        CORE_LOG(io_log(), info) << boost::format("open:   found %1% (from: %2%)") % path %
                                        provider->name();
        // The buffer is opened first and judged afterwards.
        if (filtered_ && excluded(path)) {
            CORE_LOG(io_log(), warning) << boost::format("open: %1% excluded") % path;
            return {};
        }
        return buffer;
    }
    CORE_LOG(io_log(), warning) << boost::format("open: %1% is missing") % path;
    return {};
}

std::shared_ptr<InputBufferImpl> IOManager::open(const std::wstring& path) {
    const std::string narrow = narrow_text(path);
    for (const auto& provider : providers_->providers) {
        if (std::shared_ptr<InputBufferImpl> buffer = provider->open(path)) {
            CORE_LOG(io_log(), info)
                << boost::format("open:   found %1% (from: %2%)") % narrow % provider->name();
            return buffer;
        }
    }
    CORE_LOG(io_log(), warning) << boost::format("open: %1% is missing") % narrow;
    return {};
}

std::shared_ptr<InputBufferImpl> IOManager::open_or_throw(const char* path) {
    return open_or_throw(std::string(path));
}

std::shared_ptr<InputBufferImpl> IOManager::open_or_throw(const std::string& path) {
    std::shared_ptr<InputBufferImpl> buffer = open(path);
    if (!buffer) throw_unable_to_open(path);
    return buffer;
}

std::shared_ptr<InputBufferImpl> IOManager::open_or_throw(const wchar_t* path) {
    std::shared_ptr<InputBufferImpl> buffer = open(path);
    if (!buffer) throw_unable_to_open(narrow_text(path).substr(0, kMessagePathLimit));
    return buffer;
}

bool IOManager::exists(const std::string& path) {
    for (const auto& provider : providers_->providers) {
        if (!provider->exists(path)) continue;
        CORE_LOG(io_log(), info) << boost::format("exists:   found %1% (from: %2%)") % path %
                                        provider->name();
        if (filtered_ && excluded(path)) {
            CORE_LOG(io_log(), warning) << boost::format("exists: %1% excluded") % path;
            return false;
        }
        return true;
    }
    CORE_LOG(io_log(), info) << boost::format("exists: missing %1%") % path;
    return false;
}

std::vector<const char*> IOManager::find(const std::string& pattern, unsigned flags) {
    CORE_LOG(io_log(), trace) << boost::format("find: %1%") % pattern;
    const std::string folded = fold_path(pattern);
    const auto byte_order = [](const char* a, const char* b) { return std::strcmp(a, b) < 0; };
    std::set<const char*, decltype(byte_order)> merged(byte_order);
    for (const auto& provider : providers_->providers) {
        for (const char* name : provider->find(folded, flags))
            merged.insert(name);
    }
    std::vector<const char*> names;
    for (const char* name : merged) {
        if (!filtered_ || !excluded(name)) names.push_back(name);
    }
    return names;
}

bool IOManager::mount(const std::string& path) {
    IOOptions& options = io_options();
    if (!options.filtered.empty()) {
        load_filter(options.filtered);
        options.filtered.clear();
    }
    if (path.empty()) return true;
    if (file_provider().exists(path)) {
        // A pack that cannot be read is left out, and the mount still counts as done.
        auto pack = std::make_shared<PackBufferProvider>();
        if (pack->load(path.c_str())) {
            CORE_LOG(io_log(), always) << boost::format("mounted pack %s") % path;
            mount_provider(std::move(pack));
        }
        return true;
    }
    return mount_folder(path);
}

// The packs of a folder are mounted all or none: a game must not run on half its data.
bool IOManager::mount_folder(const std::string& path) {
    const std::string pattern = join_path(join_path(io_options().packs_root, path), "*.pack");
    std::vector<std::shared_ptr<PackBufferProvider>> packs;
    for (const char* name : file_provider().find(pattern, 0)) {
        auto pack = std::make_shared<PackBufferProvider>();
        if (!pack->load(name)) return false;
        CORE_LOG(io_log(), always) << boost::format("mounted pack %s") % name;
        packs.push_back(std::move(pack));
    }
    for (auto& pack : packs)
        mount_provider(std::move(pack));
    return true;
}

void IOManager::mount_provider(std::shared_ptr<InputBufferProvider> provider) {
    mount_into(providers_->providers, std::move(provider));
}

void IOManager::load_filter(const std::string& path) {
    std::ifstream stream(path);
    if (!stream) return;
    std::string line;
    while (std::getline(stream, line)) {
        // Lines are read in pieces of at most 1023 characters, each piece a rule; the line
        // end counts as a character of the last piece.
        const size_t length = line.size() + (stream.eof() ? 0 : 1);
        for (size_t start = 0; start < length; start += kFilterLineLimit) {
            const std::string rule =
                trimmed_filter_line(line.substr(std::min(start, line.size()), kFilterLineLimit));
            const bool include = !rule.empty() && rule.front() == '+';
            filter_rules_.insert(filter_rules_.begin(),
                                 {include, fold_path(rule.empty() ? rule : rule.substr(1))});
        }
    }
    filtered_ = true;
}

bool IOManager::excluded(const std::string& path) const {
    const std::string folded = fold_path(path);
    for (const FilterRule& rule : filter_rules_) {
        if (match(rule.pattern, folded, false)) return !rule.include;
    }
    return false;
}

bool IOManager::file_changed(const std::string& path) {
    return providers_->file_provider->file_changed(path);
}

void IOManager::directory_changed(const std::string& path) {
    for (const auto& provider : providers_->providers)
        provider->directory_changed(path);
}

}  // namespace Core
