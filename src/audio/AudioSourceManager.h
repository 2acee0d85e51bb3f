#pragma once

#include "audio/AudioSources.h"
#include "prefs/Preference.h"

#include <QObject>

class AudioBridge;
class NotificationCenter;

/// Which sources the user lets the program follow. Every assignment is stored and told under
/// "com.orvalen.pellar.audioSourceChanged"; letting it follow system audio also turns live capture on.
class AudioSourceManager : public QObject
{
    Q_OBJECT

public:
    static const QString audioSourceChanged;

    AudioSourceManager(UserDefaults& defaults, NotificationCenter& notifications, AudioBridge& bridge);
    static AudioSourceManager& shared();

    AudioSources enabledSources() const { return _enabledSources.value(); }
    void setEnabledSources(AudioSources sources);

    /// Adds all of `sources` if any of them is missing, removes them otherwise.
    void toggle(AudioSources sources);

    bool includesAppleMusic() const { return enabledSources().testFlag(AudioSource::appleMusic); }
    bool includesSpotify() const { return enabledSources().testFlag(AudioSource::spotify); }
    bool includesSystemAudio() const { return enabledSources().testFlag(AudioSource::systemAudio); }

private:
    NotificationCenter& _notifications;
    AudioBridge& _bridge;
    Preference<AudioSources> _enabledSources;
};
