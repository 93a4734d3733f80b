#pragma once

// A RunCodeHost for tests and the fuzzer, and the window's player as FixedWindowPlayer gives it
// (the in-memory player or the real daemon): the window and the program are recorded as lines in
// `calls`, and nothing sleeps, pumps, ends the process or touches a file unless the test asks for
// it.
#include "runcode/RunCodeHost.h"
#include "support/player/FixedWindowPlayer.h"

#include <QString>
#include <QStringList>
#include <functional>

namespace Pelorin::Testing {

class RecordingRunCodeHost : public RunCodeHost, public FixedWindowPlayer {
public:
    struct Message {
        QString text;
        QString title;
        MessageIcon icon;
    };

    explicit RecordingRunCodeHost(IiTunes* thePlayer = nullptr) : FixedWindowPlayer(thePlayer) {}

    bool MayChangeLibrary(const QString& command) override {
        calls.append(QStringLiteral("trust:") + command);
        return trusted;
    }

    void Beep() override {
        ++beeps;
        calls.append(QStringLiteral("beep"));
    }
    void ShowMessage(const QString& text, const QString& title, MessageIcon icon) override {
        messages.append({text, title, icon});
        calls.append(QStringLiteral("message"));
    }

    bool WindowGone() const override { return windowGone; }
    void UnloadWindow() override {
        calls.append(QStringLiteral("unload"));
        windowGone = true;
    }
    void ShowWindow() override { calls.append(QStringLiteral("show")); }
    void NormalTransparency() override { calls.append(QStringLiteral("normaltransparency")); }
    void MoveWindow() override { calls.append(QStringLiteral("movewindow")); }
    void FadeIn() override { calls.append(QStringLiteral("fadein")); }
    void FadeClose() override {
        calls.append(QStringLiteral("fadeclose"));
        windowGone = true;
    }
    bool ReloadTimer(int index) override {
        if (index < 1 || index > timerCount)
            return false;
        calls.append(QStringLiteral("reloadtimer:%1").arg(index));
        return true;
    }
    void imgRatings_Click(int index) override {
        calls.append(QStringLiteral("rating:%1").arg(index));
        if (ratingsClick)
            ratingsClick(index);
    }
    double LeftTwips() const override { return leftTwips; }
    double TopTwips() const override { return topTwips; }
    void SetBusyPointer(bool busy) override {
        calls.append(busy ? QStringLiteral("pointer:busy") : QStringLiteral("pointer:default"));
    }

    void OpenSkinWindow(const QString& skinFolder, std::int16_t left, std::int16_t top) override {
        calls.append(QStringLiteral("open:%1:%2:%3").arg(skinFolder).arg(left).arg(top));
    }
    void EndProgram() override { calls.append(QStringLiteral("end")); }
    QString SkinFolder(const QString& skinName) const override {
        return programFolder + QStringLiteral("/Skins/") + skinName + u'/';
    }
    QString ProgramFolder() const override { return programFolder; }
    QString PlayerApp() const override { return playerApp; }

    bool ShellOpen(const QString& file, const QString& parameters) override {
        calls.append(QStringLiteral("shell:%1:%2").arg(file, parameters));
        return shellOpenSucceeds;
    }
    bool MoveToTrash(const QString& path, QString* error) override {
        calls.append(QStringLiteral("trash:") + path);
        if (trash)
            return trash(path, error);
        return true;
    }
    void LetMessagesRun() override {
        calls.append(QStringLiteral("pump"));
        if (onPump)
            onPump();
    }

    // The calls of one kind ("rating", "open", "trash"...), in order.
    QStringList CallsOf(const QString& kind) const {
        QStringList found;
        for (const QString& call : calls) {
            if (call == kind || call.startsWith(kind + u':'))
                found.append(call);
        }
        return found;
    }

    bool windowGone = false;
    // Skin trust: whether the skin may change the music library.
    bool trusted = true;
    int timerCount = 0;
    double leftTwips = 0;
    double topTwips = 0;
    QString programFolder = QStringLiteral("/opt/pelorin");
    QString playerApp;
    bool shellOpenSucceeds = true;
    std::function<bool(const QString&, QString*)> trash;
    std::function<void()> onPump;
    std::function<void(int)> ratingsClick;

    int beeps = 0;
    QStringList calls;
    QList<Message> messages;
};

} // namespace Pelorin::Testing
