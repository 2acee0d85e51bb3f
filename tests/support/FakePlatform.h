#pragma once

#include "base/NotificationCenter.h"
#include "platform/Automation.h"
#include "platform/EventTaps.h"
#include "platform/FloatingWindows.h"
#include "platform/HapticFeedback.h"
#include "platform/MediaPlayers.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "platform/PowerState.h"
#include "platform/ScriptRunner.h"
#include "platform/StatusBar.h"
#include "platform/SystemDefinedEvent.h"
#include "platform/Workspace.h"
#include "support/FakeAudioHardware.h"
#include "support/ManualRunLoop.h"

#include <QMap>
#include <QSet>
#include <QWindow>

/// Answers script texts from a list and remembers every text.
class FakeScripts final : public ScriptRunner
{
public:
    ScriptOutcome run(const QString& source) override
    {
        sources.append(source);
        return outcomes.value(source, otherwise);
    }

    /// The texts since the last call.
    QStringList take() { return std::exchange(sources, {}); }

    QMap<QString, ScriptOutcome> outcomes;
    ScriptOutcome otherwise; ///< of all others
    QStringList sources;
};

class FakeWorkspace final : public Workspace
{
    Q_OBJECT

public:
    bool isRunning(const QString& bundleId) const override { return running.contains(bundleId); }
    QString artworkAddress(const QString& bundleId) const override
    {
        ++artworkQuestions;
        return artworks.value(bundleId);
    }
    std::optional<PlayerTrack> playerTrack(const QString& bundleId) const override
    {
        return tracks.contains(bundleId) ? std::optional(tracks[bundleId]) : std::nullopt;
    }
    std::optional<PlaybackPosition> playbackPosition(const QString& bundleId) const override
    {
        return positions.contains(bundleId) ? std::optional(positions[bundleId]) : std::nullopt;
    }
    void checkPosition(const QString& /*bundleId*/) override { ++positionChecks; }
    std::optional<RunningApplication> frontmostApplication() const override { return front; }
    PlayerAbilities abilities(const QString& /*bundleId*/) const override { return able; }
    bool open(const QUrl& url) override
    {
        opened.append(url.toString());
        return true;
    }

    QSet<QString> running;
    PlayerAbilities able{.canRate = true, .canListTracks = false};
    QMap<QString, QString> artworks;
    QMap<QString, PlayerTrack> tracks;
    QMap<QString, PlaybackPosition> positions;
    int positionChecks = 0;
    mutable int artworkQuestions = 0;
    QStringList opened;
    std::optional<RunningApplication> front;
};

class FakeEventTaps final : public EventTaps
{
public:
    bool isTaken(int /*mediaKey*/) const override { return isGrabbed; }
    void post(const SystemDefinedEvent& event, Tap tap) override { posted.append({event, tap}); }

    QList<std::pair<SystemDefinedEvent, Tap>> posted;
    bool isGrabbed = false;
};

class FakeMediaPlayers final : public MediaPlayers
{
public:
    QList<MediaPlayer> all() const override { return players; }
    void send(const QString& id, MediaCommand command) override { sent.append({id, command}); }

    QList<MediaPlayer> players;
    QList<std::pair<QString, MediaCommand>> sent;
};

class FakeHaptics final : public HapticFeedback
{
public:
    void perform(Pattern /*pattern*/) override { ++performed; }

    int performed = 0;
};

class FakePower final : public PowerState
{
    Q_OBJECT

public:
    bool isLowPowerModeEnabled() const override { return isLow; }

    bool isLow = false;
};

class FakeAutomation final : public Automation
{
public:
    std::optional<int> permission(const QString& /*bundleId*/) const override { return answer; }
    bool isTrustedForAccessibility() const override { return false; }

    std::optional<int> answer;
};

class FakePasteboard final : public Pasteboard
{
public:
    void setText(const QString& newText) override { text = newText; }

    QString text;
};

class FakeStatusBar final : public StatusBar
{
    Q_OBJECT

public:
    int thickness() const override { return 28; }
    void adopt(QWindow& window) override { window.setFlags(Qt::FramelessWindowHint); }
    void place(QWindow& window, const QRect& frame) override { window.setGeometry(frame); }
    std::unique_ptr<KeyboardClaim> claimKeyboard(QWindow& /*menu*/) override { return nullptr; }
    bool isComposited() const override { return composited; }

    bool composited = true;
};

class FakeFloatingWindows final : public FloatingWindows
{
public:
    void adopt(QWindow& window, bool isOnTop) override { setOnTop(window, isOnTop); }
    void setOnTop(QWindow& /*window*/, bool isOnTop) override { onTop = isOnTop; }
    QRectF frame(const QWindow& window) const override { return window.geometry(); }
    void place(QWindow& window, const QRectF& frame) override { window.setGeometry(frame.toRect()); }
    bool startMove(QWindow& /*window*/) override { return false; }
    bool startResize(QWindow& /*window*/, Qt::Edges /*edges*/) override { return false; }

    bool onTop = false;
};

/// A desktop in which nothing happens but what a test makes happen.
struct FakePlatform {
    ManualRunLoop runLoop;
    FakeScripts scripts;
    FakeAutomation automation;
    FakeWorkspace workspace;
    FakePower power;
    FakePasteboard pasteboard;
    FakeStatusBar statusBar;
    FakeFloatingWindows floatingWindows;
    FakeAudioHardware audioHardware;
    FakeEventTaps eventTaps;
    FakeMediaPlayers mediaPlayers;
    FakeHaptics haptics;
    NotificationCenter distributedNotifications;
    NotificationCenter notifications;
    Platform ports{.runLoop = runLoop,
                   .scripts = scripts,
                   .automation = automation,
                   .workspace = workspace,
                   .power = power,
                   .pasteboard = pasteboard,
                   .statusBar = statusBar,
                   .floatingWindows = floatingWindows,
                   .audioHardware = audioHardware,
                   .eventTaps = eventTaps,
                   .mediaPlayers = mediaPlayers,
                   .haptics = haptics,
                   .distributedNotifications = distributedNotifications,
                   .notifications = notifications};
};
