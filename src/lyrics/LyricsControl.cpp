#include "lyrics/LyricsControl.h"

#include "base/Log.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "player/IITTrack.h"
#include "player/IiTunes.h"

#include <QElapsedTimer>

namespace Pelorin {

namespace {

qint64 SteadyMilliseconds() {
    static QElapsedTimer clock;
    if (!clock.isValid())
        clock.start();
    return clock.elapsed();
}

} // namespace

LyricsControl::LyricsControl(QString programFolder, std::function<qint64()> ticks, QObject* parent)
    : QObject(parent), m_programFolder(std::move(programFolder)),
      m_ticks(ticks ? std::move(ticks) : std::function<qint64()>(&SteadyMilliseconds)),
      m_file(m_programFolder) {
    m_timer.setInterval(PassIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &LyricsControl::Pass);
}

LyricsControl::~LyricsControl() = default;

void LyricsControl::StartLyrics(IiTunes* player, const QString& lyricsPath) {
    m_lyricsPath = lyricsPath;
    m_player = player;
    if (player != nullptr) {
        connect(player, &IiTunes::OnPlayerPlayEvent, this, [this] { LoadLyrics(); });
        connect(player, &IiTunes::OnPlayerPlayingTrackChangedEvent, this, [this] { LoadLyrics(); });
        connect(player, &IiTunes::OnPlayerStopEvent, this, &LyricsControl::OnStop);
    }
    LoadLyrics();
    m_lastTenth = m_ticks();
    m_closing = false;
    m_timer.start();
}

void LyricsControl::LoadLyrics() {
    m_waiting = false;
    QString artist;
    QString name;
    try {
        const std::shared_ptr<IITTrack> track = m_player ? m_player->CurrentTrack() : nullptr;
        if (track) {
            artist = track->Artist();
            name = track->Name();
        }
    } catch (const VbError& error) {
        qCInfo(lcLyrics).noquote() << QStringLiteral("No lyrics: %1").arg(error.description());
    }
    m_file.LoadLyricFile(m_lyricsPath + LyricsFile::GetFileName(artist, name));
    InitThing();
}

double LyricsControl::TimeOf(const QString& line) {
    const QString time = LyricsFile::GetCommandPart(true, line);
    if (!Rules::IsWholeNumberText(time))
        throw VbError::TypeMismatch();
    return Rules::LeadingNumber(time);
}

void LyricsControl::SetCurText(const QString& text) {
    if (text != m_curText)
        qCDebug(lcLyrics).noquote()
            << QStringLiteral("lyrics: shows \"%1\"").arg(Rules::Printable(text));
    m_curText = text;
    Q_EMIT textChanged(m_curText);
}

void LyricsControl::InitThing() {
    QString key = QStringLiteral("DefaultLyrics");
    SetCurText(m_file.GetCommand(key));
    key = QStringLiteral("Lyrics");
    m_file.GetCommand(key);
    const int line = m_file.CurLine();
    if (line < m_file.Lines().size() - 1) {
        m_nextTime = TimeOf(m_file.Lines().at(line + 1));
        m_nextText = LyricsFile::GetCommandPart(false, m_file.Lines().at(line + 1));
    }
}

void LyricsControl::CheckLyrics() {
    const double now = m_lastPos + m_fraction;
    if (m_file.TimeOffset() + m_nextTime <= now) {
        SetCurText(m_nextText);
        const int line = m_file.CurLine() + 1;
        m_file.SetCurLine(line);
        if (line > m_file.Lines().size() - 1)
            return;
        const QString& text = m_file.Lines().at(line);
        if (text == QLatin1String("[EndLyrics]")) {
            QString key = QStringLiteral("DefaultLyrics");
            m_nextText = m_file.GetCommand(key);
        } else if (text.isEmpty()) {
            m_file.SetCurLine(line + 1);
        } else {
            m_lineStart = m_file.TimeOffset() + m_nextTime;
            m_nextTime = TimeOf(text);
            m_nextText = LyricsFile::GetCommandPart(false, text);
        }
    } else if (now < m_lineStart) {
        InitThing();
    }
}

void LyricsControl::Pass() {
    if (m_closing)
        return;
    const qint64 now = m_ticks();
    if (now - m_lastTenth >= 100) {
        m_fraction += 0.1;
        m_lastTenth = now;
    }
    int position = m_lastPos;
    try {
        if (m_player)
            position = m_player->PlayerPosition();
    } catch (const VbError&) {
        // No player to ask this pass: the walk goes on from what it knew.
    }
    // Ten tenths added up are not exactly 1.0: in practice only a new whole second resets them.
    if (position != m_lastPos || m_fraction == 1.0) {
        m_fraction = 0;
        m_lastPos = position;
        m_lastTenth = now;
    }
    if (!m_waiting) {
        try {
            CheckLyrics();
        } catch (const VbError& error) {
            // A line that is no time ends the walk for this track (it comes after every
            // "[EndLyrics]": the header line after "[DefaultLyrics]").
            m_waiting = true;
            const int line = m_file.CurLine();
            qCWarning(lcLyrics).noquote()
                << QStringLiteral("Pelorin: the lyrics stop at line %1 (\"%2\"): %3.")
                       .arg(line + 1)
                       .arg(Rules::Printable(m_file.Lines().value(line)), error.description());
        }
    }
    m_position = m_lastPos + m_fraction;
}

void LyricsControl::OnStop() {
    m_file.Clear();
    // Shown, and kept on screen until the next track plays.
    m_waiting = true;
    SetCurText(NoSongText());
}

void LyricsControl::CloseLyrics() {
    if (m_closing)
        return;
    m_closing = true;
    const bool wasRunning = m_timer.isActive();
    m_timer.stop();
    if (wasRunning)
        Q_EMIT loopEnded();
}

} // namespace Pelorin
