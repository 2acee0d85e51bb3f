#pragma once

#include "engine/EngineFixture.h"
#include "prefs/PillVisibilityManager.h"
#include "support/FakeAppearance.h"
#include "ui/pill/PillModel.h"

/// A pill on a desktop of fakes, 28 points high and with everything in it.
struct PillFixture {
    /// Music plays "Song", 200.5 seconds long, or what the reply says.
    explicit PillFixture(const QString& reply = u"Song|||Band|||Album|||200.5|||12.0|||true|||77"_s)
    {
        engine.reply(Player::appleMusic, reply);
        engine.start();
        runLoop.settle();
        engine.desktop.scripts.take();
        pill =
            std::make_unique<PillModel>(PillModel::Dependencies{.service = *engine.service,
                                                                .visibility = visibility,
                                                                .theme = *engine.theme,
                                                                .power = *engine.power,
                                                                .audio = *engine.bridge,
                                                                .appearance = appearance,
                                                                .runLoop = runLoop,
                                                                .notifications = engine.desktop.notifications,
                                                                .haptics = engine.desktop.haptics},
                                        28);
    }

    EngineFixture engine;
    ManualRunLoop& runLoop = engine.desktop.runLoop;
    PillVisibilityManager visibility{engine.defaults};
    FakeAppearance appearance;
    std::unique_ptr<PillModel> pill;
};
