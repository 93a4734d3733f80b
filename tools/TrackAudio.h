#pragma once

#include "LibraryCatalog.h"

#include <QString>

namespace Pelorin {

// Writes the sound of one track: test tones straight from sox's synthesiser, demo tracks as an
// arpeggiated chord progression rendered here and encoded by sox. The format follows the file
// name's extension (.ogg, .flac, .mp3). sox runs in repeatable mode, so the bytes are the same
// on every run.
class TrackAudio {
public:
    explicit TrackAudio(QString soxProgram = QStringLiteral("sox"));

    // Empty on success, else what went wrong.
    QString Write(const TrackSpec& track, const QString& path, const QString& scratchFolder) const;

private:
    QString RunSox(const QStringList& arguments) const;
    static QString WriteProgression(const ToneSpec& tone, double seconds, const QString& wavPath);

    QString m_sox;
};

} // namespace Pelorin
