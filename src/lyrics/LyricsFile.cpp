#include "lyrics/LyricsFile.h"

#include "base/FileNames.h"
#include "base/TextFile.h"
#include "base/TextRules.h"
#include "base/VbError.h"

namespace Pelorin {

namespace {

const QString CrLf = QStringLiteral("\r\n");

} // namespace

LyricsFile::LyricsFile(QString programFolder) : m_programFolder(std::move(programFolder)) {}

QString LyricsFile::GetFileName(const QString& artist, const QString& name) {
    QString file = artist + u'\\' + name + QLatin1String(".lyr");
    file.replace(QLatin1String("\\\\"), QLatin1String("\\"));
    for (const QChar c : {u'/', u':', u'*', u'?', u'"', u'<', u'>', u'|'})
        file.remove(c);
    return file;
}

QString LyricsFile::WithProgramFolder(QString path) const {
    return path.replace(QLatin1String("APPPATH"), m_programFolder, Qt::CaseSensitive);
}

QString LyricsFile::GetCurFileName(const QString& lyricsPath, const QString& artist,
                                   const QString& name) const {
    return WithProgramFolder(lyricsPath + GetFileName(artist, name));
}

QString LyricsFile::ReadToString(const QString& fileName) {
    m_linesRead = 0;
    const QString path = FileNames::Resolve(FileNames::WithSlashes(fileName));
    // Only a regular file of sane size: a folder or a pipe of that name is no lyrics file, and
    // nothing can make the reader hang or fill the memory.
    TextFileContent content;
    if (!TextFile::ReadRegular(path, MaxFileBytes, content))
        return QString();
    QString text;
    for (const QString& line : content.Lines) {
        if (m_linesRead >= MaxLines)
            break;
        ++m_linesRead;
        if (text.isEmpty())
            text = line;
        else
            text += CrLf + line;
    }
    return text;
}

void LyricsFile::LoadLyricFile(const QString& filePath) {
    m_lines = ReadToString(WithProgramFolder(filePath)).split(CrLf);
    QString key = QStringLiteral("CantomSyncFile");
    if (GetCommand(key) != QLatin1String("1")) {
        m_lines = QStringList{QString()};
        return;
    }
    key = QStringLiteral("Creator");
    m_creator = GetCommand(key);
    key = QStringLiteral("TimeOffset");
    m_timeOffset = Rules::LeadingNumber(GetCommand(key));
}

QString LyricsFile::GetCommand(QString& command, int compareType) {
    Q_UNUSED(compareType); // always compared exactly
    command = u'[' + command + u']';
    for (int i = 0; i < m_lines.size(); ++i) {
        if (m_lines.at(i).startsWith(command, Qt::CaseSensitive)) {
            m_curLine = i;
            return m_lines.at(i).mid(command.size());
        }
    }
    return QString();
}

QString LyricsFile::GetCommandPart(bool time, const QString& line) {
    if (line.isEmpty())
        return QStringLiteral("0");
    const qsizetype close = line.indexOf(u']');
    if (time) {
        const qsizetype open = line.indexOf(u'[');
        if (open < 0)
            throw VbError(5, QStringLiteral("Invalid procedure call or argument"));
        if (close >= 0)
            return line.mid(open + 1, close - open - 1).trimmed();
        return line.mid(open).trimmed();
    }
    return (close < 0 ? line : line.mid(close + 1)).trimmed();
}

bool LyricsFile::WriteLyricsFile(const QString& fileName, const QString& lyricsSection,
                                 const QString& defaultLyrics, const QString& creatorName,
                                 QString* error) {
    const QString text =
        QStringLiteral("[CantomSyncFile]1") + CrLf + QStringLiteral("[Timing] Normal") + CrLf +
        QStringLiteral("[Creator]") + creatorName + CrLf + QStringLiteral("[DefaultLyrics]") +
        defaultLyrics + CrLf + QStringLiteral("[TimeOffset]0") + CrLf + QStringLiteral("[Lyrics]") +
        CrLf + lyricsSection + CrLf + QStringLiteral("[EndLyrics]");
    TextFileContent content;
    content.Lines = text.split(CrLf);
    return TextFile::Write(FileNames::WithSlashes(fileName), content, error);
}

} // namespace Pelorin
