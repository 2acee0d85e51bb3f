#include "ui/settings/OnboardingModel.h"

#include "audio/AudioBridge.h"
#include "engine/NowPlayingService.h"
#include "platform/AudioHardware.h"
#include "platform/Automation.h"
#include "platform/BundleId.h"
#include "platform/MediaPlayers.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "prefs/AnalyticsManager.h"
#include "prefs/PellarTheme.h"

#include <QUrl>

#include <algorithm>

namespace {

constexpr double pollSeconds = 1;
const QColor musicColor(226, 74, 98);
const QColor spotifyColor(34, 158, 83);
const QColor deviceColor(110, 112, 124);

QColor themeColor(PellarTheme theme)
{
    return staticTint(theme).value_or(QColor());
}

/// The names of the players that take a role, as their makers write them.
QStringList playerNames(const MediaPlayers& players, PlayerRole role)
{
    QStringList names;
    const auto all = players.all();
    for (const MediaPlayer& player : all) {
        if (player.roles.contains(role) && !player.names.isEmpty()) {
            QString name = player.names.constFirst().section(u'.', 0, 0);
            name.replace(0, 1, name.at(0).toUpper());
            names << name;
        }
    }
    return names;
}

} // namespace

OnboardingModel::OnboardingModel(const Dependencies& dependencies) : _of(dependencies)
{
    addPlayers();
    addSound();
    addMediaKeys();
    addUsageData();
    _permissionPoll = _of.platform.runLoop.every(pollSeconds, this, [this] {
        std::for_each(_cards.begin(), _cards.end(), [](const auto& card) { card->refresh(); });
    });
}

OnboardingModel::~OnboardingModel() = default;

QVariantList OnboardingModel::cards() const
{
    QVariantList cards;
    for (const auto& card : _cards) {
        cards << QVariant::fromValue(card.get());
    }
    return cards;
}

void OnboardingModel::add(PermissionCard::Face face, std::function<State()> read,
                          std::function<void(int)> act)
{
    _cards.push_back(std::make_unique<PermissionCard>(std::move(face), std::move(read), std::move(act)));
}

void OnboardingModel::addPlayers()
{
    const auto addPlayer = [this](const QString& symbol, const QColor& color, const QString& title,
                                  const QString& description, const QString& id, const QString& name) {
        add(
            {symbol, color, title, description, PermissionCard::grant, {tr("Allow…")}},
            [this, id] { return playerState(id); },
            [this, name](int /*action*/) { _of.service.requestAccess(name); });
    };
    addPlayer(QStringLiteral("music.note"), musicColor, tr("Apple Music Access"),
              tr("Read now-playing info and control playback in Apple Music"), BundleId::music,
              QStringLiteral("Music"));
    addPlayer(QStringLiteral("headphones"), spotifyColor, tr("Spotify Access"),
              tr("Read now-playing info and control playback in Spotify"), BundleId::spotify,
              QStringLiteral("Spotify"));
}

OnboardingModel::State OnboardingModel::playerState(const QString& bundleId) const
{
    const bool isSpotify = bundleId == BundleId::spotify;
    const bool hasAccess = _of.service.hasAccess(bundleId);
    const auto answer = _of.platform.automation.permission(bundleId);
    if (answer == Automation::granted) {
        const QStringList names =
            playerNames(_of.platform.mediaPlayers, isSpotify ? PlayerRole::spotify : PlayerRole::music);
        return {hasAccess, tr("%1 is running and answers.").arg(names.value(0, tr("The player"))), true};
    }
    if (answer == Automation::refused) {
        return {hasAccess, tr("The player is running, but this desktop does not let Pellar talk to it."),
                false};
    }
    return {hasAccess,
            isSpotify ? tr("Spotify is not running. Start it to connect.")
                      : tr("No music player is running. Any player that speaks MPRIS will do."),
            false};
}

void OnboardingModel::addSound()
{
    add({QStringLiteral("speaker.wave.2"), deviceColor, tr("Audio Device Access"),
         tr("Switch audio output devices from the menu bar")},
        [this] {
            const bool hasAnswered = _of.platform.audioHardware.devices().has_value();
            return State{true,
                         hasAnswered ? QString() : tr("The sound server does not answer at the moment."),
                         hasAnswered};
        });
    add(
        {QStringLiteral("waveform"),
         themeColor(PellarTheme::dusk),
         tr("Live Audio Visualizer"),
         tr("React to actual audio (uses microphone permission). Off = synthetic animation."),
         PermissionCard::choice,
         {tr("Live"), tr("Synthetic")}},
        [this] { return captureState(); }, [this](int action) { _of.audio.setEnabled(action == 0); });
}

OnboardingModel::State OnboardingModel::captureState() const
{
    const bool isAuthorized = _of.platform.audioHardware.authorizationStatus() == AudioHardware::authorized;
    State state{_of.audio.hasUserDecided(),
                isAuthorized
                    ? tr("Sound can be captured here, through PipeWire.")
                    : tr("PipeWire does not let Pellar capture sound here: the bars stay synthetic."),
                isAuthorized};
    if (state.isDone) {
        state.chosen = _of.audio.isEnabled() ? 0 : 1;
    }
    return state;
}

void OnboardingModel::addMediaKeys()
{
    add(
        {QStringLiteral("playpause"),
         themeColor(PellarTheme::tide),
         tr("Media Keys"),
         tr("Optional. Lets Pellar control browser videos and other media via media keys."),
         PermissionCard::permission,
         {tr("Open Settings")}},
        [this] {
            const bool isTrusted = _of.platform.automation.isTrustedForAccessibility();
            return State{isTrusted,
                         isTrusted ? tr("Keys can be sent on this desktop.")
                                   : tr("This display server has no XTEST extension: keys cannot be sent."),
                         isTrusted};
        },
        [this](int /*action*/) {
            _of.platform.workspace.open(QUrl(QStringLiteral(
                "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility")));
        });
}

void OnboardingModel::addUsageData()
{
    add(
        {QStringLiteral("chart.bar.fill"),
         themeColor(PellarTheme::warmth),
         tr("Anonymous Usage Data"),
         tr("Help us count active installs. No email, no listening data, ever."),
         PermissionCard::choice,
         {tr("Share"), tr("Don’t Share")}},
        [this] { return usageState(); },
        [this](int action) {
            _of.analytics.setOptedOut(action != 0);
            _hasDecidedOnUsage = true;
        });
}

/// Whoever has declined has decided; agreeing leaves no trace but in this window.
OnboardingModel::State OnboardingModel::usageState() const
{
    const bool isOptedOut = _of.analytics.isOptedOut();
    State state{_hasDecidedOnUsage || isOptedOut,
                _of.hasUsagePing ? QString()
                                 : tr("This build has no address to send it to: nothing is sent."),
                _of.hasUsagePing};
    if (state.isDone) {
        state.chosen = isOptedOut ? 1 : 0;
    }
    return state;
}
