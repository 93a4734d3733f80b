// Feeds arbitrary bytes through everything a skin file meets before any window exists: decoding,
// line splitting, the line grammar and ProcessLine on a model. Any crash, hang, sanitizer report
// or broken invariant is a finding.
#include "base/TextFile.h"
#include "base/VbError.h"
#include "skin/SkinHost.h"
#include "skin/SkinLine.h"
#include "skin/SkinLineProcessor.h"
#include "skin/SkinModel.h"

#include <QtGlobal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace Pelorin;

class QuietHost final : public SkinHost {
public:
    void LoadPicture(const QString&) override {}
    void RunCode(const QString&) override {}
    void NewEvent(const QString&) override {}
    QSize PrimaryScreenSize() const override { return QSize(1024, 768); }
};

void Check(bool condition) {
    if (!condition)
        std::abort();
}

void CheckModel(const SkinModel& model) {
    Check(model.lblInfo.size() == model.scrollWidth.size());
    Check(static_cast<qsizetype>(model.lblInfo.size()) == model.LabelTexts.size());
    Check(static_cast<qsizetype>(model.img.size()) == model.ImagePictures.size());
    Check(!model.tmr.empty());
    Check(!model.KeyShortcuts.isEmpty());
    Check(model.KeyShortcuts.back() == KeyShortcut());
    Check(!model.lblInfo[0].Visible && !model.img[0].Visible);
}

} // namespace

// Qt warns on stderr about file names holding NUL characters; that is expected noise here.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    // Decoding keeps every byte: Windows-1252 maps all 256, and valid UTF-8 round-trips.
    TextEncoding encoding = TextEncoding::Utf8;
    bool hadBom = false;
    const QString text = TextFile::Decode(bytes, &encoding, &hadBom);
    QByteArray again = TextFile::Encode(text, encoding);
    if (hadBom)
        again.prepend("\xEF\xBB\xBF");
    Check(again == bytes);

    const TextFileContent content = TextFile::FromBytes(bytes);
    Check(content.HasCR == bytes.contains('\r'));
    for (const QString& line : content.Lines)
        Check(!line.contains(u'\r'));

    SkinModel model;
    model.BeginLoad(QStringLiteral("/nonexistent-pelorin-fuzz/"));
    QuietHost host;
    for (const QString& line : content.Lines) {
        if (const auto entry = ParseSkinLine(line)) {
            Check(!entry->Keyword.isEmpty() || line.startsWith(u'='));
            Check(entry->Fields.isEmpty() == entry->Value.isEmpty());
        }
        try {
            ProcessLine(model, line, model.SkinFolder, host);
        } catch (const VbError& error) {
            Check(!SkinLineErrorText(error, line).isEmpty());
        }
        CheckModel(model);
    }
    return 0;
}
