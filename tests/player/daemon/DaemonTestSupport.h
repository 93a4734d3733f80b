#pragma once

// Shared by the daemon backend's tests: a real daemon from the fixture, the backend connected to
// it, a recorder of the backend's events and a way to wait for them.
#include "PlayerDaemonFixture.h"
#include "base/VbError.h"
#include "player/daemon/DaemonPlayer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QStringList>
#include <QThread>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace Pelorin {

// Pumps events until `done` holds or `timeoutMs` passes; true when it held.
inline bool WaitUntil(const std::function<bool()>& done, int timeoutMs = 5000) {
    QDeadlineTimer deadline(timeoutMs);
    while (!done()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return true;
}

// Lets events arrive for a while (to show that none does).
inline void PumpFor(int ms) {
    WaitUntil([] { return false; }, ms);
}

// The events a player raised, by name, in order.
class EventRecorder {
public:
    explicit EventRecorder(IiTunes& player) {
        QObject::connect(&player, &IiTunes::OnPlayerPlayEvent, &m_context,
                         [this](std::shared_ptr<IITTrack>) { events << QStringLiteral("play"); });
        QObject::connect(&player, &IiTunes::OnPlayerPlayingTrackChangedEvent, &m_context,
                         [this](std::shared_ptr<IITTrack>) { events << QStringLiteral("track"); });
        QObject::connect(&player, &IiTunes::OnPlayerStopEvent, &m_context,
                         [this](std::shared_ptr<IITTrack>) { events << QStringLiteral("stop"); });
        QObject::connect(
            &player, &IiTunes::OnDatabaseChangedEvent, &m_context,
            [this](const QList<int>&, const QList<int>&) { events << QStringLiteral("database"); });
        QObject::connect(&player, &IiTunes::OnQuittingEvent, &m_context,
                         [this] { events << QStringLiteral("quitting"); });
    }

    bool WaitFor(const QString& name, int timeoutMs = 5000) {
        return WaitUntil([&] { return events.contains(name); }, timeoutMs);
    }

    QStringList events;

private:
    QObject m_context;
};

// A started daemon and the backend connected to it.
class DaemonTest : public ::testing::Test {
protected:
    void SetUp() override {
        const QString error = daemon.Start();
        ASSERT_TRUE(error.isEmpty()) << error.toStdString();
        player = MakePlayer();
        ASSERT_TRUE(player->IsWatching());
    }

    std::unique_ptr<DaemonPlayer> MakePlayer(int timeoutMs = 2000) {
        DaemonPlayer::Options options;
        options.address.host = daemon.SocketPath();
        options.timeoutMs = timeoutMs;
        return std::make_unique<DaemonPlayer>(options);
    }

    QString Mpc(const QStringList& arguments) { return daemon.Mpc(arguments); }

    // Queues the whole library in catalogue order ("mpc add /" would sort it).
    void QueueCatalogue() {
        Mpc({QStringLiteral("clear")});
        for (const TrackSpec& track : PlayerDaemonFixture::Catalog().tracks) {
            Mpc({QStringLiteral("add"), track.uri});
        }
    }

    // A filter expression for one file.
    static QString FileIs(const QString& uri) {
        QString quoted = uri;
        quoted.replace(u'\'', QStringLiteral("\\'"));
        return QStringLiteral("(file == '%1')").arg(quoted);
    }

    // One tag of one file as the daemon lists it now ("%comment%").
    QString TagOf(const QString& uri, const QString& format) {
        return Mpc({QStringLiteral("-f"), format, QStringLiteral("find"), FileIs(uri)});
    }

    QString StickerOf(const QString& uri, const QString& name) {
        return Mpc({QStringLiteral("sticker"), uri, QStringLiteral("get"), name});
    }

    PlayerDaemonFixture daemon;
    std::unique_ptr<DaemonPlayer> player;
};

} // namespace Pelorin
