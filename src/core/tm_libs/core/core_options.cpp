#include "core_options.h"

#include <boost/format.hpp>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "core_atomic_file.h"
#include "core_config_file_iterator.h"
#include "core_log.h"
#include "core_settings.h"

namespace Core {
namespace {

// "@name" on the command line names the response file.
std::pair<std::string, std::string> response_file_token(const std::string& token) {
    if (!token.empty() && token.front() == '@') return {"response-file", token.substr(1)};
    return {};
}

// Runs one stage of a parse. Whatever leaves it is logged and makes the parse fail; the
// next stage still runs.
template <typename Stage>
void guarded(bool& good, Stage stage) {
    try {
        stage();
    } catch (const std::exception& failure) {
        CORE_LOG(options_log(), error)
            << boost::format("option parse failed: %1%") % failure.what();
        good = false;
    } catch (...) {
        CORE_LOG(options_log(), error) << "option parse failed: unknown exception";
        good = false;
    }
}

void store_option_file(const std::string& path, const po::options_description& description,
                       po::variables_map& variables) {
    std::ifstream stream(path);
    if (!stream) {
        CORE_LOG(options_log(), warning) << boost::format("option file not found: %1%") % path;
        return;
    }
    core_config_file_iterator reader(description, stream);
    po::store(reader.parse_all(description), variables);
}

std::vector<std::string> environment_words(const char* environment_name) {
    if (environment_name == nullptr) return {};
    const char* text = std::getenv(environment_name);
    return text == nullptr ? std::vector<std::string>() : po::split_unix(text);
}

}  // namespace

untyped_option_item::untyped_option_item(std::string full_name) : name_(std::move(full_name)) {
    const size_t dot = name_.rfind('.');
    if (dot == std::string::npos) {
        short_name_ = name_;
    } else {
        group_prefix_ = name_.substr(0, dot);
        short_name_ = name_.substr(dot + 1);
    }
}

void untyped_option_item::write_line(std::ostream& stream, bool show_types, bool with_group,
                                     const std::string& type, const std::string& value) const {
    stream << (with_group ? name_ : short_name_);
    if (show_types)
        stream << " < " << type << " > = ";
    else
        stream << " = ";
    stream << value << '\n';
}

Options& Options::instance() {
    static Options options;
    return options;
}

// The registry exists before main, with the options that are declared before anything runs.
[[maybe_unused]] const bool options_exist_before_main = (Options::instance(), true);

Options::Options() {
    declare(*this, "Init file option", "response-file", option<std::string>(nullptr),
            "can be specified with '@name', too");
    declare_startup_options(*this);
}

po::options_description& Options::group(const std::string& name) {
    auto& group = groups_[name];
    if (!group) {
        group = std::make_shared<po::options_description>(name);
        group_order_.push_back(name);
    }
    return *group;
}

void Options::on_parsed(boost::function<void()> callback) {
    callbacks_.push_back(std::move(callback));
}

void Options::add_item(std::shared_ptr<untyped_option_item> item) {
    items_[item->name()] = std::move(item);
}

po::options_description Options::all_options() const {
    po::options_description all;
    for (const std::string& name : group_order_)
        all.add(*groups_.at(name));
    return all;
}

bool Options::parse(const std::string& command_line, const char* environment_name,
                    const char* option_file) {
    std::vector<std::string> arguments = po::split_unix(command_line);
    const std::vector<std::string> environment = environment_words(environment_name);
    arguments.insert(arguments.end(), environment.begin(), environment.end());
    return parse_arguments(arguments, option_file);
}

bool Options::parse(int argc, const char* const argv[], const char* environment_name,
                    const char* option_file) {
    std::vector<std::string> arguments = environment_words(environment_name);
    for (int index = 1; index < argc; ++index)
        arguments.emplace_back(argv[index]);
    return parse_arguments(arguments, option_file);
}

bool Options::parse_arguments(const std::vector<std::string>& arguments, const char* option_file) {
    const po::options_description description = all_options();
    bool good = true;
    guarded(good, [&] {
        po::store(po::command_line_parser(arguments)
                      .options(description)
                      .extra_parser(response_file_token)
                      .run(),
                  variables_);
    });
    guarded(good, [&] {
        if (variables_.count("response-file") == 0) return;
        std::ifstream stream(variables_["response-file"].as<std::string>());
        if (!stream) return;
        core_config_file_iterator reader(description, stream);
        po::store(reader.parse_all(description), variables_);
    });
    guarded(good, [&] {
        if (option_file != nullptr && option_file[0] != '\0')
            store_option_file(option_file, description, variables_);
    });
    guarded(good, [&] { po::notify(variables_); });
    if (good) {
        for (const auto& callback : callbacks_)
            callback();
    }
    return good;
}

bool Options::write_file(const std::string& path) const {
    std::ostringstream text;
    std::map<std::string, std::vector<const untyped_option_item*>> grouped;
    for (const auto& [name, item] : items_) {
        if (item->group_prefix().empty())
            item->write_without_group(text);
        else if (item->has_value())
            grouped[item->group_prefix()].push_back(item.get());
    }
    text << '\n';
    for (const auto& [group, items] : grouped) {
        text << '[' << group << "]\n";
        for (const untyped_option_item* item : items)
            item->write(text, false, false);
        text << '\n';
    }
    std::string reason;
    return write_file_atomically(path, text.str(), reason);
}

void declare(Options& registry, const std::string& group_name, const char* name,
             std::unique_ptr<untyped_option> declared, const char* description) {
    registry.add_item(declared->add(registry.group(group_name), name, description));
}

void declare(const std::string& group_name, const char* name,
             std::unique_ptr<untyped_option> declared, const char* description) {
    declare(Options::instance(), group_name, name, std::move(declared), description);
}

}  // namespace Core
