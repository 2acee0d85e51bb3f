#pragma once

struct SystemDefinedEvent;

/// Where events can be let into the stream of the user's own.
class EventTaps
{
public:
    enum class Tap { hid, session };

    EventTaps() = default;
    virtual ~EventTaps() = default;
    EventTaps(const EventTaps&) = delete;
    EventTaps& operator=(const EventTaps&) = delete;

    /// Whether a program gets this media key (an auxiliary-control key code) wherever the keyboard's focus
    /// is.
    virtual bool isTaken(int mediaKey) const = 0;

    /// An event that the system does not let in is dropped.
    virtual void post(const SystemDefinedEvent& event, Tap tap) = 0;
};
