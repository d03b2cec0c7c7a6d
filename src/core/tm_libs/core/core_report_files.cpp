#include "core_report_files.h"

#include <fcntl.h>
#include <unistd.h>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace Core::Detail {
namespace {

// Room that init() keeps for the file name behind the folder.
constexpr size_t kPathLimit = 260;
constexpr size_t kNameRoom = 40;

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string user_name() {
    for (const char* name : {"USERNAME", "USER", "LOGNAME"}) {
        std::string user = environment(name);
        if (!user.empty()) return user;
    }
    return {};
}

std::string temporary_folder() {
    const std::string folder = environment("TMPDIR");
    return folder.empty() ? "/tmp" : folder;
}

std::string file_name(const std::string& user, bool overwrite) {
    if (overwrite) return "report-" + user;
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char name[kPathLimit];
    std::snprintf(name, sizeof name, "report-%s-%d-%02d_%02d_%02d", user.c_str(),
                  static_cast<int>(getpid()), local.tm_year % 100, local.tm_mon + 1, local.tm_mday);
    return name;
}

// base + "-N" (N of 1 or more) + extension, without allocating: this runs in crash handlers.
bool compose_name(char (&name)[PATH_MAX], const std::string& base, int number,
                  const char* extension) {
    const int length =
        number > 0 ? std::snprintf(name, sizeof name, "%s-%d%s", base.c_str(), number, extension)
                   : std::snprintf(name, sizeof name, "%s%s", base.c_str(), extension);
    return length > 0 && static_cast<size_t>(length) < sizeof name;
}

int open_file(const char (&name)[PATH_MAX], int replace_flag) {
    return ::open(name, O_WRONLY | O_CREAT | O_CLOEXEC | replace_flag, 0644);
}

}  // namespace

ReportSettings::ReportSettings() : base_name(report_base_name(nullptr, false)) {}

ReportSettings& report_settings() {
    static ReportSettings settings;
    return settings;
}

std::string report_base_name(const char* path, bool overwrite) {
    const std::string user = user_name();
    std::string folder = path != nullptr ? path : temporary_folder();
    if (folder.size() + user.size() + kNameRoom >= kPathLimit) folder = temporary_folder();
    if (folder.empty() || (folder.back() != '/' && folder.back() != '\\')) folder += '/';
    return folder + file_name(user, overwrite);
}

int dump_type_from_environment() {
    const char* text = std::getenv("COREOPS");
    if (text == nullptr) return 0;
    const long level = std::strtol(text, nullptr, 10);
    if (level > INT_MAX) return INT_MAX;
    if (level < INT_MIN) return INT_MIN;
    return static_cast<int>(level);
}

int open_report_file(const char* extension, int& number) {
    ReportSettings& settings = report_settings();
    if (settings.dump_type < 0) return -1;
    char name[PATH_MAX];
    if (number < 1 || settings.overwrite) {
        number = 0;
        if (!compose_name(name, settings.base_name, 0, extension)) return -1;
        const int descriptor = open_file(name, settings.overwrite ? O_TRUNC : O_EXCL);
        if (descriptor >= 0) return descriptor;
        settings.counter = settings.counter % 100 + 1;
        number = settings.counter;
    }
    if (!compose_name(name, settings.base_name, number, extension)) return -1;
    return open_file(name, O_TRUNC);
}

}  // namespace Core::Detail
