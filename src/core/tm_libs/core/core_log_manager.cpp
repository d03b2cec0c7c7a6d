#include "core_log_manager.h"

#include <algorithm>

namespace boost::logging {
namespace {

bool manager_destroyed = false;

// Keeps entries ordered by priority; equal priorities keep the order they were added in.
template <typename Entry>
void insert_by_priority(std::vector<Entry>& entries, Entry entry) {
    const auto place = std::upper_bound(
        entries.begin(), entries.end(), entry.priority,
        [](int priority, const Entry& other) { return priority < other.priority; });
    entries.insert(place, std::move(entry));
}

}  // namespace

bool mask_matches(const std::string& mask, const std::string& name) {
    if (mask.empty() || mask == "*") return true;
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t star = mask.find('*'); star != std::string::npos; star = mask.find('*', start)) {
        pieces.push_back(mask.substr(start, star - start));
        start = star + 1;
    }
    pieces.push_back(mask.substr(start));

    const bool anchored_start = mask.front() != '*';
    const bool anchored_end = mask.back() != '*';
    if (pieces.size() == 1) return mask == name;
    if (anchored_start && name.compare(0, pieces.front().size(), pieces.front()) != 0) return false;
    if (anchored_end && (name.size() < pieces.back().size() ||
                         name.compare(name.size() - pieces.back().size(), pieces.back().size(),
                                      pieces.back()) != 0))
        return false;
    // The anchored pieces are taken; the others must follow in order without overlap.
    size_t position = anchored_start ? pieces.front().size() : 0;
    const size_t end = anchored_end ? name.size() - pieces.back().size() : name.size();
    if (position > end) return false;
    const size_t first = anchored_start ? 1 : 0;
    const size_t last = anchored_end ? pieces.size() - 1 : pieces.size();
    for (size_t index = first; index < last; ++index) {
        if (pieces[index].empty()) continue;
        const size_t found = name.find(pieces[index], position);
        if (found == std::string::npos || found + pieces[index].size() > end) return false;
        position = found + pieces[index].size();
    }
    return true;
}

manager& manager::instance() {
    static manager the_manager;
    return the_manager;
}

bool manager::destroyed() {
    return manager_destroyed;
}

manager::~manager() {
    if (this == &instance()) manager_destroyed = true;
}

level_type manager::level_for(const logger_impl& log) const {
    if (log.always_on()) return 0;
    level_type level = 1000;
    for (const auto& [mask, rule_level] : level_rules_) {
        if (mask_matches(mask, log.name())) level = rule_level;
    }
    return level;
}

template <typename Function>
void manager::take_rules(logger_impl& log, const rule_list<Function>& rules,
                         log_list<Function> list) {
    for (const auto& rule : rules) {
        if (mask_matches(rule.mask, log.name()))
            insert_by_priority(log.*list, {rule.name, rule.function, rule.priority, rule.id});
    }
}

template <typename Function>
void manager::add_rule(rule_list<Function>& rules, log_list<Function> list, const std::string& mask,
                       const std::string& name, Function function, int priority) {
    std::lock_guard guard(lock_);
    const unsigned id = next_rule_id_++;
    rules.push_back({mask, name, function, priority, id});
    for (auto& [log_name, log] : logs_) {
        if (!mask_matches(mask, log_name)) continue;
        std::lock_guard log_guard(log->lock_);
        insert_by_priority((*log).*list, {name, function, priority, id});
    }
}

template <typename Function>
void manager::remove_rule(rule_list<Function>& rules, log_list<Function> list,
                          const std::string& mask, const std::string& name) {
    std::lock_guard guard(lock_);
    std::vector<unsigned> removed;
    std::erase_if(rules, [&](const auto& rule) {
        const bool match = rule.mask == mask && rule.name == name;
        if (match) removed.push_back(rule.id);
        return match;
    });
    if (removed.empty()) return;
    for (auto& [log_name, log] : logs_) {
        std::lock_guard log_guard(log->lock_);
        std::erase_if((*log).*list, [&](const auto& entry) {
            return std::find(removed.begin(), removed.end(), entry.rule) != removed.end();
        });
    }
}

std::shared_ptr<logger_impl> manager::get_log(const std::string& name, bool always_on) {
    std::lock_guard guard(lock_);
    auto& log = logs_[name];
    if (log) return log;
    log = std::make_shared<logger_impl>(name, always_on);
    log->level_ = level_for(*log);
    take_rules(*log, appender_rules_, &logger_impl::appenders_);
    take_rules(*log, modifier_rules_, &logger_impl::modifiers_);
    return log;
}

void manager::set_level(const std::string& mask, level_type level) {
    std::lock_guard guard(lock_);
    level_rules_.emplace_back(mask, level);
    for (auto& [name, log] : logs_) {
        std::lock_guard log_guard(log->lock_);
        log->level_ = level_for(*log);
    }
}

void manager::add_appender(const std::string& mask, const std::string& name,
                           appender_function function, int priority) {
    add_rule(appender_rules_, &logger_impl::appenders_, mask, name, std::move(function), priority);
}

void manager::remove_appender(const std::string& mask, const std::string& name) {
    remove_rule(appender_rules_, &logger_impl::appenders_, mask, name);
}

void manager::add_modifier(const std::string& mask, const std::string& name,
                           modifier_function function, int priority) {
    add_rule(modifier_rules_, &logger_impl::modifiers_, mask, name, std::move(function), priority);
}

void manager::remove_modifier(const std::string& mask, const std::string& name) {
    remove_rule(modifier_rules_, &logger_impl::modifiers_, mask, name);
}

bool manager::caching() const {
    std::lock_guard guard(lock_);
    return caching_;
}

void manager::write(logger_impl& log, const std::string& text, level_type level) {
    if (manager_destroyed) return;
    {
        std::lock_guard guard(lock_);
        if (caching_) {
            if (!log.passes(level)) return;
            auto& lines = cache_[log.name()];
            lines.push_back({text, level});
            if (lines.size() > cache_limit_) flush_log_cache();
            return;
        }
    }
    write_through(log, text, level);
}

void manager::write_through(logger_impl& log, std::string text, level_type level) {
    std::lock_guard log_guard(log.lock_);
    if (!log.passes(level)) return;
    try {
        for (const auto& modifier : log.modifiers_)
            modifier.function(text);
        for (const auto& appender : log.appenders_)
            appender.function(log.name(), text, level);
    } catch (...) {
        // A writer that fails must not take the program with it.
    }
}

void manager::flush_log_cache() {
    std::lock_guard guard(lock_);
    if (!caching_) return;
    caching_ = false;
    std::map<std::string, std::vector<cached_line>> cached;
    cached.swap(cache_);
    for (auto& [name, lines] : cached) {
        const std::shared_ptr<logger_impl> log = get_log(name);
        for (cached_line& line : lines)
            write_through(*log, std::move(line.text), line.level);
    }
}

}  // namespace boost::logging
