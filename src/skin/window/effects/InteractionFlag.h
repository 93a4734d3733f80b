#pragma once

namespace Pelorin {

// Raised by every user interaction with a skin window (a press anywhere on it) and consumed only
// by a running fade, which stops when it sees it. An interaction while no fade runs leaves the
// flag raised, so the next fade stops after its first step; skins rely on that.
class InteractionFlag {
public:
    void Raise() { m_raised = true; }
    bool IsRaised() const { return m_raised; }
    // True when the flag was raised; it is lowered either way.
    bool Take() {
        const bool raised = m_raised;
        m_raised = false;
        return raised;
    }

private:
    bool m_raised = false;
};

} // namespace Pelorin
