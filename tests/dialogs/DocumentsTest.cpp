// The documents the menu opens: they exist in the data folder, and the skin author's guide
// documents every keyword the skin reader knows, every command of the command language and every
// key name of keyboard shortcuts.
#include "runcode/CommandInterpreter.h"
#include "skin/SkinLineProcessor.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Pelorin;

namespace {

QString Document(const char* name) {
    QFile file(QStringLiteral(PELORIN_SOURCE_DIR "/data/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

// The words the guide shows as code: the text of every <code> element.
QString CodeText(const QString& html) {
    QString code;
    const QRegularExpression element(QStringLiteral("<code>(.*?)</code>"),
                                     QRegularExpression::DotMatchesEverythingOption);
    for (auto it = element.globalMatch(html); it.hasNext();)
        code += it.next().captured(1) + u'\n';
    return code;
}

bool Shows(const QString& code, const QString& word) {
    const QRegularExpression re(
        QStringLiteral("(^|[^A-Za-z0-9])") + QRegularExpression::escape(word) +
            QStringLiteral("($|[^A-Za-z0-9])"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::MultilineOption);
    return re.match(code).hasMatch();
}

TEST(Documents, TheThreeDocumentsAreThere) {
    for (const char* name : {"Pelorin Help.html", "Pelorin Changes.html", "Pelorin Creation.html"})
        EXPECT_GT(Document(name).size(), 1000) << name;
}

TEST(Documents, TheSkinGuideDocumentsEveryKeywordTheReaderKnows) {
    const QString code = CodeText(Document("Pelorin Creation.html"));
    ASSERT_FALSE(code.isEmpty());
    const QStringList keywords = SkinKeywords();
    ASSERT_GT(keywords.size(), 30);
    for (const QString& keyword : keywords)
        EXPECT_TRUE(Shows(code, keyword)) << keyword.toStdString();
}

TEST(Documents, TheSkinGuideDocumentsEveryCommand) {
    const QString code = CodeText(Document("Pelorin Creation.html"));
    const QStringList words = CommandInterpreter::CommandWords();
    ASSERT_GT(words.size(), 30);
    for (const QString& word : words)
        EXPECT_TRUE(Shows(code, word)) << word.toStdString();
}

TEST(Documents, TheSkinGuideDocumentsEveryKeyName) {
    const QString code = CodeText(Document("Pelorin Creation.html"));
    for (const char* name :
         {"ALT", "SHIFT", "CONTROL", "WIN", "LEFTARROW", "RIGHTARROW", "UPARROW", "DOWNARROW",
          "ENTER", "BACKSPACE", "TAB", "PAGEUP", "PAGEDOWN", "NUMPAD0", "F1", "personal.ini"})
        EXPECT_TRUE(Shows(code, QLatin1String(name))) << name;
}

} // namespace
