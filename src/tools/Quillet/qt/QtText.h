// Text across the Qt boundary. Project text is 8-bit bytes shown and typed as Latin-1;
// file paths are the file system's bytes.
#pragma once

#include <QString>
#include <string>

QString ToQString(const std::string& text);
// Characters beyond Latin-1 become '?'.
std::string FromQString(const QString& text);

QString PathToQString(const std::string& path);
std::string PathFromQString(const QString& path);
