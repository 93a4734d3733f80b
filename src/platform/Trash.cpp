#include "Trash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace Pelorin {

namespace {

void SetError(QString* error, const QString& text) {
    if (error)
        *error = text;
}

} // namespace

bool MoveToTrash(const QString& path, QString* error) {
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink()) {
        SetError(error, QStringLiteral("%1 does not exist").arg(path));
        return false;
    }
    const QString original = info.absoluteFilePath();
    // Qt 6.4 trashes into the current folder when the data folder is missing.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));

    QString inTrash;
    if (!QFile::moveToTrash(original, &inTrash)) {
        SetError(error, QStringLiteral("%1 could not be moved to the trash").arg(path));
        return false;
    }
    if (inTrash.isEmpty() || QDir::isRelativePath(inTrash)) {
        // Not a trash at all: put the file back where it was.
        const QString strayed = QDir::current().absoluteFilePath(inTrash);
        if (!inTrash.isEmpty() && QFileInfo::exists(strayed) && !QFileInfo::exists(original))
            QFile::rename(strayed, original);
        SetError(error, QStringLiteral("there is no usable trash for %1").arg(path));
        return false;
    }
    return true;
}

} // namespace Pelorin
