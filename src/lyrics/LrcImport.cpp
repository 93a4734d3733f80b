#include "lyrics/LrcImport.h"

#include "base/FileNames.h"
#include "base/TextFile.h"
#include "base/TextRules.h"
#include "lyrics/LyricsFile.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace Pelorin {

namespace {

struct TimedLine {
    double seconds;
    QString text;
};

// Seconds as the sync file writes them: "." and no trailing zeros.
QString Seconds(double seconds) {
    QString text = QString::number(seconds, 'f', 2);
    while (text.contains(u'.') && (text.endsWith(u'0') || text.endsWith(u'.')))
        text.chop(1);
    return text;
}

} // namespace

bool LrcImport::Parse(const QStringList& lrcLines, Lyrics& lyrics, QString* error) {
    static const QRegularExpression tag(QStringLiteral("^\\[([A-Za-z]+):(.*)\\]\\s*$"));
    static const QRegularExpression stamp(
        QStringLiteral("^\\[(\\d{1,4}):(\\d{1,2}(?:[.:]\\d{1,3})?)\\]"));
    static const QRegularExpression wordStamp(
        QStringLiteral("<\\d{1,4}:\\d{1,2}(?:[.:]\\d{1,3})?>"));
    lyrics = {};
    double offsetMs = 0;
    QList<TimedLine> lines;
    for (QString line : lrcLines) {
        line = line.trimmed();
        QList<double> times;
        for (QRegularExpressionMatch m = stamp.match(line); m.hasMatch(); m = stamp.match(line)) {
            QString fraction = m.captured(2);
            fraction.replace(u':', u'.');
            times.append(m.captured(1).toDouble() * 60 + fraction.toDouble());
            line = line.mid(m.capturedLength());
        }
        if (!times.isEmpty()) {
            const QString words = line.remove(wordStamp).trimmed();
            for (const double t : std::as_const(times))
                lines.append({t, words});
            continue;
        }
        const QRegularExpressionMatch m = tag.match(line);
        if (!m.hasMatch())
            continue;
        const QString key = m.captured(1).toLower();
        const QString value = m.captured(2).trimmed();
        if (key == QLatin1String("ar"))
            lyrics.artist = value;
        else if (key == QLatin1String("ti"))
            lyrics.title = value;
        else if (key == QLatin1String("by"))
            lyrics.creator = value;
        else if (key == QLatin1String("offset"))
            offsetMs = Rules::LeadingNumber(value);
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const TimedLine& a, const TimedLine& b) { return a.seconds < b.seconds; });
    QStringList section;
    for (const TimedLine& line : std::as_const(lines)) {
        const double seconds = std::max(0.0, line.seconds - offsetMs / 1000.0);
        // A line break inside a text would end the line in the sync file.
        QString words = line.text;
        words.replace(u'\r', u' ').replace(u'\n', u' ');
        section.append(u'[' + Seconds(seconds) + u']' + words);
    }
    lyrics.section = section.join(QStringLiteral("\r\n"));
    lyrics.timedLines = static_cast<int>(lines.size());
    if (lyrics.creator.isEmpty())
        lyrics.creator = QStringLiteral("Pelorin (imported from LRC)");

    QString problem;
    if (lyrics.artist.isEmpty())
        problem = QStringLiteral("it has no [ar:] tag naming the artist");
    else if (lyrics.title.isEmpty())
        problem = QStringLiteral("it has no [ti:] tag naming the title");
    else if (lyrics.timedLines == 0)
        problem = QStringLiteral("it has no timed line such as [01:23.45] text");
    if (error)
        *error = problem;
    return problem.isEmpty();
}

QString LrcImport::Import(const QString& lrcFile, const QString& lyricsFolder, QString* error) {
    const auto fail = [error](const QString& why) {
        if (error)
            *error = why;
        return QString();
    };
    TextFileContent content;
    QString readError;
    if (!TextFile::ReadRegular(lrcFile, LyricsFile::MaxFileBytes, content, &readError))
        return fail(QStringLiteral("%1 cannot be read: %2").arg(lrcFile, readError));
    Lyrics lyrics;
    QString problem;
    if (!Parse(content.Lines, lyrics, &problem))
        return fail(QStringLiteral("%1 cannot be imported: %2").arg(lrcFile, problem));
    const QString path =
        FileNames::WithSlashes(lyricsFolder + LyricsFile::GetFileName(lyrics.artist, lyrics.title));
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return fail(QStringLiteral("the folder of %1 cannot be made").arg(path));
    QString writeError;
    if (!LyricsFile::WriteLyricsFile(path, lyrics.section, QString(), lyrics.creator, &writeError))
        return fail(QStringLiteral("%1 cannot be written: %2").arg(path, writeError));
    return QDir::cleanPath(path);
}

} // namespace Pelorin
