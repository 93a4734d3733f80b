#pragma once

#include "base/VbError.h"
#include "skin/SkinHost.h"

#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QStringList>

namespace Pelorin::Testing {

// Loads a picture the way the skin window's loader does (any format Qt reads), so missing and
// corrupt files fail for real.
inline void LoadPictureFile(const QString& fullPath) {
    QImageReader reader(fullPath);
    if (reader.read().isNull())
        throw VbError::CannotLoadFile();
}

// A host that loads real pictures and records what the skin asked for.
class RecordingHost : public SkinHost {
public:
    void LoadPicture(const QString& fullPath) override {
        Attempted.append(fullPath);
        LoadPictureFile(fullPath);
        Loaded.append(fullPath);
    }
    void RunCode(const QString& text) override { Codes.append(text); }
    void NewEvent(const QString& text) override { Events.append(text); }
    QSize PrimaryScreenSize() const override { return Screen; }

    QStringList Attempted;
    QStringList Loaded;
    QStringList Codes;
    QStringList Events;
    QSize Screen{1024, 768};
};

// A small real picture.
inline bool WritePicture(const QString& path) {
    QImage image(4, 4, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image.save(path, "PNG");
}

inline bool WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace Pelorin::Testing
