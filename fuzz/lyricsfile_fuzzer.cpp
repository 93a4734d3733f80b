// Feeds arbitrary bytes as a lyrics sync file (a real file, rewritten for every input) to the
// reader, then splits every line after "[Lyrics]" as the timing loop does; the same bytes go to
// the LRC import's parser, whose section must read back as timed lines. Any crash, hang,
// sanitizer report or broken invariant is a finding: the only error a line may raise is the
// invalid call of a time asked of a line without "[".
#include "base/TextFile.h"
#include "base/VbError.h"
#include "lyrics/LrcImport.h"
#include "lyrics/LyricsFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <unistd.h>

namespace {

using namespace Pelorin;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

QString FuzzFile() {
    static const QString path =
        QDir::tempPath() + QStringLiteral("/pelorin-lyricsfile-fuzz-%1.lyr").arg(getpid());
    return path;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    {
        QFile file(FuzzFile());
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    }
    LyricsFile lyrics;
    lyrics.LoadLyricFile(FuzzFile());
    Check(lyrics.LinesRead() <= LyricsFile::MaxLines);
    Check(!lyrics.Lines().isEmpty());
    QString key = QStringLiteral("Lyrics");
    lyrics.GetCommand(key);
    for (int i = lyrics.CurLine() + 1; i < lyrics.Lines().size(); ++i) {
        const QString& line = lyrics.Lines().at(i);
        if (line == QLatin1String("[EndLyrics]"))
            break;
        try {
            LyricsFile::GetCommandPart(true, line);
        } catch (const VbError& error) {
            Check(error.number() == 5);
            Check(!line.contains(u'['));
        }
        LyricsFile::GetCommandPart(false, line);
    }

    LrcImport::Lyrics imported;
    const QStringList lines =
        TextFile::FromBytes(QByteArrayView(data, static_cast<qsizetype>(size))).Lines;
    if (LrcImport::Parse(lines, imported)) {
        Check(imported.timedLines > 0);
        Check(!imported.artist.isEmpty() && !imported.title.isEmpty());
        for (const QString& line : imported.section.split(QStringLiteral("\r\n"))) {
            Check(line.startsWith(u'['));
            LyricsFile::GetCommandPart(true, line);
        }
    }
    return 0;
}
