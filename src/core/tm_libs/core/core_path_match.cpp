#include "core_path_match.h"

namespace Core {
namespace {

bool is_star(char c, bool star_crosses_slash) {
    return c == '<' || (c == '*' && star_crosses_slash);
}

// Stage one: the directory part of the pattern against the start of the name. On success
// `name_at` is where the name's last component must begin.
bool match_directories(std::string_view pattern, std::string_view name, size_t& name_at) {
    size_t p = 0;
    size_t n = 0;
    size_t star_p = std::string_view::npos;
    size_t star_n = 0;
    while (p < pattern.size()) {
        const char c = pattern[p];
        if (c == '*') {
            star_p = ++p;
            star_n = n;
            continue;
        }
        const bool matched = n < name.size() && ((c == '/' || c == '\\') ? name[n] == '/'
                                                 : c == '?'              ? name[n] != '/'
                                                                         : name[n] == c);
        if (matched) {
            ++p;
            ++n;
            continue;
        }
        // Back to the remembered star, which takes one more character, never a '/'.
        if (star_p == std::string_view::npos || star_n >= name.size() || name[star_n] == '/')
            return false;
        p = star_p;
        n = ++star_n;
    }
    name_at = n;
    return true;
}

bool ends_alternative(std::string_view pattern, size_t p) {
    return p == pattern.size() || pattern[p] == ';';
}

// Whether the pattern at `p` may end here: the end, a ';', or a star followed by nothing,
// by ';', or by '.' and then nothing or ';'; and ".*", so that "abc.*" matches "abc".
bool at_alternative_end(std::string_view pattern, size_t p) {
    if (ends_alternative(pattern, p)) return true;
    const auto star_at = [&](size_t at) {
        return at < pattern.size() && (pattern[at] == '*' || pattern[at] == '<');
    };
    if (pattern[p] == '.' && star_at(p + 1)) return ends_alternative(pattern, p + 2);
    if (!star_at(p)) return false;
    ++p;
    if (ends_alternative(pattern, p)) return true;
    return pattern[p] == '.' && ends_alternative(pattern, p + 1);
}

bool match_alternative(std::string_view pattern, size_t p, std::string_view name,
                       bool star_crosses_slash) {
    size_t n = 0;
    size_t star_p = std::string_view::npos;
    size_t star_n = 0;
    bool star_crosses = false;
    for (;;) {
        if (n == name.size()) return at_alternative_end(pattern, p);
        const char c = p < pattern.size() ? pattern[p] : ';';
        if (c == '*' || c == '<') {
            star_crosses = is_star(c, star_crosses_slash);
            star_p = ++p;
            star_n = n;
            continue;
        }
        const bool matched = c != ';' && (c == '?' ? name[n] != '/' : name[n] == c);
        if (matched) {
            ++p;
            ++n;
            continue;
        }
        if (star_p == std::string_view::npos || (name[star_n] == '/' && !star_crosses))
            return false;
        p = star_p;
        n = ++star_n;
    }
}

}  // namespace

std::string fold_path(std::string_view path) {
    std::string folded(path);
    for (char& c : folded)
        c = fold_char(c);
    return folded;
}

bool match(std::string_view pattern, std::string_view name, bool star_crosses_slash) {
    const size_t slash = pattern.rfind('/');
    size_t name_at = 0;
    if (slash == std::string_view::npos) {
        // A pattern without folders judges the name's last component alone.
        const size_t name_slash = name.rfind('/');
        if (name_slash != std::string_view::npos) name_at = name_slash + 1;
    } else if (!match_directories(pattern.substr(0, slash + 1), name, name_at)) {
        return false;
    }
    const std::string_view alternatives =
        slash == std::string_view::npos ? pattern : pattern.substr(slash + 1);
    const std::string_view component = name.substr(name_at);
    for (size_t start = 0;;) {
        if (match_alternative(alternatives, start, component, star_crosses_slash)) return true;
        const size_t next = alternatives.find(';', start);
        if (next == std::string_view::npos) return false;
        start = next + 1;
    }
}

}  // namespace Core
