#pragma once

namespace Pelorin {

// How an effect lets the rest of the program run between its steps and how it waits. The real
// one pumps the event loop and sleeps; tests and fuzzers give one that does neither (or counts).
class EffectPacing {
public:
    virtual ~EffectPacing() = default;
    // Lets pending window messages, timers and player events run once.
    virtual void LetMessagesRun() = 0;
    virtual void Sleep(int milliseconds) = 0;
};

// QCoreApplication::processEvents and a plain sleep of the user-interface thread.
class EventLoopPacing final : public EffectPacing {
public:
    void LetMessagesRun() override;
    void Sleep(int milliseconds) override;
};

} // namespace Pelorin
