#include "PositionFile.h"

#include "base/TextFile.h"
#include "base/TextRules.h"
#include "base/VbError.h"

#include <QFileInfo>

namespace Pelorin {

namespace {

// The runtime's own numbers and words for a file that cannot be opened for input.
VbError OpenFailed(const QString& path) {
    if (!QFileInfo::exists(path))
        return VbError(53, QStringLiteral("File not found"));
    return VbError(75, QStringLiteral("Path/File access error"));
}

} // namespace

void ReadPositionFile(const QString& path, const std::function<void(double)>& setLeftTwips,
                      const std::function<void(double)>& setTopTwips) {
    TextFileContent content;
    if (!TextFile::ReadConfined(path, QFileInfo(path).absolutePath(), PositionFileMaxBytes,
                                content))
        throw OpenFailed(path);
    const std::function<void(double)>* setters[] = {&setLeftTwips, &setTopTwips};
    qsizetype line = 0;
    for (const auto* set : setters) {
        if (line >= content.Lines.size())
            throw VbError::InputPastEndOfFile();
        (*set)(Rules::LeadingNumber(content.Lines.at(line++)));
    }
}

QByteArray PositionFileBytes(double leftTwips, double topTwips) {
    TextFileContent content;
    content.Lines = {Rules::FormatNumber(leftTwips), Rules::FormatNumber(topTwips)};
    return TextFile::ToBytes(content);
}

bool WritePositionFile(const QString& path, double leftTwips, double topTwips, QString* error) {
    TextFileContent content;
    content.Lines = {Rules::FormatNumber(leftTwips), Rules::FormatNumber(topTwips)};
    return TextFile::WriteConfined(path, content, error);
}

} // namespace Pelorin
