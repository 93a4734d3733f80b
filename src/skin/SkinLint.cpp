#include "SkinLint.h"

#include "base/FileNames.h"
#include "base/TextFile.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "skin/SkinHost.h"
#include "skin/SkinLineProcessor.h"
#include "skin/SkinModel.h"

namespace Pelorin {

namespace {

// Pictures through the injected loader; the checker runs no code.
class LintHost final : public SkinHost {
public:
    LintHost(const std::function<void(const QString&)>& loadPicture, QSize screen)
        : m_loadPicture(loadPicture), m_screen(screen) {}

    void LoadPicture(const QString& fullPath) override {
        if (m_loadPicture)
            m_loadPicture(fullPath);
    }
    void RunCode(const QString&) override {}
    void NewEvent(const QString&) override {}
    QSize PrimaryScreenSize() const override { return m_screen; }

private:
    const std::function<void(const QString&)>& m_loadPicture;
    QSize m_screen;
};

// Long lines are cut so one fault stays one readable line; a lone LF (which does not end a skin
// line) is shown as "\n".
QString Shown(const QString& line) {
    constexpr qsizetype Limit = 200;
    QString shown =
        line.size() > Limit
            ? line.left(Limit) + QStringLiteral("... (%1 more characters)").arg(line.size() - Limit)
            : line;
    shown.replace(u'\n', QStringLiteral("\\n"));
    return Rules::Printable(shown);
}

QString WhereInLine(const SkinLineTrace& trace) {
    if (trace.Field < 0)
        return QStringLiteral("the value");
    return QStringLiteral("field %1 (%2)").arg(trace.Field + 1).arg(trace.Meaning);
}

QString Reason(const SkinLineFault& fault) {
    const VbError& error = fault.Error;
    const QString why = QStringLiteral(" (") + error.description() + u')';
    switch (error.number()) {
    case VbError::SubscriptOutOfRangeNumber:
        return QStringLiteral("missing field %1 (%2)")
            .arg(fault.Trace.Field + 1)
            .arg(fault.Trace.Meaning);
    case VbError::OverflowNumber:
        if (fault.Trace.Meaning == u"interaction count")
            return QStringLiteral("too many anyinteraction lines") + why;
        return (fault.Trace.Meaning == u"colour" ? QStringLiteral("colour out of range in ")
                                                 : QStringLiteral("number out of range in ")) +
               WhereInLine(fault.Trace) + why;
    case VbError::TypeMismatchNumber:
        return QStringLiteral("not True, False or a number in ") + WhereInLine(fault.Trace) + why;
    case VbError::ControlArrayElementMissingNumber:
        return QStringLiteral("label settings before their label") + why;
    case VbError::CannotLoadFileNumber:
        return QStringLiteral("missing picture ") + fault.Trace.File + why;
    default:
        return QStringLiteral("Unknown Error: ") + error.description();
    }
}

} // namespace

QString SkinFileMixedLineEndsWarning() {
    return QStringLiteral("mixes CR LF and lone LF line ends; in a file with CR line ends a lone "
                          "LF ends no line, so those lines run together (save it with one kind "
                          "of line end)");
}

int CheckSkin(const QString& folder, const std::function<void(const QString&)>& loadPicture,
              QTextStream& out, QSize primaryScreen) {
    QString skinFolder = folder;
    if (!skinFolder.endsWith(u'/'))
        skinFolder += u'/';
    const QString fileName = FileNames::InFolder(skinFolder, QStringLiteral("skin.ini"));

    TextFileContent content;
    QString error;
    if (!TextFile::ReadConfined(fileName, skinFolder, TextFile::MaxSkinFileBytes, content,
                                &error)) {
        out << "skin.ini: cannot read " << fileName << ": " << error << '\n';
        return 1;
    }

    int faults = 0;
    if (content.Lines.isEmpty()) {
        out << "skin.ini: the file is empty\n";
        ++faults;
    } else if (content.MixesLineEnds) {
        out << "skin.ini: " << SkinFileMixedLineEndsWarning() << '\n';
        ++faults;
    }

    SkinModel model;
    model.BeginLoad(skinFolder);
    LintHost host(loadPicture, primaryScreen);
    const auto onFault = [&](const SkinLineFault& fault) {
        ++faults;
        out << "skin.ini:" << fault.LineIndex + 1 << ": " << Rules::Printable(Reason(fault)) << ": "
            << Shown(fault.Line) << '\n';
    };
    const auto afterLine = [&](qsizetype index, SkinLineResult result, const SkinChange&) {
        if (result != SkinLineResult::UnknownKeyword)
            return;
        ++faults;
        const QString& line = content.Lines[index];
        out << "skin.ini:" << index + 1 << ": unknown keyword \""
            << Shown(line.left(line.indexOf(u'='))) << "\": " << Shown(line) << '\n';
    };
    ProcessLines(model, content.Lines, skinFolder, host, onFault, afterLine);
    out.flush();
    return faults;
}

} // namespace Pelorin
