// The value types options can have, with their fixed type names and their text forms.
#pragma once

#include <boost/any.hpp>
#include <string>
#include <vector>

namespace Core {

namespace Detail {

// "<log_name> <level>": a level for the logs a mask names.
struct LogLevelOption {
    std::string name;
    unsigned level = 0;
};
// "<log_name> <file_name>": a log file for the logs a mask names.
struct LogOutputOption {
    std::string name;
    std::string file;
};
// "<log_name> <level>": debugger output from that level on.
struct LogDbgWndOption {
    std::string name;
    unsigned level = 0;
};

// Readers for Boost.Program_options: one token, the two parts separated by white space.
void validate(boost::any& value, const std::vector<std::string>& tokens, LogLevelOption*, int);
void validate(boost::any& value, const std::vector<std::string>& tokens, LogOutputOption*, int);
void validate(boost::any& value, const std::vector<std::string>& tokens, LogDbgWndOption*, int);

std::string to_text(const LogLevelOption& option);
std::string to_text(const LogOutputOption& option);
std::string to_text(const LogDbgWndOption& option);

}  // namespace Detail

template <typename T>
struct OptionValue;

template <>
struct OptionValue<bool> {
    static constexpr bool is_list = false;
    static const char* type_name() { return "bool"; }
    static std::string text(bool value) { return value ? "true" : "false"; }
    static std::vector<std::string> texts(bool value) { return {text(value)}; }
};

template <>
struct OptionValue<int> {
    static constexpr bool is_list = false;
    static const char* type_name() { return "int"; }
    static std::string text(int value) { return std::to_string(value); }
    static std::vector<std::string> texts(int value) { return {text(value)}; }
};

template <>
struct OptionValue<unsigned> {
    static constexpr bool is_list = false;
    static const char* type_name() { return "unsigned int"; }
    static std::string text(unsigned value) { return std::to_string(value); }
    static std::vector<std::string> texts(unsigned value) { return {text(value)}; }
};

template <>
struct OptionValue<std::string> {
    static constexpr bool is_list = false;
    static const char* type_name() { return "string"; }
    static std::string text(const std::string& value) { return value; }
    static std::vector<std::string> texts(const std::string& value) { return {value}; }
};

// A list is written one element a line; an empty list has nothing to write.
template <typename Element, const char* Name>
struct ListOptionValue {
    static constexpr bool is_list = true;
    static const char* type_name() { return Name; }
    static std::string text(const std::vector<Element>& values) {
        std::string joined;
        for (const Element& value : values)
            joined += (joined.empty() ? "" : ", ") + Detail::to_text(value);
        return joined;
    }
    static std::vector<std::string> texts(const std::vector<Element>& values) {
        std::vector<std::string> result;
        for (const Element& value : values)
            result.push_back(Detail::to_text(value));
        return result;
    }
};

inline constexpr char kLogLevelListName[] = "log level list";
inline constexpr char kLogOutputListName[] = "log file list";
inline constexpr char kLogDbgWndListName[] = "log debug window list";

template <>
struct OptionValue<std::vector<Detail::LogLevelOption>>
    : ListOptionValue<Detail::LogLevelOption, kLogLevelListName> {};
template <>
struct OptionValue<std::vector<Detail::LogOutputOption>>
    : ListOptionValue<Detail::LogOutputOption, kLogOutputListName> {};
template <>
struct OptionValue<std::vector<Detail::LogDbgWndOption>>
    : ListOptionValue<Detail::LogDbgWndOption, kLogDbgWndListName> {};

}  // namespace Core
