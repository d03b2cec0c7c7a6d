// Named options bound to variables, gathered in one registry that parses command lines,
// environment variables, response files and option files straight into the variables.
//
// Declaring:  Core::declare("IO options", "io.file_first", Core::switch_option(&flag),
//                           "Enable file override for packs");
// Failure style: parse never throws; it answers false when a stage failed and touches the
// log "core.options". Declaring an option twice throws what Boost.Program_options throws.
#pragma once

#include <boost/function.hpp>
#include <boost/program_options.hpp>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "core_option_values.h"

namespace Core {

namespace po = boost::program_options;

// One declared option as the registry lists and writes it: a full name split at its last
// '.' into group prefix and short name.
class untyped_option_item {
public:
    explicit untyped_option_item(std::string full_name);
    virtual ~untyped_option_item() = default;

    const std::string& name() const { return name_; }
    const std::string& group_prefix() const { return group_prefix_; }
    const std::string& short_name() const { return short_name_; }

    // Writes the item when it belongs to no group. Does nothing here.
    virtual void write_without_group(std::ostream& /*stream*/) const {}
    // Writes "name = value" lines; with `show_types` "name < type > = value"; with
    // `with_group` the full name. A value with a default reads "value [default]"; no value
    // reads "#####".
    virtual void write(std::ostream& stream, bool show_types, bool with_group) const = 0;
    virtual bool has_value() const = 0;

protected:
    void write_line(std::ostream& stream, bool show_types, bool with_group, const std::string& type,
                    const std::string& value) const;

private:
    std::string name_;
    std::string group_prefix_;
    std::string short_name_;
};

template <typename T>
class typed_option_item : public untyped_option_item {
public:
    typed_option_item(std::string name, const T* variable, std::optional<std::string> default_text)
        : untyped_option_item(std::move(name)),
          variable_(variable),
          default_text_(std::move(default_text)) {}

    void write_without_group(std::ostream& stream) const override {
        if (has_value()) write(stream, false, false);
    }
    void write(std::ostream& stream, bool show_types, bool with_group) const override {
        const std::string type = OptionValue<T>::type_name();
        if (variable_ == nullptr) return write_line(stream, show_types, with_group, type, "#####");
        const std::vector<std::string> values = OptionValue<T>::texts(*variable_);
        if (values.empty()) write_line(stream, show_types, with_group, type, "#####");
        for (const std::string& value : values) {
            write_line(stream, show_types, with_group, type,
                       default_text_ ? value + " [" + *default_text_ + "]" : value);
        }
    }
    bool has_value() const override { return variable_ != nullptr; }

private:
    const T* variable_;
    std::optional<std::string> default_text_;
};

// A declaration on its way into a group: made from the variable, given a default, added.
class untyped_option {
public:
    virtual ~untyped_option() = default;
    // Puts the option into `group` (with `description` as help text when not null) and
    // answers the item that lists it.
    virtual std::shared_ptr<untyped_option_item> add(po::options_description& group,
                                                     const char* name, const char* description) = 0;
};

template <typename T>
class typed_option : public untyped_option {
public:
    // `variable` may be null for an option that only the parser reads.
    typed_option(T* variable, bool is_switch) : variable_(variable), is_switch_(is_switch) {}

    typed_option& default_value(const T& value) {
        default_ = value;
        return *this;
    }
    // Called with the value during a parse.
    typed_option& notifier(std::function<void(const T&)> function) {
        notifier_ = std::move(function);
        return *this;
    }

    std::shared_ptr<untyped_option_item> add(po::options_description& group, const char* name,
                                             const char* description) override;

private:
    po::value_semantic* semantic() const;

    T* variable_;
    bool is_switch_;
    std::optional<T> default_;
    std::function<void(const T&)> notifier_;
};

// The factory: an option bound to `variable`, which may be null.
template <typename T>
std::unique_ptr<typed_option<T>> option(T* variable) {
    return std::make_unique<typed_option<T>>(variable, false);
}
// An on/off switch: present means on.
inline std::unique_ptr<typed_option<bool>> switch_option(bool* variable) {
    return std::make_unique<typed_option<bool>>(variable, true);
}

class Options {
public:
    // The one registry, made on first use.
    static Options& instance();

    // The description of the group `name`, made on first use.
    po::options_description& group(const std::string& name);
    // Runs after every good parse, in the order of registration.
    void on_parsed(boost::function<void()> callback);

    // A command line as one string, split like a shell does; the environment's words go
    // behind it. `environment_name` and `option_file` may be null.
    bool parse(const std::string& command_line, const char* environment_name,
               const char* option_file);
    // A command line as the process got it (argv[0] is left out); the environment's words go
    // in front of it.
    bool parse(int argc, const char* const argv[], const char* environment_name,
               const char* option_file);

    // Writes every declared option as an option file; false when it cannot be written.
    bool write_file(const std::string& path) const;

    void add_item(std::shared_ptr<untyped_option_item> item);
    const po::variables_map& variables() const { return variables_; }
    // Every option of every group, flat.
    po::options_description all_options() const;

private:
    Options();
    bool parse_arguments(const std::vector<std::string>& arguments, const char* option_file);

    std::map<std::string, std::shared_ptr<po::options_description>> groups_;
    std::vector<std::string> group_order_;
    po::variables_map variables_;
    std::map<std::string, std::shared_ptr<untyped_option_item>> items_;
    std::vector<boost::function<void()>> callbacks_;
};

// The declaration chain: adds `declared` to the group `group_name` of `registry` and lists
// its item; the declaration itself is done with.
void declare(Options& registry, const std::string& group_name, const char* name,
             std::unique_ptr<untyped_option> declared, const char* description = nullptr);
// The same on the one registry.
void declare(const std::string& group_name, const char* name,
             std::unique_ptr<untyped_option> declared, const char* description = nullptr);

template <typename T>
po::value_semantic* typed_option<T>::semantic() const {
    if (is_switch_) {
        if constexpr (std::is_same_v<T, bool>) return po::bool_switch(variable_);
    }
    auto* value = po::value<T>(variable_);
    if (default_) value->default_value(*default_, OptionValue<T>::text(*default_));
    if constexpr (OptionValue<T>::is_list) value->composing();
    if (notifier_) value->notifier(notifier_);
    return value;
}

template <typename T>
std::shared_ptr<untyped_option_item> typed_option<T>::add(po::options_description& group,
                                                          const char* name,
                                                          const char* description) {
    if (description != nullptr)
        group.add_options()(name, semantic(), description);
    else
        group.add_options()(name, semantic());
    std::optional<std::string> default_text;
    if (default_) default_text = OptionValue<T>::text(*default_);
    if (is_switch_) default_text = "false";  // a switch is off unless given
    return std::make_shared<typed_option_item<T>>(name, variable_, std::move(default_text));
}

}  // namespace Core
