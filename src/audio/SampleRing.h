#pragma once

#include "audio/SpectrumAnalyzer.h"

#include <array>
#include <mutex>

struct AudioBufferList;

/// The newest samples of what is captured, folded to mono. Written by the real-time thread, read by another.
class SampleRing
{
public:
    static constexpr int capacity = 8192; ///< samples

    /// Takes the first buffer of a list: one channel as it is, of several the mean of every two samples.
    /// A list without samples changes nothing. Allocates nothing, and drops the samples rather than wait for
    /// a reader.
    void write(const AudioBufferList& input);

    /// Fills it with silence. It waits for a reader, so it is not for the real-time thread.
    void clear();

    /// The samples just before the write position, or some samples further back, oldest first. What is too
    /// old to be there is the oldest that is.
    void copyNewest(SpectrumAnalyzer::Samples& samples, int age = 0) const;

private:
    mutable std::mutex _lock;
    std::array<float, capacity> _samples{};
    int _write = 0;
};
