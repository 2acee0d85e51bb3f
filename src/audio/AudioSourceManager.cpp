#include "audio/AudioSourceManager.h"

#include "audio/AudioBridge.h"
#include "base/NotificationCenter.h"
#include "platform/Platform.h"

const QString AudioSourceManager::audioSourceChanged =
    QStringLiteral("com.orvalen.pellar.audioSourceChanged");

AudioSourceManager::AudioSourceManager(UserDefaults& defaults, NotificationCenter& notifications,
                                       AudioBridge& bridge)
    : _notifications(notifications)
    , _bridge(bridge)
    , _enabledSources(defaults, QStringLiteral("pellar.audio.sources"), defaultAudioSources)
{
}

AudioSourceManager& AudioSourceManager::shared()
{
    static auto* const instance = new AudioSourceManager(
        UserDefaults::standard(), Platform::current().notifications, AudioBridge::shared());
    return *instance;
}

void AudioSourceManager::setEnabledSources(AudioSources sources)
{
    _enabledSources = sources;
    if (includesSystemAudio() && !_bridge.isEnabled()) {
        _bridge.setEnabled(true);
    }
    _notifications.post(audioSourceChanged);
}

void AudioSourceManager::toggle(AudioSources sources)
{
    const AudioSources enabled = _enabledSources;
    setEnabledSources((enabled & sources) == sources ? enabled & ~sources : enabled | sources);
}
