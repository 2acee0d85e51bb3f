#pragma once

#include "prefs/Choice.h"

/// What can be asked of the program from outside. The stored form is the name of the action, on the bus and,
/// with two dashes before it, on the command line.
enum class Request { playPause, next, previous, togglePreview, settings, quit };

template<>
struct Choices<Request> {
    static constexpr Choice<Request> all[] = {
        {Request::playPause, "play-pause", "plays or pauses"},
        {Request::next, "next", "goes to the next track"},
        {Request::previous, "previous", "goes to the previous track"},
        {Request::togglePreview, "toggle-preview", "opens or closes the preview"},
        {Request::settings, "settings", "opens the settings"},
        {Request::quit, "quit", "ends the program"},
    };
};
