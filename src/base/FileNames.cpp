#include "FileNames.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace Pelorin {

namespace {

bool Exists(const QString& path) {
    return QFileInfo::exists(path);
}

// The entry of `folder` whose name equals `name` ignoring case; the exact name wins when both
// exist, otherwise the first in sorted order so the choice does not depend on the file system.
QString FindIgnoringCase(const QString& folder, const QString& name) {
    const QDir dir(folder.isEmpty() ? QStringLiteral(".") : folder);
    const QStringList entries = dir.entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return entry;
    }
    return {};
}

// Walks `relative` below `base` (which ends with "/" or is empty), fixing the case of each
// component that does not exist as written. Gives an empty string when some component has no
// match at all.
QString ResolveBelow(const QString& base, const QString& relative) {
    const QStringList parts = relative.split(QLatin1Char('/'));
    QString current = base;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const QString& part = parts[i];
        const bool last = i + 1 == parts.size();
        QString next = current + part;
        if (!part.isEmpty() && part != QLatin1String(".") && part != QLatin1String("..") &&
            !Exists(next)) {
            QString folder = current;
            if (folder.size() > 1 && folder.endsWith(QLatin1Char('/')))
                folder.chop(1);
            const QString found = FindIgnoringCase(folder, part);
            if (found.isEmpty())
                return {};
            next = current + found;
        }
        current = last ? next : next + QLatin1Char('/');
    }
    return current;
}

} // namespace

QString FileNames::WithSlashes(const QString& name) {
    QString result = name;
    result.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return result;
}

QString FileNames::InFolder(const QString& folder, const QString& relativeName) {
    const QString relative = WithSlashes(relativeName);
    const QString direct = folder + relative;
    if (relative.isEmpty() || Exists(direct))
        return direct;
    const QString resolved = ResolveBelow(folder, relative);
    return resolved.isEmpty() ? direct : resolved;
}

QString FileNames::Resolve(const QString& path) {
    if (path.isEmpty() || Exists(path))
        return path;
    if (path.startsWith(QLatin1Char('/'))) {
        const QString resolved = ResolveBelow(QStringLiteral("/"), path.mid(1));
        return resolved.isEmpty() ? path : resolved;
    }
    const QString resolved = ResolveBelow(QString(), path);
    return resolved.isEmpty() ? path : resolved;
}

bool FileNames::StaysBelow(const QString& relativeName) {
    // A name that begins with "/" is put behind the folder as it stands, so it stays below it
    // too; only ".." climbs out.
    const QStringList parts = WithSlashes(relativeName).split(u'/');
    return !parts.contains(QStringLiteral(".."));
}

bool FileNames::ResolvesInside(const QString& folder, const QString& path) {
    const QString inside = QFileInfo(folder).canonicalFilePath();
    const QString target = QFileInfo(path).canonicalFilePath();
    return !inside.isEmpty() && !target.isEmpty() && target.startsWith(inside + u'/');
}

bool FileNames::Confined(const QString& folder, const QString& relativeName, const QString& path) {
    if (!StaysBelow(relativeName))
        return false;
    return !QFileInfo::exists(path) || ResolvesInside(folder, path);
}

bool FileNames::IsPlainName(const QString& name) {
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(u'/') && !name.contains(u'\\');
}

} // namespace Pelorin
