#pragma once

// A window's player for tests, the fuzzer and the benchmarks: whatever player the test gives (the
// in-memory player or a real daemon's backend), the guard answered as the player link answers it,
// and a count of the guard's calls.
#include "player/IITFileOrCDTrack.h"
#include "player/IiTunes.h"
#include "player/link/WindowPlayer.h"

#include <exception>
#include <memory>

namespace Pelorin::Testing {

class FixedWindowPlayer : public WindowPlayer {
public:
    explicit FixedWindowPlayer(IiTunes* thePlayer = nullptr) : player(thePlayer), app(thePlayer) {}

    bool COMCallsEnabled() const override { return comCallsEnabled; }
    IiTunes* iTunesR() const override { return player; }
    bool iTunesIsNothing(bool careForTrack) override {
        ++guardCalls;
        if (player == nullptr)
            return true;
        try {
            return careForTrack && !player->CurrentTrack();
        } catch (const std::exception&) {
            return false;
        }
    }
    IiTunes* iTunesApp() override { return app; }
    void SetCurrentFileTrack(std::shared_ptr<IITFileOrCDTrack> track) override {
        currentFileTrack = std::move(track);
    }

    IiTunes* player = nullptr;
    IiTunes* app = nullptr;
    bool comCallsEnabled = true;
    int guardCalls = 0;
    std::shared_ptr<IITFileOrCDTrack> currentFileTrack;
};

} // namespace Pelorin::Testing
