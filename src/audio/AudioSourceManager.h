#pragma once

#include "audio/AudioSources.h"

#include <QObject>
#include <QProperty>

class AudioBridge;
class NotificationCenter;
class UserDefaults;

/// Which sources the user lets the program follow. Every assignment is stored and told under
/// "com.orvalen.pellar.audioSourceChanged"; letting it follow system audio also turns live capture on.
class AudioSourceManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(AudioSources enabledSources READ enabledSources WRITE setEnabledSources NOTIFY
                   enabledSourcesChanged BINDABLE bindableEnabledSources)

public:
    static const QString audioSourceChanged;

    AudioSourceManager(UserDefaults& defaults, NotificationCenter& notifications, AudioBridge& bridge);
    static AudioSourceManager& shared();

    AudioSources enabledSources() const { return _enabledSources.value(); }
    void setEnabledSources(AudioSources sources);
    QBindable<AudioSources> bindableEnabledSources() const { return &_enabledSources; }

    /// Adds all of `sources` if any of them is missing, removes them otherwise.
    void toggle(AudioSources sources);

    bool includesAppleMusic() const { return enabledSources().testFlag(AudioSource::appleMusic); }
    bool includesSpotify() const { return enabledSources().testFlag(AudioSource::spotify); }
    bool includesSystemAudio() const { return enabledSources().testFlag(AudioSource::systemAudio); }

Q_SIGNALS:
    void enabledSourcesChanged();

private:
    UserDefaults& _defaults;
    NotificationCenter& _notifications;
    AudioBridge& _bridge;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(AudioSourceManager, AudioSources, _enabledSources,
                                         defaultAudioSources, &AudioSourceManager::enabledSourcesChanged)
};
