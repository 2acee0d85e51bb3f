#pragma once

#include "audio/AudioCapture.h"

/// Capture of the sound that a test makes, by its signals.
class FakeCapture final : public AudioCapture
{
public:
    void start() override
    {
        ++starts;
        isRunning = true;
    }
    void stop() override { isRunning = false; }
    void setPace(int framesPerSecond) override { pace = framesPerSecond; }
    void catchUp() override {}

    int starts = 0;
    int pace = 0;
    bool isRunning = false;
};
