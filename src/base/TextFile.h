#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

namespace Pelorin {

// How a text file's bytes were decoded, so that it is written back the same way.
enum class TextEncoding { Utf8, Windows1252 };

// A text file as lines. Skins, personal.ini and lyrics files share it.
struct TextFileContent {
    QStringList Lines;
    TextEncoding Encoding = TextEncoding::Utf8;
    // A UTF-8 byte order mark was stripped on reading and is written back.
    bool HadBom = false;
    // False when the bytes held no CR at all: a file saved by a Linux editor, whose lines LF
    // ends. A file with any CR keeps the CR rule, in which a lone LF stays inside its line.
    bool HasCR = false;
    // A file with CR line ends that also holds a lone LF (not after a CR): its two kinds of line
    // end disagree, and the lone LFs end no line.
    bool MixesLineEnds = false;
};

// Bytes to text and back. Files made on Windows are Windows-1252 more often than not, so any
// byte sequence that is not valid UTF-8 is read as Windows-1252 instead of being mangled.
class TextFile {
public:
    // True when the bytes are well-formed UTF-8 (no overlong forms, surrogates or values past
    // U+10FFFF).
    static bool IsValidUtf8(QByteArrayView bytes);

    // UTF-8 when valid, else Windows-1252; a leading UTF-8 byte order mark is dropped.
    static QString Decode(QByteArrayView bytes, TextEncoding* used = nullptr,
                          bool* hadBom = nullptr);
    // Characters that Windows-1252 cannot hold become "?".
    static QByteArray Encode(QStringView text, TextEncoding encoding);

    // A line ends with CR LF or a lone CR; a lone LF stays inside its line. The end of the text
    // ends the last line, so "a\r\n" is one line and "a\r\n\r\n" two, the second empty.
    static QStringList SplitLines(QStringView text);

    // Lines by SplitLines, or, for bytes without any CR, ended by LF (same end-of-text rule).
    static TextFileContent FromBytes(QByteArrayView bytes);
    // Every line followed by CR LF, so reading the bytes back gives the same lines.
    static QByteArray ToBytes(const TextFileContent& content);

    // False with `error` set when the file cannot be opened or read.
    static bool Read(const QString& path, TextFileContent& content, QString* error = nullptr);
    // Writes the whole file or nothing (the old file stays when anything fails).
    static bool Write(const QString& path, const TextFileContent& content,
                      QString* error = nullptr);

    // A file in a folder whose files come from strangers (a skin's): read only when it is a
    // regular file of at most `maxBytes`, named directly or through a link that resolves inside
    // `folder`. A FIFO, a device, a folder or a link leading elsewhere is refused without being
    // opened for long, so none of them can hang or flood the program.
    static bool ReadConfined(const QString& path, const QString& folder, qint64 maxBytes,
                             TextFileContent& content, QString* error = nullptr);
    // The same without the folder: a file of the user's own (personal.ini, an LRC file), read
    // through any link, but only when it is a regular file of at most `maxBytes`.
    static bool ReadRegular(const QString& path, qint64 maxBytes, TextFileContent& content,
                            QString* error = nullptr);
    // Writes the whole file or nothing, and never through a link or onto anything but a regular
    // file (a skin could otherwise point its file at one of the user's).
    static bool WriteConfined(const QString& path, const TextFileContent& content,
                              QString* error = nullptr);

    // The most of a skin.ini or personal.ini that is read.
    static constexpr qint64 MaxSkinFileBytes = 16 * 1024 * 1024;
};

} // namespace Pelorin
