#pragma once

#include <QString>
#include <QStringList>

namespace Pelorin {

// Synchronized lyrics files: one per track, "<artist>\<name>.lyr" below the lyrics folder, a small
// header of bracketed keys and then the timed lines "[seconds]text" up to "[EndLyrics]". This is
// the file half of the lyrics control: the name of a track's file, the reader with its header
// lookup and line splitting, and the writer. Windows-1252 and UTF-8 files are both read; "\" in
// names separates folders.
class LyricsFile {
public:
    // The most lines the reader takes from one file.
    static constexpr int MaxLines = 10001;
    // The largest file read; anything bigger reads as no file.
    static constexpr qint64 MaxFileBytes = 16 * 1024 * 1024;

    // `programFolder` replaces "APPPATH" in lyrics paths; it ends with "/".
    explicit LyricsFile(QString programFolder = QString());

    // "<artist>\<name>.lyr" with "\\" made one "\" and / : * ? " < > | removed.
    static QString GetFileName(const QString& artist, const QString& name);
    // The lyrics path (ending with a separator) in front of GetFileName, "APPPATH" replaced by
    // the program folder.
    QString GetCurFileName(const QString& lyricsPath, const QString& artist,
                           const QString& name) const;

    // The file's lines joined with CR LF, leading empty lines dropped, at most MaxLines read;
    // empty when there is no such regular file. LinesRead() tells how many lines were read.
    QString ReadToString(const QString& fileName);
    // Reads the file into Lines() and checks its header: without "[CantomSyncFile]1" the track
    // has no lyrics (Lines() is one empty line). Keeps the creator and the time offset.
    void LoadLyricFile(const QString& filePath);
    // The rest of the first line that begins with "[command]" (exactly, letter case included),
    // untrimmed; that line becomes the current line. No such line: empty, current line kept.
    // `command` is wrapped in brackets in the caller's variable too; `compareType` is ignored.
    QString GetCommand(QString& command, int compareType = 0);
    // A timed line's time (`time` true: between the first "[" and the first "]", trimmed) or
    // text (everything after the first "]", trimmed). An empty line gives "0". A time asked of
    // a line without "[" throws VbError (invalid procedure call).
    static QString GetCommandPart(bool time, const QString& line);
    // Writes a whole file in the program's layout, or nothing; the folder must exist. False
    // with `error` set when it could not be written.
    static bool WriteLyricsFile(const QString& fileName, const QString& lyricsSection,
                                const QString& defaultLyrics, const QString& creatorName,
                                QString* error = nullptr);

    // No lyrics: one empty line.
    void Clear() { m_lines = QStringList{QString()}; }

    const QStringList& Lines() const { return m_lines; }
    int CurLine() const { return m_curLine; }
    void SetCurLine(int line) { m_curLine = line; }
    int LinesRead() const { return m_linesRead; }
    const QString& Creator() const { return m_creator; }
    double TimeOffset() const { return m_timeOffset; }

private:
    QString WithProgramFolder(QString path) const;

    QString m_programFolder;
    QStringList m_lines{QString()};
    int m_curLine = 0;
    int m_linesRead = 0;
    QString m_creator;
    double m_timeOffset = 0;
};

} // namespace Pelorin
