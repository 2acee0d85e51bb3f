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

    int starts = 0;
    bool isRunning = false;
};
