#include "TextFile.h"

#include "base/FileNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace Pelorin {

namespace {

constexpr char16_t Cr = u'\r';
constexpr char16_t Lf = u'\n';

// Windows-1252 differs from Latin-1 only in 0x80-0x9F. The five codes it leaves undefined map to
// the C1 control of the same value, as Windows itself decodes them, so every byte survives a round
// trip.
constexpr std::array<char16_t, 32> Cp1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, // 98-9F
};

constexpr std::array<char16_t, 256> MakeCp1252Table() {
    std::array<char16_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i)
        table[i] = static_cast<char16_t>(i);
    for (unsigned i = 0; i < 32; ++i)
        table[0x80 + i] = Cp1252High[i];
    return table;
}

constexpr std::array<char16_t, 256> Cp1252Table = MakeCp1252Table();

QString DecodeCp1252(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    char16_t* out = reinterpret_cast<char16_t*>(text.data());
    const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
    for (qsizetype i = 0; i < bytes.size(); ++i)
        out[i] = Cp1252Table[in[i]];
    return text;
}

char EncodeCp1252Char(char16_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return static_cast<char>(c);
    for (unsigned i = 0; i < Cp1252High.size(); ++i) {
        if (Cp1252High[i] == c)
            return static_cast<char>(0x80 + i);
    }
    return '?';
}

constexpr std::string_view Bom = "\xEF\xBB\xBF";

} // namespace

bool TextFile::IsValidUtf8(QByteArrayView bytes) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const qsizetype n = bytes.size();
    qsizetype i = 0;
    while (i < n) {
        const unsigned char c = p[i];
        if (c < 0x80) {
            ++i;
            continue;
        }
        qsizetype length = 0;
        std::uint32_t cp = 0;
        std::uint32_t minimum = 0;
        if (c >= 0xC2 && c <= 0xDF) {
            length = 2;
            cp = c & 0x1Fu;
            minimum = 0x80;
        } else if (c >= 0xE0 && c <= 0xEF) {
            length = 3;
            cp = c & 0x0Fu;
            minimum = 0x800;
        } else if (c >= 0xF0 && c <= 0xF4) {
            length = 4;
            cp = c & 0x07u;
            minimum = 0x10000;
        } else {
            return false;
        }
        if (n - i < length)
            return false;
        for (qsizetype k = 1; k < length; ++k) {
            const unsigned char cc = p[i + k];
            if ((cc & 0xC0u) != 0x80u)
                return false;
            cp = (cp << 6) | (cc & 0x3Fu);
        }
        if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        i += length;
    }
    return true;
}

QString TextFile::Decode(QByteArrayView bytes, TextEncoding* used, bool* hadBom) {
    const bool bom = bytes.size() >= 3 && std::string_view(bytes.data(), 3) == Bom;
    if (hadBom)
        *hadBom = false;
    if (IsValidUtf8(bytes)) {
        if (used)
            *used = TextEncoding::Utf8;
        if (bom) {
            if (hadBom)
                *hadBom = true;
            bytes = bytes.sliced(3);
        }
        // fromUtf8 would drop a second byte order mark as well; only the first is ours to drop.
        QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom);
        return decoder.decode(bytes);
    }
    if (used)
        *used = TextEncoding::Windows1252;
    return DecodeCp1252(bytes);
}

QByteArray TextFile::Encode(QStringView text, TextEncoding encoding) {
    if (encoding == TextEncoding::Utf8)
        return text.toUtf8();
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char* out = bytes.data();
    for (qsizetype i = 0; i < text.size(); ++i)
        out[i] = EncodeCp1252Char(text[i].unicode());
    return bytes;
}

QStringList TextFile::SplitLines(QStringView text) {
    QStringList lines;
    const qsizetype n = text.size();
    const char16_t* data = text.utf16();
    qsizetype start = 0;
    for (qsizetype i = 0; i < n; ++i) {
        if (data[i] != Cr)
            continue;
        lines.append(text.sliced(start, i - start).toString());
        if (i + 1 < n && data[i + 1] == Lf)
            ++i;
        start = i + 1;
    }
    if (start < n)
        lines.append(text.sliced(start).toString());
    return lines;
}

TextFileContent TextFile::FromBytes(QByteArrayView bytes) {
    TextFileContent content;
    content.HasCR = bytes.contains('\r');
    const QString text = Decode(bytes, &content.Encoding, &content.HadBom);
    if (content.HasCR) {
        content.Lines = SplitLines(text);
        for (qsizetype i = bytes.indexOf('\n'); i >= 0; i = bytes.indexOf('\n', i + 1)) {
            if (i == 0 || bytes[i - 1] != '\r') {
                content.MixesLineEnds = true;
                break;
            }
        }
    } else {
        // Skins written in a Linux editor: without a single CR, LF ends the lines.
        content.Lines = text.split(u'\n');
        if (!content.Lines.isEmpty() && content.Lines.last().isEmpty())
            content.Lines.removeLast();
    }
    return content;
}

QByteArray TextFile::ToBytes(const TextFileContent& content) {
    QByteArray bytes;
    if (content.HadBom && content.Encoding == TextEncoding::Utf8)
        bytes.append(Bom.data(), static_cast<qsizetype>(Bom.size()));
    for (const QString& line : content.Lines) {
        bytes.append(Encode(line, content.Encoding));
        bytes.append("\r\n", 2);
    }
    return bytes;
}

bool TextFile::Read(const QString& path, TextFileContent& content, QString* error) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        if (error)
            *error = file.errorString();
        return false;
    }
    content = FromBytes(bytes);
    return true;
}

bool TextFile::Write(const QString& path, const TextFileContent& content, QString* error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    const QByteArray bytes = ToBytes(content);
    if (file.write(bytes) != bytes.size()) {
        if (error)
            *error = file.errorString();
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

bool TextFile::ReadConfined(const QString& path, const QString& folder, qint64 maxBytes,
                            TextFileContent& content, QString* error) {
    if (QFileInfo(path).isSymLink() && !FileNames::ResolvesInside(folder, path)) {
        if (error)
            *error = path + QStringLiteral(" is a link that leads outside its folder");
        return false;
    }
    return ReadRegular(path, maxBytes, content, error);
}

bool TextFile::ReadRegular(const QString& path, qint64 maxBytes, TextFileContent& content,
                           QString* error) {
    const auto fail = [error](const QString& why) {
        if (error)
            *error = why;
        return false;
    };
    // Non-blocking, so that opening a FIFO does not wait for a writer; the type is checked on
    // what was opened, not on the name.
    const int fd =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return fail(QString::fromLocal8Bit(std::strerror(errno)));
    QFile file;
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        return fail(QStringLiteral("%1 is not a regular file").arg(path));
    }
    if (status.st_size > maxBytes) {
        ::close(fd);
        return fail(path + QStringLiteral(" is larger than %1 bytes").arg(maxBytes));
    }
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return fail(file.errorString());
    }
    // The file may grow after the check: never more than the limit is read.
    const QByteArray bytes = file.read(maxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return fail(file.errorString());
    if (bytes.size() > maxBytes)
        return fail(path + QStringLiteral(" is larger than %1 bytes").arg(maxBytes));
    content = FromBytes(bytes);
    return true;
}

bool TextFile::WriteConfined(const QString& path, const TextFileContent& content, QString* error) {
    const QFileInfo info(path);
    // A dangling link counts as a link: writing "to it" would create its target.
    if (info.isSymLink() || (info.exists() && !info.isFile())) {
        if (error)
            *error = QStringLiteral("%1 is not a regular file; it was left as it is").arg(path);
        return false;
    }
    return Write(path, content, error);
}

} // namespace Pelorin
