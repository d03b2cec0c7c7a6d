// The log manager: named logs, level rules by mask, appenders and modifiers, and the
// start-up cache. A layer of its own; Core's writers and options sit on top of it.
//
// Failure style: no operation reports an error. Appenders that throw are caught.
// Thread safety: one recursive lock guards the manager (map, rules, caches); each logger has
// a recursive lock of its own for its level, flags and lists. Appenders may log.
#pragma once

#include <atomic>
#include <boost/function.hpp>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace boost::logging {

using level_type = unsigned;

// Writes one line: log name, text, level.
using appender_function =
    boost::function<void(const std::string& log_name, const std::string& text, level_type)>;
// Changes the text of a line before the appenders see it.
using modifier_function = boost::function<void(std::string& text)>;

// True when `mask` names the log `name`: the mask is cut at each '*'; the pieces must stand
// in the name in order; an unstarred end is anchored. "*" and "" name every log.
bool mask_matches(const std::string& mask, const std::string& name);

class logger_impl {
public:
    logger_impl(std::string name, bool always_on) : name_(std::move(name)), always_on_(always_on) {}

    const std::string& name() const { return name_; }
    bool always_on() const { return always_on_; }
    level_type level() const { return level_.load(std::memory_order_relaxed); }
    // One comparison: the decision a line object makes before any text exists.
    bool passes(level_type level) const { return always_on_ || level >= this->level(); }

private:
    friend class manager;
    template <typename Function>
    struct named_entry {
        std::string name;
        Function function;
        int priority;
        unsigned rule;  // the manager's rule that put it here
    };
    template <typename Function>
    using entry_list = std::vector<named_entry<Function>>;

    std::string name_;
    bool always_on_;
    std::atomic<level_type> level_{1000};
    entry_list<appender_function> appenders_;  // by priority, then age
    entry_list<modifier_function> modifiers_;
    std::recursive_mutex lock_;
};

class manager {
public:
    static constexpr unsigned default_cache_limit = 256;

    // The program's manager, made on first use. After it is destroyed, every write is
    // dropped.
    static manager& instance();
    static bool destroyed();

    // A manager of its own, apart from the program's (tests use one to start from nothing).
    manager() = default;
    ~manager();
    manager(const manager&) = delete;
    manager& operator=(const manager&) = delete;

    // Finds or creates the log `name`. A new log takes the level and the appenders of the
    // rules whose masks match it. `always_on` only counts for a new log.
    std::shared_ptr<logger_impl> get_log(const std::string& name, bool always_on = false);

    void set_level(const std::string& mask, level_type level);
    void add_appender(const std::string& mask, const std::string& name, appender_function function,
                      int priority);
    // Takes back what add_appender(mask, name, ...) gave: the rules of exactly this mask and
    // name, and their appenders in the logs. Appenders of the same name added for other
    // masks stay.
    void remove_appender(const std::string& mask, const std::string& name);
    void add_modifier(const std::string& mask, const std::string& name, modifier_function function,
                      int priority);
    void remove_modifier(const std::string& mask, const std::string& name);

    // Sends one line of `log`: cached while caching lasts, else through the log's lists.
    void write(logger_impl& log, const std::string& text, level_type level);
    // Ends caching for good and writes every cached line, log by log in name order.
    void flush_log_cache();
    bool caching() const;

private:
    template <typename Function>
    struct mask_rule {
        std::string mask;
        std::string name;
        Function function;
        int priority;
        unsigned id;
    };
    template <typename Function>
    using rule_list = std::vector<mask_rule<Function>>;
    template <typename Function>
    using log_list = logger_impl::entry_list<Function> logger_impl::*;
    struct cached_line {
        std::string text;
        level_type level;
    };

    level_type level_for(const logger_impl& log) const;
    template <typename Function>
    void add_rule(rule_list<Function>& rules, log_list<Function> list, const std::string& mask,
                  const std::string& name, Function function, int priority);
    template <typename Function>
    void remove_rule(rule_list<Function>& rules, log_list<Function> list, const std::string& mask,
                     const std::string& name);
    template <typename Function>
    void take_rules(logger_impl& log, const rule_list<Function>& rules, log_list<Function> list);
    void write_through(logger_impl& log, std::string text, level_type level);

    mutable std::recursive_mutex lock_;
    std::map<std::string, std::shared_ptr<logger_impl>> logs_;
    std::vector<std::pair<std::string, level_type>> level_rules_;
    rule_list<appender_function> appender_rules_;
    rule_list<modifier_function> modifier_rules_;
    std::map<std::string, std::vector<cached_line>> cache_;
    bool caching_ = true;
    unsigned cache_limit_ = default_cache_limit;
    unsigned next_rule_id_ = 0;
};

}  // namespace boost::logging
