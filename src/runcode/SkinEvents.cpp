#include "runcode/SkinEvents.h"

#include "base/TextRules.h"
#include "base/VbError.h"

#include <limits>

namespace Pelorin {

void SkinEvents::NewEvent(const QString& Line) {
    const QStringList fields = Rules::SplitFirstFields(Line, 2, u';');
    if (m_events.size() < m_eventCount + 1)
        m_events.resize(m_eventCount + 1);
    EventRecord& record = m_events[m_eventCount];
    record.Name = Rules::Field(fields, 0);
    record.Code = Rules::Field(fields, 1);
    // The count is 16-bit; a skin cannot declare more events than that.
    if (m_eventCount == std::numeric_limits<std::int16_t>::max())
        throw VbError::Overflow();
    ++m_eventCount;
}

void SkinEvents::CheckEvent(const QString& CurEvent, const RunCodeFunction& runCode) {
    const QString wanted = Rules::LowerCase(CurEvent);
    for (int i = 0; i < m_eventCount && i < m_events.size(); ++i) {
        if (Rules::LowerCase(m_events[i].Name) != wanted)
            continue;
        // The record's own text is handed over, as RunCode changes it; the copy keeps it safe
        // should the code touch the table meanwhile.
        QString code = m_events[i].Code;
        runCode(code);
        if (i < m_events.size())
            m_events[i].Code = code;
    }
}

} // namespace Pelorin
