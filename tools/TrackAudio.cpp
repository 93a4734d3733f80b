#include "TrackAudio.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace Pelorin {

namespace {

constexpr int kRate = 44100;

double MidiFrequency(double note) {
    return 440.0 * std::pow(2.0, (note - 69.0) / 12.0);
}

// A sine oscillator stepped by rotation, so rendering needs no sin() per sample (the tool runs
// in unoptimised sanitizer builds too).
class Oscillator {
public:
    explicit Oscillator(double frequency)
        : m_cos(std::cos(2.0 * std::numbers::pi * frequency / kRate)),
          m_sin(std::sin(2.0 * std::numbers::pi * frequency / kRate)) {}
    double Next() {
        const double value = m_y;
        const double x = m_x * m_cos - m_y * m_sin;
        m_y = m_x * m_sin + m_y * m_cos;
        m_x = x;
        return value;
    }

private:
    double m_cos;
    double m_sin;
    double m_x = 1.0;
    double m_y = 0.0;
};

double DecayPerSample(double seconds) {
    return std::exp(-1.0 / (seconds * kRate));
}

// A plucked, slightly bell-like note added into the stereo buffer.
void AddNote(std::vector<float>& left, std::vector<float>& right, double start, double length,
             double frequency, double amplitude, double pan, double decay) {
    const auto first = static_cast<size_t>(start * kRate);
    const auto count = static_cast<size_t>(length * kRate);
    const double leftGain = std::cos(pan * std::numbers::pi / 2.0);
    const double rightGain = std::sin(pan * std::numbers::pi / 2.0);
    Oscillator fundamental(frequency), second(2.0 * frequency), third(3.0 * frequency);
    const double decay1 = DecayPerSample(decay);
    const double decay2 = DecayPerSample(0.25);
    const double decay3 = DecayPerSample(0.12);
    double envelope1 = amplitude, envelope2 = amplitude * 0.35, envelope3 = amplitude * 0.12;
    const size_t attack = kRate * 6 / 1000;
    const size_t release = kRate * 50 / 1000;
    for (size_t i = 0; i < count && first + i < left.size(); ++i) {
        double shape = 1.0;
        if (i < attack) {
            shape = static_cast<double>(i) / attack;
        } else if (count - i < release) {
            shape = static_cast<double>(count - i) / release;
        }
        const double sample = shape * (envelope1 * fundamental.Next() + envelope2 * second.Next() +
                                       envelope3 * third.Next());
        envelope1 *= decay1;
        envelope2 *= decay2;
        envelope3 *= decay3;
        left[first + i] += static_cast<float>(sample * leftGain);
        right[first + i] += static_cast<float>(sample * rightGain);
    }
}

// A soft pad that swells in and out over one bar.
void AddPad(std::vector<float>& left, std::vector<float>& right, double start, double length,
            double frequency, double amplitude) {
    const auto first = static_cast<size_t>(start * kRate);
    const auto count = static_cast<size_t>(length * kRate);
    Oscillator swell(0.5 / length), fundamental(frequency), second(2.0 * frequency);
    for (size_t i = 0; i < count && first + i < left.size(); ++i) {
        const double sample = amplitude * swell.Next() * (fundamental.Next() + 0.2 * second.Next());
        left[first + i] += static_cast<float>(sample);
        right[first + i] += static_cast<float>(sample);
    }
}

QByteArray WavBytes(const std::vector<float>& left, const std::vector<float>& right) {
    float peak = 0.0f;
    for (size_t i = 0; i < left.size(); ++i) {
        peak = std::max({peak, std::abs(left[i]), std::abs(right[i])});
    }
    const double gain = peak > 0 ? 0.8 / peak : 0.0;
    const auto frames = static_cast<quint32>(left.size());
    const quint32 dataBytes = frames * 4;
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(44 + dataBytes));
    auto put32 = [&bytes](quint32 value) {
        char raw[4];
        qToLittleEndian(value, raw);
        bytes.append(raw, 4);
    };
    auto put16 = [&bytes](quint16 value) {
        char raw[2];
        qToLittleEndian(value, raw);
        bytes.append(raw, 2);
    };
    bytes.append("RIFF", 4);
    put32(36 + dataBytes);
    bytes.append("WAVEfmt ", 8);
    put32(16);
    put16(1); // PCM
    put16(2);
    put32(kRate);
    put32(kRate * 4);
    put16(4);
    put16(16);
    bytes.append("data", 4);
    put32(dataBytes);
    for (size_t i = 0; i < left.size(); ++i) {
        put16(static_cast<quint16>(static_cast<qint16>(std::lround(left[i] * gain * 32767.0))));
        put16(static_cast<quint16>(static_cast<qint16>(std::lround(right[i] * gain * 32767.0))));
    }
    return bytes;
}

} // namespace

TrackAudio::TrackAudio(QString soxProgram) : m_sox(std::move(soxProgram)) {}

QString TrackAudio::Write(const TrackSpec& track, const QString& path,
                          const QString& scratchFolder) const {
    const QString suffix = QFileInfo(path).suffix().toLower();
    QStringList format;
    if (suffix == u"flac") {
        format << QStringLiteral("-b") << QStringLiteral("16");
    }
    if (track.tone.frequency > 0) {
        return RunSox(QStringList{QStringLiteral("-R"), QStringLiteral("-q"), QStringLiteral("-n"),
                                  QStringLiteral("-r"), QString::number(kRate),
                                  QStringLiteral("-c"), QStringLiteral("2")}
                      << format
                      << QStringList{path, QStringLiteral("synth"), QString::number(track.seconds),
                                     QStringLiteral("sine"),
                                     QString::number(track.tone.frequency, 'f', 2),
                                     QStringLiteral("vol"), QStringLiteral("0.5")});
    }
    const QString wav = scratchFolder + QStringLiteral("/progression.wav");
    QString error = WriteProgression(track.tone, track.seconds, wav);
    if (error.isEmpty()) {
        error =
            RunSox(QStringList{QStringLiteral("-R"), QStringLiteral("-q"), wav} << format << path);
    }
    QFile::remove(wav);
    return error;
}

QString TrackAudio::RunSox(const QStringList& arguments) const {
    QProcess sox;
    sox.setProcessChannelMode(QProcess::MergedChannels);
    sox.start(m_sox, arguments);
    if (!sox.waitForStarted()) {
        return QStringLiteral("cannot run %1: %2 (install the Debian packages sox and "
                              "libsox-fmt-all)")
            .arg(m_sox, sox.errorString());
    }
    sox.waitForFinished(120000);
    if (sox.exitStatus() != QProcess::NormalExit || sox.exitCode() != 0) {
        return QStringLiteral("%1 %2 failed: %3")
            .arg(m_sox, arguments.join(u' '), QString::fromLocal8Bit(sox.readAll()).trimmed());
    }
    return QString();
}

QString TrackAudio::WriteProgression(const ToneSpec& tone, double seconds, const QString& wavPath) {
    const auto frames = static_cast<size_t>(seconds * kRate);
    std::vector<float> left(frames, 0.0f);
    std::vector<float> right(frames, 0.0f);
    const double beat = 60.0 / tone.beatsPerMinute;
    const double step = beat / tone.notesPerBeat;
    const double bar = beat * tone.beatsPerBar;
    const int stepsPerBar = tone.beatsPerBar * tone.notesPerBeat;
    // Up and back down the chord, then an octave above the top: a gentle rolling figure.
    const QList<int> pattern{0, 1, 2, 3, 2, 1, 4, 2};
    double start = 0.0;
    for (int round = 0; round < 2; ++round) {
        for (const QList<int>& chord : tone.chords) {
            for (int s = 0; s < stepsPerBar; ++s) {
                const int index = pattern[s % pattern.size()];
                const int semitones = index < chord.size() ? chord[index] : chord[0] + 24;
                const double frequency = MidiFrequency(tone.rootMidiNote + semitones);
                const double pan = 0.5 + 0.3 * std::sin(s * 0.9);
                AddNote(left, right, start + s * step, 1.6, frequency, 0.30, pan, 0.55);
            }
            AddNote(left, right, start, bar + 0.4, MidiFrequency(tone.rootMidiNote + chord[0] - 24),
                    0.45, 0.5, 1.4);
            for (int note : chord) {
                AddPad(left, right, start, bar * 1.1, MidiFrequency(tone.rootMidiNote + note - 12),
                       0.05);
            }
            start += bar;
        }
    }
    // Let the last chord ring out and end on silence.
    AddNote(left, right, start, 2.0, MidiFrequency(tone.rootMidiNote), 0.35, 0.5, 0.8);
    const auto fadeFrames = static_cast<size_t>(0.5 * kRate);
    for (size_t i = 0; i < fadeFrames && i < frames; ++i) {
        const float gain = static_cast<float>(i) / static_cast<float>(fadeFrames);
        left[frames - 1 - i] *= gain;
        right[frames - 1 - i] *= gain;
    }
    QFile file(wavPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(WavBytes(left, right)) < 0) {
        return QStringLiteral("cannot write %1: %2").arg(wavPath, file.errorString());
    }
    return QString();
}

} // namespace Pelorin
