// Reads an option file: "name = value" lines, "[section]" headings that prefix the names
// below them, '#' comments. Unlike Boost's own reader it skips, without a word, every line
// it cannot use: unknown names, empty values, lines without '='.
//
// Failure style: the constructor throws boost::program_options::error for a description it
// cannot serve ("bad prefixes", "long name required for config file"); reading never throws.
#pragma once

#include <boost/program_options.hpp>
#include <istream>
#include <set>
#include <string>

namespace Core {

class core_config_file_iterator {
public:
    core_config_file_iterator(const boost::program_options::options_description& description,
                              std::istream& stream);

    // The next usable item; false at the end of the stream.
    bool get(boost::program_options::option& item);
    // Every usable item of the stream, ready for boost::program_options::store.
    boost::program_options::parsed_options parse_all(
        const boost::program_options::options_description& description);

private:
    bool allowed(const std::string& name) const;

    std::set<std::string> allowed_options_;
    std::set<std::string> allowed_prefixes_;
    std::string section_prefix_;
    std::istream& stream_;
};

}  // namespace Core
