#pragma once

#include "prefs/Choice.h"

#include <QtGlobal>

/// What a hot key can do.
enum class PellarShortcut { playPause, nextTrack, previousTrack };

template<>
struct Choices<PellarShortcut> {
    static constexpr Choice<PellarShortcut> all[] = {
        {PellarShortcut::playPause, "playPause", "Play / Pause"},
        {PellarShortcut::nextTrack, "nextTrack", "Next Track"},
        {PellarShortcut::previousTrack, "previousTrack", "Previous Track"},
    };
};

/// The number by which the system knows the action's hot key: its place in the list, from 1.
constexpr quint32 carbonID(PellarShortcut shortcut)
{
    return static_cast<quint32>(shortcut) + 1;
}
