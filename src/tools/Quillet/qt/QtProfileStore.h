// The program's settings in QSettings, under the organisation "Tallowmere".
#pragma once

#include <QSettings>

#include "framework/ProfileStore.h"

class QtProfileStore : public framework::ProfileStore {
public:
    QtProfileStore();
    std::string GetString(const std::string& section, const std::string& entry,
                          const std::string& fallback) const override;
    void WriteString(const std::string& section, const std::string& entry,
                     const std::string& value) override;
    void RemoveEntry(const std::string& section, const std::string& entry) override;
    void Flush() override { settings_.sync(); }

    QSettings& Settings() { return settings_; }

private:
    mutable QSettings settings_;
};
