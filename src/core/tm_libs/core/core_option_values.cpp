#include "core_option_values.h"

#include <boost/program_options/errors.hpp>
#include <boost/program_options/value_semantic.hpp>

#include "core_log.h"

namespace Core::Detail {
namespace {

// The one token of a list element, cut at its first run of white space.
std::pair<std::string, std::string> split_pair(const std::vector<std::string>& tokens) {
    namespace po = boost::program_options;
    const std::string& token = po::validators::get_single_string(tokens);
    const size_t gap = token.find_first_of(" \t");
    if (gap == std::string::npos) return {token, std::string()};
    const size_t rest = token.find_first_not_of(" \t", gap);
    return {token.substr(0, gap), rest == std::string::npos ? std::string() : token.substr(rest)};
}

}  // namespace

void validate(boost::any& value, const std::vector<std::string>& tokens, LogLevelOption*, int) {
    const auto [name, level] = split_pair(tokens);
    value = LogLevelOption{name, level_from_text(level)};
}

void validate(boost::any& value, const std::vector<std::string>& tokens, LogOutputOption*, int) {
    const auto [name, file] = split_pair(tokens);
    value = LogOutputOption{name, file};
}

void validate(boost::any& value, const std::vector<std::string>& tokens, LogDbgWndOption*, int) {
    const auto [name, level] = split_pair(tokens);
    value = LogDbgWndOption{name, level_from_text(level)};
}

std::string to_text(const LogLevelOption& option) {
    return option.name + " " + std::to_string(option.level);
}

std::string to_text(const LogOutputOption& option) {
    return option.name + " " + option.file;
}

std::string to_text(const LogDbgWndOption& option) {
    return option.name + " " + std::to_string(option.level);
}

}  // namespace Core::Detail
