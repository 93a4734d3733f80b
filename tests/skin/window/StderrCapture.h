#pragma once

// Collects what the process writes on stderr while it lives: message boxes in unattended mode
// write their one-line copy there.
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryFile>
#include <cstdio>
#include <unistd.h>

namespace Pelorin::Testing {

class StderrCapture {
public:
    StderrCapture() {
        m_file.open();
        std::fflush(stderr);
        m_saved = dup(STDERR_FILENO);
        dup2(m_file.handle(), STDERR_FILENO);
    }
    ~StderrCapture() { Restore(); }
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

    // Everything written so far, one entry a line.
    QStringList Lines() {
        std::fflush(stderr);
        QFile file(m_file.fileName());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromLocal8Bit(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

    // The lines that are message boxes with this title.
    QStringList Messages(const QString& title = QStringLiteral("Error!")) {
        QStringList found;
        for (const QString& line : Lines()) {
            if (line.startsWith(title + QLatin1String(": ")))
                found.append(line.mid(title.size() + 2));
        }
        return found;
    }

    void Restore() {
        if (m_saved < 0)
            return;
        std::fflush(stderr);
        dup2(m_saved, STDERR_FILENO);
        close(m_saved);
        m_saved = -1;
    }

private:
    QTemporaryFile m_file;
    int m_saved = -1;
};

} // namespace Pelorin::Testing
