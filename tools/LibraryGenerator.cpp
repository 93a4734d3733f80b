#include "LibraryGenerator.h"

#include "CoverPainter.h"
#include "TagWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

namespace Pelorin {

namespace {

QString WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        return QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
    }
    return QString();
}

} // namespace

LibraryGenerator::LibraryGenerator(LibraryCatalog catalog, TrackAudio audio)
    : m_catalog(std::move(catalog)), m_audio(std::move(audio)) {}

QString LibraryGenerator::Generate(const QString& folder, const QString& markerText) const {
    const QString target = QDir::cleanPath(QDir(folder).absolutePath());
    QDir existing(target);
    if (existing.exists() &&
        !existing.isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden) &&
        !QFileInfo::exists(target + u'/' + LibraryMarkerName())) {
        return QStringLiteral("%1 is not empty and holds no generated library; not replacing it")
            .arg(target);
    }
    const QString partial = target + QStringLiteral(".partial");
    QDir(partial).removeRecursively();
    if (!QDir().mkpath(partial)) {
        return QStringLiteral("cannot create %1").arg(partial);
    }
    QString error = WriteTracks(partial);
    if (error.isEmpty()) {
        error = WriteFile(partial + u'/' + LibraryMarkerName(), markerText.toUtf8());
    }
    if (!error.isEmpty()) {
        QDir(partial).removeRecursively();
        return error;
    }
    if (existing.exists() && !existing.removeRecursively()) {
        return QStringLiteral("cannot remove the old library in %1").arg(target);
    }
    if (!QDir().rename(partial, target)) {
        return QStringLiteral("cannot move %1 to %2").arg(partial, target);
    }
    return QString();
}

QString LibraryGenerator::WriteTracks(const QString& folder) const {
    const QString scratch = folder + QStringLiteral("/.scratch");
    QDir().mkpath(scratch);
    QHash<int, QByteArray> jpegCovers;
    QHash<int, QByteArray> pngCovers;
    auto cover = [&](int style, CoverFormat format) {
        QHash<int, QByteArray>& cache = format == CoverFormat::Png ? pngCovers : jpegCovers;
        if (!cache.contains(style)) {
            cache.insert(style, CoverPainter::Encode(CoverPainter::Paint(style), format));
        }
        return cache.value(style);
    };
    for (const TrackSpec& track : m_catalog.tracks) {
        const QString path = folder + u'/' + track.uri;
        QDir().mkpath(QFileInfo(path).absolutePath());
        QString error = m_audio.Write(track, path, scratch);
        if (!error.isEmpty()) {
            return error;
        }
        QByteArray picture;
        if (track.embeddedCover >= 0) {
            picture = cover(track.embeddedCover, track.coverFormat);
            if (picture.isEmpty()) {
                return QStringLiteral("cannot encode a cover picture (Qt image plugins missing?)");
            }
        }
        error = TagWriter::Write(path, track, picture);
        if (!error.isEmpty()) {
            return error;
        }
    }
    for (const FolderCover& folderCover : m_catalog.folderCovers) {
        const QString path = folder + u'/' + folderCover.path;
        QDir().mkpath(QFileInfo(path).absolutePath());
        const CoverFormat format = path.endsWith(QStringLiteral(".png"), Qt::CaseInsensitive)
                                       ? CoverFormat::Png
                                       : CoverFormat::Jpeg;
        const QString error = WriteFile(path, cover(folderCover.style, format));
        if (!error.isEmpty()) {
            return error;
        }
    }
    QDir(scratch).removeRecursively();
    return QString();
}

QString LibraryGenerator::WritePlaylists(const QString& folder) const {
    if (!QDir().mkpath(folder)) {
        return QStringLiteral("cannot create %1").arg(folder);
    }
    for (const StoredPlaylist& playlist : m_catalog.playlists) {
        const QString error = WriteFile(folder + u'/' + playlist.name + QStringLiteral(".m3u"),
                                        (playlist.uris.join(u'\n') + u'\n').toUtf8());
        if (!error.isEmpty()) {
            return error;
        }
    }
    return QString();
}

} // namespace Pelorin
