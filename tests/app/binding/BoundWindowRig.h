#pragma once

// Real skin windows (frmMain) bound to the in-memory player through the program's binding: skin
// folders in a temporary folder, the open-forms registry, and a program whose shell operations
// are recorded. For offscreen tests of what the binding wires together.
#include "app/FormsRegistry.h"
#include "app/binding/SkinWindowBinding.h"
#include "player/link/PlayerApplication.h"
#include "player/link/PlayerLink.h"
#include "skin/window/SkinControls.h"
#include "skin/window/frmMain.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace Pelorin::Testing {

class BoundWindowRig {
public:
    BoundWindowRig()
        : application([] { return std::make_unique<MemoryPlayer>(); },
                      [this] { return playerRunning; }) {}

    ~BoundWindowRig() {
        for (Form* form : forms.Forms())
            delete dynamic_cast<QObject*>(form);
        FlushDeletes();
    }

    static void FlushDeletes() {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // The one player object, made on first use (so a test can fill it before windows connect).
    MemoryPlayer& Player() { return *static_cast<MemoryPlayer*>(application.CreateiTunesApp()); }

    // A library track queued and playing.
    int PlayTrack(const MemoryTrackData& data) {
        const int id = Player().addLibraryTrack(data);
        Player().enqueue(id);
        Player().Play();
        return id;
    }

    static MemoryTrackData Track(const QString& name, int seconds) {
        MemoryTrackData data;
        data.name = name;
        data.artist = QStringLiteral("Artist of ") + name;
        data.album = QStringLiteral("Album of ") + name;
        data.duration = seconds;
        data.location = QStringLiteral("/music/") + name + QStringLiteral(".ogg");
        return data;
    }

    // "<temp>/Skins/<name>/" with skin.ini holding the lines, each ended with CR LF.
    QString WriteSkin(const QString& name, const QStringList& lines) {
        const QString folder = dir.path() + QStringLiteral("/Skins/") + name + u'/';
        QDir().mkpath(folder);
        QFile file(folder + QStringLiteral("skin.ini"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        for (const QString& line : lines)
            file.write(line.toUtf8() + "\r\n");
        return folder;
    }

    // A picture of one colour.
    static QImage Picture(QColor colour, QSize size = QSize(8, 8)) {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(colour);
        return image;
    }
    static void WritePicture(const QString& path, QColor colour, QSize size = QSize(8, 8)) {
        ASSERT_TRUE(Picture(colour, size).save(path));
    }
    // The colour at the middle of what an image control shows; invalid when it shows nothing.
    static QColor Shown(const PictureBox* box) {
        if (box == nullptr || box->Picture().isNull())
            return QColor();
        const QImage& picture = box->Picture();
        return picture.pixelColor(picture.width() / 2, picture.height() / 2);
    }

    SkinWindowProgram Program() {
        SkinWindowProgram program;
        program.player = &application;
        program.openSkinWindow = [this](const QString& folder, std::int16_t left,
                                        std::int16_t top) {
            opened.append(QStringLiteral("%1|%2|%3").arg(folder).arg(left).arg(top));
        };
        program.closeAllWindows = [this] {
            ++closeAllCalls;
            for (Form* form : forms.Forms()) {
                if (forms.Contains(form))
                    form->Unload();
            }
        };
        program.endProgram = [this] { ++endProgramCalls; };
        program.showMenu = [this](frmMain* window) { menuCallers.append(window); };
        program.shellOpen = [this](const QString& file, const QString& parameters) {
            shellOpens.append(file + u'|' + parameters);
            return true;
        };
        program.skinFolder = [this](const QString& name) {
            return dir.path() + QStringLiteral("/Skins/") + name + u'/';
        };
        program.skinWindowCount = [this] { return forms.CountNamed(QStringLiteral("frmMain")); };
        program.programFolder = dir.path();
        program.lyricsPath = [] { return QStringLiteral("APPPATH\\Lyrics\\"); };
        program.switchingSkin = [this] { return switching; };
        program.firstActivationSeen = firstActivationSeen;
        program.playerApp = [] { return QString(); };
        return program;
    }

    frmMain::Links Links() {
        frmMain::Links links;
        links.forms.Forms = [this] { return forms.Forms(); };
        links.forms.Add = [this](Form* form) { forms.Add(form); };
        links.forms.Remove = [this](Form* form) { forms.Remove(form); };
        links.moveMethod = WindowMover::Method::ByHandOnly;
        return links;
    }

    // What opening a skin window does: create (bound), load, RunAfter; waits until it is shown.
    SkinWindowBinding* Open(const QString& folder) {
        SkinWindowBinding* binding = SkinWindowBinding::Create(Links(), Program());
        frmMain* window = binding->Window();
        window->LoadSkin(folder + QStringLiteral("skin.ini"), folder);
        window->RunAfter();
        if (!window->IsUnloaded()) {
            EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
        }
        return binding;
    }

    SkinWindowBinding* OpenSkin(const QString& name, const QStringList& lines) {
        return Open(WriteSkin(name, lines));
    }

    static bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 3000) {
        return QTest::qWaitFor(condition, timeoutMs);
    }

    QTemporaryDir dir;
    FormsRegistry forms;
    bool playerRunning = true;
    PlayerApplication application;
    QStringList opened;
    QStringList shellOpens;
    QList<frmMain*> menuCallers;
    bool switching = false;
    std::shared_ptr<bool> firstActivationSeen = std::make_shared<bool>(false);
    int closeAllCalls = 0;
    int endProgramCalls = 0;
};

} // namespace Pelorin::Testing
