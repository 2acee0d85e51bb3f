#pragma once

#include "audio/AudioBridge.h"
#include "audio/AudioCapture.h"
#include "audio/AudioSourceManager.h"
#include "engine/NowPlayingService.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "prefs/PowerModeManager.h"
#include "prefs/RecentlyPlayedManager.h"
#include "prefs/ThemeManager.h"

/// The engine and what it builds on, for any platform.
struct EngineParts {
    /// The address of a server that is not there.
    static inline const QString nobody = QStringLiteral("http://127.0.0.1:1");

    /// Looks for covers where nobody listens, unless the settings say otherwise already.
    void start(Platform& platform, UserDefaults& defaults, std::unique_ptr<AudioCapture> capture,
               EngineNeighbours neighbours)
    {
        const QString search = QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch");
        defaults.setObject(search, defaults.string(search).value_or(nobody));
        bridge = std::make_unique<AudioBridge>(platform.runLoop, defaults, std::move(capture));
        manager = std::make_unique<AudioSourceManager>(defaults, platform.notifications, *bridge);
        power = std::make_unique<PowerModeManager>(defaults, platform.power);
        theme = std::make_unique<ThemeManager>(defaults);
        recentlyPlayed = std::make_unique<RecentlyPlayedManager>(defaults, platform.runLoop);
        service = std::make_unique<NowPlayingService>(
            NowPlayingService::Dependencies{.platform = platform,
                                            .defaults = defaults,
                                            .sources = *manager,
                                            .audio = *bridge,
                                            .power = *power,
                                            .theme = *theme,
                                            .recentlyPlayed = *recentlyPlayed},
            std::move(neighbours));
    }

    std::unique_ptr<AudioBridge> bridge;
    std::unique_ptr<AudioSourceManager> manager;
    std::unique_ptr<PowerModeManager> power;
    std::unique_ptr<ThemeManager> theme;
    std::unique_ptr<RecentlyPlayedManager> recentlyPlayed;
    std::unique_ptr<NowPlayingService> service;
};
