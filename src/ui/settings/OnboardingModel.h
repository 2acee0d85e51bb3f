#pragma once

#include "base/RunLoop.h"
#include "ui/settings/PermissionCard.h"

#include <QQmlListProperty>

#include <memory>
#include <vector>

class AnalyticsManager;
class AudioBridge;
class NowPlayingService;
struct Platform;

/// What the onboarding window shows: a card for each thing that the program may do. While the window is open
/// the cards follow the desktop.
class OnboardingModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QVariantList cards READ cards CONSTANT)

public:
    /// What the model builds on. Everything outlives it.
    struct Dependencies {
        Platform& platform;
        NowPlayingService& service;
        AudioBridge& audio;
        AnalyticsManager& analytics;
        bool hasUsagePing = false; ///< whether there is an address to send usage data to
    };

    explicit OnboardingModel(const Dependencies& dependencies);
    ~OnboardingModel() override;

    QVariantList cards() const;

private:
    using State = PermissionCard::State;

    void add(PermissionCard::Face face, std::function<State()> read, std::function<void(int)> act = {});
    void addPlayers();
    void addSound();
    void addMediaKeys();
    void addUsageData();
    State playerState(const QString& bundleId) const;
    State captureState() const;
    State usageState() const;

    Dependencies _of;
    std::vector<std::unique_ptr<PermissionCard>> _cards;
    bool _hasDecidedOnUsage = false; ///< in this window
    std::unique_ptr<RunLoop::Timer> _permissionPoll;
};
