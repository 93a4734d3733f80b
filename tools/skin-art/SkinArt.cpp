// Draws the pictures of the bundled skins into data/: run it after changing a picture or a skin's
// layout, and commit what it writes. The rectangles below are those of the skins' skin.ini files.
//
//   skin-art DATA_FOLDER     (the CMake target "skin-art-update" passes the repository's data/)

#include "Pictures.h"

#include <QCoreApplication>
#include <QDir>
#include <QImageWriter>
#include <QTextStream>
#include <functional>

namespace Pelorin::SkinArt {

namespace {

class Writer {
public:
    explicit Writer(QString folder) : m_folder(std::move(folder)) {}

    void Write(const QString& name, const QImage& image) {
        const QString path = m_folder + QLatin1Char('/') + name;
        QImageWriter writer(path, "png");
        // Full compression and no text chunks: small files that are the same on every run.
        writer.setCompression(100);
        if (!writer.write(image)) {
            QTextStream(stderr) << "skin-art: cannot write " << path << ": " << writer.errorString()
                                << '\n';
            m_failed = true;
        }
    }

    // The normal, hover and pressed pictures of one button: NAME.png, NAME_hover.png,
    // NAME_down.png.
    void WriteButton(const QString& name, const std::function<QImage(ButtonState)>& paint) {
        Write(name + QStringLiteral(".png"), paint(ButtonState::Normal));
        Write(name + QStringLiteral("_hover.png"), paint(ButtonState::Hover));
        Write(name + QStringLiteral("_down.png"), paint(ButtonState::Pressed));
    }

    bool Failed() const { return m_failed; }

private:
    QString m_folder;
    bool m_failed = false;
};

bool MakeFolder(const QString& path) {
    if (QDir().mkpath(path))
        return true;
    QTextStream(stderr) << "skin-art: cannot create " << path << '\n';
    return false;
}

// Default, and Lyrics: the same widget with a band for the lyrics below (`height` 128).
bool DefaultSkin(const QString& folder, int height = 100) {
    if (!MakeFolder(folder))
        return false;
    Writer out(folder);
    out.Write(QStringLiteral("background.png"),
              Background({.Size = {320, height},
                          .CornerRadius = 9,
                          .Grooves = {QRect(100, 63, 208, 4)},
                          .ArtworkWells = {QRect(12, 12, 76, 76)}}));
    const QSize flat(20, 20);
    out.WriteButton(QStringLiteral("prev"),
                    [&](ButtonState s) { return FlatButton(Glyph::Previous, s, flat); });
    out.WriteButton(QStringLiteral("next"),
                    [&](ButtonState s) { return FlatButton(Glyph::Next, s, flat); });
    out.WriteButton(QStringLiteral("stop"),
                    [&](ButtonState s) { return FlatButton(Glyph::Stop, s, flat); });
    out.WriteButton(QStringLiteral("play"),
                    [](ButtonState s) { return DiscButton(Glyph::PlayPause, s, QSize(24, 24)); });
    out.WriteButton(QStringLiteral("close"),
                    [](ButtonState s) { return CloseButton(s, QSize(14, 14)); });
    out.Write(QStringLiteral("star_on.png"), Star(true, QSize(11, 11)));
    out.Write(QStringLiteral("star_off.png"), Star(false, QSize(11, 11)));
    out.Write(QStringLiteral("progress.png"), ProgressBar(QSize(208, 4)));
    return !out.Failed();
}

bool MiniSkin(const QString& folder) {
    if (!MakeFolder(folder))
        return false;
    Writer out(folder);
    out.Write(QStringLiteral("background.png"), Background({.Size = {360, 28},
                                                            .CornerRadius = 14,
                                                            .Grooves = {QRect(34, 23, 294, 2)},
                                                            .ArtworkWells = {}}));
    out.WriteButton(QStringLiteral("play"),
                    [](ButtonState s) { return DiscButton(Glyph::PlayPause, s, QSize(22, 22)); });
    out.WriteButton(QStringLiteral("close"),
                    [](ButtonState s) { return CloseButton(s, QSize(16, 16)); });
    out.Write(QStringLiteral("progress.png"), ProgressBar(QSize(294, 2)));
    return !out.Failed();
}

bool DeskbandSkin(const QString& folder) {
    if (!MakeFolder(folder))
        return false;
    Writer out(folder);
    out.Write(QStringLiteral("background.png"), Background({.Size = {220, 30},
                                                            .CornerRadius = 0,
                                                            .Grooves = {QRect(72, 27, 144, 2)},
                                                            .ArtworkWells = {}}));
    const QSize flat(18, 18);
    out.WriteButton(QStringLiteral("prev"),
                    [&](ButtonState s) { return FlatButton(Glyph::Previous, s, flat); });
    out.WriteButton(QStringLiteral("next"),
                    [&](ButtonState s) { return FlatButton(Glyph::Next, s, flat); });
    out.WriteButton(QStringLiteral("play"),
                    [](ButtonState s) { return DiscButton(Glyph::PlayPause, s, QSize(22, 22)); });
    out.Write(QStringLiteral("progress.png"), ProgressBar(QSize(144, 2)));
    return !out.Failed();
}

} // namespace

} // namespace Pelorin::SkinArt

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() != 2) {
        QTextStream(stderr) << "Usage: skin-art DATA_FOLDER\n";
        return 2;
    }
    using namespace Pelorin::SkinArt;
    const QString data = args.at(1);
    const bool ok = DefaultSkin(data + QStringLiteral("/Skins/Default")) &&
                    DefaultSkin(data + QStringLiteral("/Skins/Lyrics"), 128) &&
                    MiniSkin(data + QStringLiteral("/Skins/Mini")) &&
                    DeskbandSkin(data + QStringLiteral("/Deskband/Default"));
    return ok ? 0 : 1;
}
