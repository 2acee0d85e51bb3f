#pragma once

#include "linux/pipewire/IOProcSlot.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

/// Mixes what several nodes hear, each at the pace of its own driver, and hands it on. Nodes at other rates
/// than the latest one's are heard at a wrong pitch.
class CaptureMix
{
public:
    explicit CaptureMix(std::shared_ptr<IOProcSlot> slot);

    /// What one node adds to the mix. Made and destroyed by others than the real-time threads.
    class Share
    {
    public:
        explicit Share(std::shared_ptr<CaptureMix> mix);
        ~Share();
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;

        struct Sound {
            const float* left;  ///< null for silence
            const float* right; ///< null for silence
            quint32 frames;
            quint32 rate; ///< Hz
            AudioTimeStamp now;
        };

        /// Real-time; a thread that finds the mix in use drops its sound instead of waiting.
        void add(const Sound& sound);

    private:
        friend class CaptureMix;

        std::shared_ptr<CaptureMix> _mix;
        quint64 _end = 0; ///< where in the mix its next frame goes
    };

    /// Drops what has not been handed on, and hands on more silence than any listener keeps. Not
    /// real-time.
    void silence();

    /// What came in since the last call. Not real-time.
    struct Report {
        bool isLoud = false; ///< any analysis could hear something of it
        bool isStanding = true;
        std::optional<double> sampleRate; ///< Hz; none as long as nothing has come in
    };
    Report report();

private:
    using Frame = std::array<float, 2>;
    static constexpr quint32 chunkFrames = 1024;
    static constexpr quint32 patience = 8192; ///< frames: the longest cycle of a driver
    static constexpr quint32 capacity = 2 * patience;

    void handOn(AudioTimeStamp now);

    std::shared_ptr<IOProcSlot> _slot;

    std::mutex _lock;
    std::vector<Share*> _shares;
    std::array<Frame, capacity> _frames{}; ///< silence but from `_begin` to `_end`
    quint64 _begin = 0;                    ///< of what has not been handed on
    quint64 _end = 0;

    // What the real-time threads leave for the other one.
    std::atomic<quint32> _cycles = 0;
    std::atomic<quint32> _rate = 0; ///< Hz
    std::atomic<bool> _isLoud = false;

    quint32 _reportedCycles = 0;
};
