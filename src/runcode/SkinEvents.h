#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>

namespace Pelorin {

// The codes a skin attaches to occasions other than clicks: named player events ("event" lines:
// "newsong", "stopsong", "databasechanged"; any other name is kept and never fires) and user
// interactions ("anyinteraction" lines). Filled while the skin file is read, in file order, and
// kept as long as the window.
//
// Codes run through the window's RunCode, which takes its text by reference: a compound code
// loses its "{" characters in the table the first time it runs.
class SkinEvents {
public:
    using RunCodeFunction = std::function<void(QString& code)>;

    struct EventRecord {
        QString Name; // as the skin wrote it
        QString Code;
    };

    // "newsong;playpause": the name before the first ";", the code up to the second ";" (a code
    // cannot hold ";"). Without a code it throws VbError after the table has grown by a record
    // but before the count rises, so the next declaration takes that slot.
    void NewEvent(const QString& Line);

    // Runs the code of every record whose name equals CurEvent ignoring case, in declaration
    // order. RunCode reports its own errors, so one failing code does not stop the others.
    void CheckEvent(const QString& CurEvent, const RunCodeFunction& runCode);

    int EventCount() const { return m_eventCount; }
    // The grown table; it may hold one record more than EventCount after a failed declaration.
    const QList<EventRecord>& Events() const { return m_events; }

private:
    QList<EventRecord> m_events;
    std::int16_t m_eventCount = 0;
};

} // namespace Pelorin
