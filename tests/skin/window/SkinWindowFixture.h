#pragma once

// Real skin windows on the test's X server (Xvfb with openbox): skin folders in a temporary
// folder, the program's open-forms registry, the X11 window system, and the steps that opening
// a skin window takes.
#include "StderrCapture.h"
#include "X11Probe.h"
#include "app/FormsRegistry.h"
#include "base/VbError.h"
#include "platform/WindowSystem.h"
#include "skin/window/SkinControls.h"
#include "skin/window/VbTimer.h"
#include "skin/window/frmMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace Pelorin::Testing {

class SkinWindowFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("xcb"))
            << "this test needs an X server (run it under xvfb-run)";
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(probe.Ok());
        windowSystem = CreateWindowSystem();
    }

    void TearDown() override {
        for (Form* form : forms.Forms())
            delete dynamic_cast<QObject*>(form);
        FlushDeletes();
    }

    static void FlushDeletes() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // A skin folder "<temp>/Skins/<name>/" (ending with "/") whose skin.ini holds the lines,
    // each ended with CR LF.
    QString WriteSkin(const QString& name, const QStringList& lines) {
        const QString folder = dir.path() + QLatin1String("/Skins/") + name + u'/';
        QDir().mkpath(folder);
        QFile file(folder + QLatin1String("skin.ini"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        for (const QString& line : lines)
            file.write(line.toUtf8() + "\r\n");
        return folder;
    }

    // A picture file in a skin folder: `colour` where it is drawn, transparent elsewhere (the
    // right half).
    static void WritePicture(const QString& path, QSize size, QColor colour) {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.fillRect(QRect(0, 0, size.width() / 2, size.height()), colour);
        painter.end();
        ASSERT_TRUE(image.save(path));
    }

    frmMain::Links MakeLinks() {
        frmMain::Links links;
        links.forms.Forms = [this] { return forms.Forms(); };
        links.forms.Add = [this](Form* form) { forms.Add(form); };
        links.forms.Remove = [this](Form* form) { forms.Remove(form); };
        links.onUnloading = [this](SkinWindow& window) {
            unloadingCalls.append(window.Tag());
            countAtUnloading.append(forms.CountNamed(QStringLiteral("frmMain")));
            if (shellUnloading)
                shellUnloading(window);
        };
        links.services = services;
        links.windowSystem = windowSystem.get();
        links.pacing = pacing;
        links.moveMethod = moveMethod;
        return links;
    }

    frmMain* Create() {
        auto* window = new frmMain(MakeLinks());
        // The window's signals, for tests that listen to them from the start.
        const auto hook = [window](auto signal, const std::function<void()>& handler) {
            if (handler)
                QObject::connect(window, signal, window, [handler] { handler(); });
        };
        hook(&frmMain::firstActivated, windowSignals.firstActivated);
        hook(&frmMain::menuRequested, windowSignals.menuRequested);
        hook(&frmMain::progressTimerTicked, windowSignals.progressTimerTicked);
        return window;
    }

    // What opening a skin window does: create, load, optionally place, RunAfter.
    QPointer<frmMain> Open(const QString& folder, int leftTwips = -99, int topTwips = -99) {
        frmMain* window = Create();
        window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
        if (leftTwips != -99)
            window->SetLeftTwips(leftTwips);
        if (topTwips != -99)
            window->SetTopTwips(topTwips);
        window->RunAfter();
        return window;
    }

    static bool WaitExposed(QWidget* window) { return QTest::qWaitForWindowExposed(window); }
    static xcb_window_t Id(QWidget* window) { return static_cast<xcb_window_t>(window->winId()); }

    int OpenSkinWindows() const { return forms.CountNamed(QStringLiteral("frmMain")); }

    QTemporaryDir dir;
    X11Probe probe;
    std::unique_ptr<WindowSystem> windowSystem;
    FormsRegistry forms;
    SkinWindowServices services;
    struct {
        std::function<void()> firstActivated;
        std::function<void()> menuRequested;
        std::function<void()> progressTimerTicked;
    } windowSignals;
    EffectPacing* pacing = nullptr;
    WindowMover::Method moveMethod = WindowMover::Method::SystemFirst;
    QStringList unloadingCalls;
    // The shell's part of closing, when a test has a shell.
    std::function<void(SkinWindow&)> shellUnloading;
    QList<int> countAtUnloading;
};

} // namespace Pelorin::Testing
