#pragma once

struct pw_stream;
struct pw_thread_loop;

/// A tone that this very process plays: 2 kHz at half of full scale.
class OwnTone
{
public:
    OwnTone();
    ~OwnTone();
    OwnTone(const OwnTone&) = delete;
    OwnTone& operator=(const OwnTone&) = delete;

    /// Whether the sound server takes it.
    bool isPlaying() const;

private:
    void fill();

    pw_thread_loop* _loop;
    pw_stream* _stream;
    double _phase = 0;
};
