#include "QtText.h"

#include <QFile>

QString ToQString(const std::string& text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

QString PathToQString(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

std::string PathFromQString(const QString& path) {
    return QFile::encodeName(path).toStdString();
}
