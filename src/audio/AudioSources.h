#pragma once

#include <QFlags>

/// What the program may follow and control.
enum class AudioSource { appleMusic = 1, spotify = 2, systemAudio = 4 };

/// A set of sources; stored as a number, whose bits without a meaning are kept.
Q_DECLARE_FLAGS(AudioSources, AudioSource)
Q_DECLARE_OPERATORS_FOR_FLAGS(AudioSources)

constexpr AudioSources defaultAudioSources = AudioSource::appleMusic | AudioSource::spotify;
