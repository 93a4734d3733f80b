#include "ExternalOpener.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace Pelorin {

bool OpenExternal(const QString& file, const QString& parameters) {
    const QFileInfo info(file);
    if (info.isFile() && info.isExecutable())
        return QProcess::startDetached(info.absoluteFilePath(), QProcess::splitCommand(parameters));
    if (info.exists())
        return QDesktopServices::openUrl(QUrl::fromLocalFile(info.absoluteFilePath()));
    // Not a file: a program on the PATH, or a URL.
    const QUrl url(file);
    if (url.isValid() && !url.scheme().isEmpty() && url.scheme().size() > 1)
        return QDesktopServices::openUrl(url);
    return QProcess::startDetached(file, QProcess::splitCommand(parameters));
}

} // namespace Pelorin
