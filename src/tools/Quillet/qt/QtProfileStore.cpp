#include "QtProfileStore.h"

#include "QtText.h"
#include "shell/QuilletApp.h"

namespace {
QString Key(const std::string& section, const std::string& entry) {
    return ToQString(section) + QLatin1Char('/') + ToQString(entry);
}
}  // namespace

QtProfileStore::QtProfileStore()
    : settings_(QString::fromLatin1(CQuilletApp::kRegistryKey), QStringLiteral("quillet")) {}

std::string QtProfileStore::GetString(const std::string& section, const std::string& entry,
                                      const std::string& fallback) const {
    const QVariant value = settings_.value(Key(section, entry));
    return value.isValid() ? PathFromQString(value.toString()) : fallback;
}

void QtProfileStore::WriteString(const std::string& section, const std::string& entry,
                                 const std::string& value) {
    settings_.setValue(Key(section, entry), PathToQString(value));
}

void QtProfileStore::RemoveEntry(const std::string& section, const std::string& entry) {
    settings_.remove(Key(section, entry));
}
