#include "QtText.h"

#include <QFile>

QString ToQString(const std::string& text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQString(const QString& text) {
    return text.toLatin1().toStdString();
}

QString PathToQString(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

std::string PathFromQString(const QString& path) {
    return QFile::encodeName(path).toStdString();
}
