#pragma once

#include <QString>
#include <QStringList>

namespace Pelorin {

// LRC files, the timed lyrics format most players and lyrics sites use, turned into sync files:
// "[ar:]" and "[ti:]" name the track, "[offset:]" (milliseconds, positive makes the lines
// earlier) moves every line, "[mm:ss.xx]" stamps (several may lead one line) time the lines and
// word stamps "<mm:ss.xx>" inside a line are dropped.
class LrcImport {
public:
    struct Lyrics {
        QString artist;
        QString title;
        QString creator;
        // The sync file's lyrics section: "[seconds]text" lines in time order, CR LF between.
        QString section;
        int timedLines = 0;
    };

    // Parses the lines of an LRC file; `error` says what is missing when the result is unusable
    // (no artist or title tag, no timed line), and the result is false then.
    static bool Parse(const QStringList& lines, Lyrics& lyrics, QString* error = nullptr);

    // Reads `lrcFile` (UTF-8 or Windows-1252, any line ends), writes the sync file into
    // `lyricsFolder` (ending with "/") under the track's name, creating the artist's folder,
    // and returns its path. Empty with `error` set when nothing was written.
    static QString Import(const QString& lrcFile, const QString& lyricsFolder,
                          QString* error = nullptr);
};

} // namespace Pelorin
