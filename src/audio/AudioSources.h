#pragma once

#include "prefs/StoredForm.h"

#include <QFlags>

/// What the program may follow and control.
enum class AudioSource { appleMusic = 1, spotify = 2, systemAudio = 4 };

/// A set of sources.
Q_DECLARE_FLAGS(AudioSources, AudioSource)
Q_DECLARE_OPERATORS_FOR_FLAGS(AudioSources)

/// Stored as a number, whose bits without a meaning are kept.
template<>
struct StoredForm<AudioSources> {
    static QVariant of(AudioSources sources) { return qlonglong{sources.toInt()}; }
    static std::optional<AudioSources> read(const QVariant& stored)
    {
        const auto bits = StoredForm<qlonglong>::read(stored);
        return bits && std::in_range<int>(*bits)
                   ? std::optional(AudioSources::fromInt(static_cast<int>(*bits)))
                   : std::nullopt;
    }
};

constexpr AudioSources defaultAudioSources = AudioSource::appleMusic | AudioSource::spotify;
