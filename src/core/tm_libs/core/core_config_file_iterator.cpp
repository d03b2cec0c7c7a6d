#include "core_config_file_iterator.h"

namespace Core {
namespace po = boost::program_options;
namespace {

std::string trimmed(const std::string& text) {
    const char* blanks = " \t\r\n";
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace

core_config_file_iterator::core_config_file_iterator(const po::options_description& description,
                                                     std::istream& stream)
    : stream_(stream) {
    for (const auto& option : description.options()) {
        const std::string& name = option->long_name();
        if (name.empty()) throw po::error("long name required for config file");
        if (name.back() == '*')
            allowed_prefixes_.insert(name.substr(0, name.size() - 1));
        else
            allowed_options_.insert(name);
    }
    // In order, a prefix that overlaps another stands right before one it begins.
    for (auto next = allowed_prefixes_.begin(); next != allowed_prefixes_.end();) {
        const auto current = next++;
        if (next != allowed_prefixes_.end() && next->compare(0, current->size(), *current) == 0)
            throw po::error("bad prefixes");
    }
}

bool core_config_file_iterator::allowed(const std::string& name) const {
    if (allowed_options_.count(name) != 0) return true;
    for (const std::string& prefix : allowed_prefixes_) {
        if (name.compare(0, prefix.size(), prefix) == 0) return true;
    }
    return false;
}

bool core_config_file_iterator::get(po::option& item) {
    std::string line;
    while (std::getline(stream_, line)) {
        line = trimmed(line.substr(0, line.find('#')));
        if (line.empty()) continue;
        if (line.front() == '[' && line.back() == ']') {
            // "[]" gives the prefix "." like any other heading: only "[name.]" keeps its dot.
            section_prefix_ = line.substr(1, line.size() - 2);
            if (section_prefix_.empty() || section_prefix_.back() != '.') section_prefix_ += '.';
            continue;
        }
        const size_t equals = line.find('=');
        if (equals == std::string::npos) continue;
        const std::string name = section_prefix_ + trimmed(line.substr(0, equals));
        const std::string value = trimmed(line.substr(equals + 1));
        if (value.empty() || !allowed(name)) continue;
        item = po::option(name, {value});
        item.original_tokens = {name, value};
        return true;
    }
    return false;
}

po::parsed_options core_config_file_iterator::parse_all(
    const po::options_description& description) {
    po::parsed_options parsed(&description);
    po::option item;
    while (get(item))
        parsed.options.push_back(item);
    return parsed;
}

}  // namespace Core
