#pragma once

#include "engine/EngineFixture.h"
#include "platform/Appearance.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/ThemeManager.h"
#include "ui/pill/PillModel.h"

class FixedAppearance final : public Appearance
{
    Q_OBJECT

public:
    bool isDark() const override { return true; }
};

/// A pill on a desktop of fakes, 28 points high and with everything in it.
struct PillFixture {
    /// Music plays "Song", 200.5 seconds long, or what the reply says.
    explicit PillFixture(
        const QString& reply = QStringLiteral("Song|||Band|||Album|||200.5|||12.0|||true|||77"))
    {
        engine.reply(Player::appleMusic, reply);
        engine.start();
        engine.desktop.runLoop.settle();
        engine.desktop.scripts.take();
    }

    /// The pill's timers may be another loop's than the engine's.
    void start(RunLoop& runLoop)
    {
        pill =
            std::make_unique<PillModel>(PillModel::Dependencies{.service = *engine.service,
                                                                .visibility = visibility,
                                                                .theme = theme,
                                                                .power = *engine.power,
                                                                .audio = *engine.bridge,
                                                                .appearance = appearance,
                                                                .runLoop = runLoop,
                                                                .notifications = engine.desktop.notifications,
                                                                .haptics = engine.desktop.haptics},
                                        28);
    }

    EngineFixture engine;
    PillVisibilityManager visibility{engine.defaults};
    ThemeManager theme{engine.defaults};
    FixedAppearance appearance;
    std::unique_ptr<PillModel> pill;
};
