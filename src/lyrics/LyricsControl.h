#pragma once

#include "lyrics/LyricsFile.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <functional>

namespace Pelorin {

class IiTunes;

// The lyrics control of a skin window (Cantom): started once, it loads the sync file of the
// playing track and walks its timed lines as playback advances, estimating the position to a
// tenth of a second between the player's whole seconds. Its current text reaches the screen
// through textChanged. It reloads on play and on a track change and shows "No Song Playing!"
// when playback stops.
//
// The walk keeps its old habits: each timed line is shown on two consecutive steps, the line
// after an empty line is never shown, the tenths are reset only by a change of the whole-second
// position (so while paused they grow past a second), and after "[EndLyrics]" the walk goes on
// from the "[DefaultLyrics]" header line, whose next header line is no time: the walk reports
// that once and waits for the next track.
class LyricsControl : public QObject {
    Q_OBJECT
public:
    // One pass of the loop per tick.
    static constexpr int PassIntervalMs = 50;
    static QString NoSongText() { return QStringLiteral("No Song Playing!"); }

    // `programFolder` replaces "APPPATH" in the lyrics path; `ticks` is the clock in
    // milliseconds (tests step it by hand).
    explicit LyricsControl(QString programFolder, std::function<qint64()> ticks = {},
                           QObject* parent = nullptr);
    ~LyricsControl() override;

    // Stores the lyrics folder, follows `player`'s events, loads the playing track's lyrics and
    // starts the loop.
    void StartLyrics(IiTunes* player, const QString& lyricsPath);
    // The playing track's file, then InitThing.
    void LoadLyrics();
    // Back to the top: the default text, and the first timed line held as next.
    void InitThing();
    // One step of the walk.
    void CheckLyrics();
    // Ends the loop; loopEnded follows.
    void CloseLyrics();
    // One pass of the loop: the tenths, the player's position, one step, the position kept.
    void Pass();
    static QString getVersion() { return QStringLiteral("1"); }

    bool Running() const { return m_timer.isActive(); }
    bool Closing() const { return m_closing; }
    const QString& CurText() const { return m_curText; }
    const QString& NextText() const { return m_nextText; }
    double NextTime() const { return m_nextTime; }
    double LineStart() const { return m_lineStart; }
    double Fraction() const { return m_fraction; }
    double Position() const { return m_position; }
    int LastPos() const { return m_lastPos; }
    const LyricsFile& File() const { return m_file; }
    const QString& LyricsPath() const { return m_lyricsPath; }

Q_SIGNALS:
    // CurText was set by the walk, by InitThing or by a stop.
    void textChanged(const QString& text);
    // The loop ended (CloseLyrics): the program ends with it.
    void loopEnded();

private:
    void SetCurText(const QString& text);
    // A timed line's time as a number; VbError (type mismatch) when it is none.
    static double TimeOf(const QString& line);
    void OnStop();

    QString m_programFolder;
    std::function<qint64()> m_ticks;
    LyricsFile m_file;
    QPointer<IiTunes> m_player;
    QString m_lyricsPath;
    QTimer m_timer;
    QString m_curText;
    QString m_nextText;
    double m_nextTime = 0;
    double m_lineStart = 0;
    int m_lastPos = 0;
    double m_fraction = 0;
    double m_position = 0;
    qint64 m_lastTenth = 0;
    bool m_closing = false;
    // Set by a stop or by a line that is no time: the walk waits for the next load.
    bool m_waiting = false;
};

} // namespace Pelorin
