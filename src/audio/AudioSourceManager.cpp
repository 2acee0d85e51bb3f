#include "audio/AudioSourceManager.h"

#include "audio/AudioBridge.h"
#include "base/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"

#include <utility>

namespace {

const QString sourcesKey = QStringLiteral("pellar.audio.sources");

} // namespace

const QString AudioSourceManager::audioSourceChanged =
    QStringLiteral("com.orvalen.pellar.audioSourceChanged");

AudioSourceManager::AudioSourceManager(UserDefaults& defaults, NotificationCenter& notifications,
                                       AudioBridge& bridge)
    : _defaults(defaults)
    , _notifications(notifications)
    , _bridge(bridge)
{
    const auto stored = defaults.integer(sourcesKey);
    if (stored && std::in_range<int>(*stored)) {
        _enabledSources = AudioSources::fromInt(static_cast<int>(*stored));
    }
}

AudioSourceManager& AudioSourceManager::shared()
{
    static auto* const instance = new AudioSourceManager(
        UserDefaults::standard(), Platform::current().notifications, AudioBridge::shared());
    return *instance;
}

void AudioSourceManager::setEnabledSources(AudioSources sources)
{
    _defaults.setObject(sourcesKey, qlonglong{sources.toInt()});
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
