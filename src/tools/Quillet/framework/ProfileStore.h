// The program's stored settings: named strings in named sections.
// The Qt layer keeps them in QSettings; tests and the command line keep them in memory.
#pragma once

#include <map>
#include <string>
#include <utility>

namespace framework {

class ProfileStore {
public:
    virtual ~ProfileStore() = default;
    // The stored text, or `fallback` when there is none.
    virtual std::string GetString(const std::string& section, const std::string& entry,
                                  const std::string& fallback) const = 0;
    virtual void WriteString(const std::string& section, const std::string& entry,
                             const std::string& value) = 0;
    virtual void RemoveEntry(const std::string& section, const std::string& entry) = 0;
    // Puts what was written where the next run of the program finds it.
    virtual void Flush() {}
};

class MemoryProfileStore : public ProfileStore {
public:
    std::string GetString(const std::string& section, const std::string& entry,
                          const std::string& fallback) const override;
    void WriteString(const std::string& section, const std::string& entry,
                     const std::string& value) override;
    void RemoveEntry(const std::string& section, const std::string& entry) override;

private:
    std::map<std::pair<std::string, std::string>, std::string> values_;
};

}  // namespace framework
