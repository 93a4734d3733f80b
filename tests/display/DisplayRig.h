#pragma once

#include "display/LabelMeasurer.h"
#include "display/TrackDisplay.h"
#include "platform/PictureLoader.h"
#include "skin/SkinHost.h"
#include "skin/SkinLineProcessor.h"
#include "support/display/MemoryDisplayHost.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QBuffer>
#include <QColor>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <cstdio>
#include <gtest/gtest.h>
#include <unistd.h>

namespace Pelorin::Testing {

// Everything the program writes to stderr while it lives; message boxes write one line each
// (tests run unattended, so no box is shown).
class StderrCapture {
public:
    StderrCapture() {
        std::fflush(stderr);
        if (m_file.open()) {
            m_saved = ::dup(2);
            ::dup2(m_file.handle(), 2);
        }
    }
    ~StderrCapture() {
        std::fflush(stderr);
        if (m_saved >= 0) {
            ::dup2(m_saved, 2);
            ::close(m_saved);
        }
    }
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

    QString Text() const {
        std::fflush(stderr);
        QFile file(m_file.fileName());
        if (!file.open(QIODevice::ReadOnly))
            return QString();
        return QString::fromLocal8Bit(file.readAll());
    }

private:
    QTemporaryFile m_file;
    int m_saved = -1;
};

// Applies skin lines with real pictures from the skin folder.
class SkinLineHost : public SkinHost {
public:
    void LoadPicture(const QString& fullPath) override { Pelorin::LoadPicture(fullPath); }
    void RunCode(const QString&) override {}
    void NewEvent(const QString&) override {}
    QSize PrimaryScreenSize() const override { return {1280, 800}; }
};

// A picture of one colour, in any format Qt writes.
inline QByteArray PictureBytes(const QColor& colour, const char* format = "PNG", int width = 8,
                               int height = 8) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

inline bool WritePictureFile(const QString& path, const QColor& colour) {
    QFile file(path);
    const QByteArray bytes = PictureBytes(colour);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QColor ColourOf(const QImage& image) {
    return image.isNull() ? QColor() : QColor(image.pixel(0, 0));
}

// A skin window in memory, filled by real skin lines, over the in-memory player; the track
// display under test drives it. Artwork goes to a temporary folder of this rig's own.
class DisplayRig {
public:
    DisplayRig() {
        EXPECT_TRUE(m_skinDir.isValid());
        EXPECT_TRUE(m_runtimeDir.isValid());
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtimeDir.path()));
        folder = m_skinDir.path() + u'/';
        host.Model().BeginLoad(folder);
        host.setPlayer(&player);
    }

    // Applies one skin line as the loader does; the test fails when the line fails.
    void Line(const QString& line) {
        try {
            ProcessLine(host.Model(), line, folder, m_lineHost);
        } catch (const VbError& error) {
            ADD_FAILURE() << "skin line failed: " << line.toStdString() << ": "
                          << error.description().toStdString();
        }
    }

    // A label of the given width with a template; returns its index.
    int Label(int width, const QString& tag) {
        Line(QStringLiteral("label=0;0;%1;20;%2").arg(width).arg(tag));
        return host.Model().LabelCount();
    }

    // Adds the track to the library and the queue and plays it (after whatever played).
    int PlayTrack(const MemoryTrackData& data) {
        const int id = player.addLibraryTrack(data);
        player.enqueue(id);
        if (player.playState() == MemoryPlayState::Stopped)
            player.Play();
        else
            player.NextTrack();
        return id;
    }

    static MemoryTrackData Track(const QString& artist, const QString& name, int seconds = 200) {
        MemoryTrackData data;
        data.artist = artist;
        data.name = name;
        data.duration = seconds;
        return data;
    }

    QString Caption(int index) const { return host.caption(index); }
    int TextWidth(int index, const QString& text) {
        return LabelMeasurer(host.LabelFont(index)).TextWidth(text);
    }
    void SetLabelWidth(int index, int width) {
        host.Model().lblInfo[static_cast<std::size_t>(index)].Geometry.Width = width;
    }
    QString LabelText(int index) { return host.Model().LabelTexts.value(index); }
    QString ArtworkFile() const {
        return m_runtimeDir.path() + QStringLiteral("/pelorin/tempart.jpg");
    }

    QString folder;
    MemoryPlayer player;
    MemoryDisplayHost host;
    TrackDisplay display{host, host};

private:
    QTemporaryDir m_skinDir;
    QTemporaryDir m_runtimeDir;
    SkinLineHost m_lineHost;
};

} // namespace Pelorin::Testing
