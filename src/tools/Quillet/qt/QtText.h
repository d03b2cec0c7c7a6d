// Text across the Qt boundary. Project text is 8-bit bytes shown as Latin-1; file paths
// are the file system's bytes. Nothing typed in the windows reaches the project yet.
#pragma once

#include <QString>
#include <string>

QString ToQString(const std::string& text);

QString PathToQString(const std::string& path);
std::string PathFromQString(const QString& path);
