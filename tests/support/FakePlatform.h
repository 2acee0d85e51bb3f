#pragma once

#include "base/NotificationCenter.h"
#include "platform/Automation.h"
#include "platform/EventTaps.h"
#include "platform/FloatingWindows.h"
#include "platform/HapticFeedback.h"
#include "platform/HotKeys.h"
#include "platform/Keychain.h"
#include "platform/LoginItem.h"
#include "platform/MediaPlayers.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "platform/PowerState.h"
#include "platform/RemoteRequests.h"
#include "platform/ScriptRunner.h"
#include "platform/StatusBar.h"
#include "platform/SystemDefinedEvent.h"
#include "platform/Workspace.h"
#include "support/FakeAppearance.h"
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

class FakeWorkspace : public Workspace
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

class FakeHotKeys final : public HotKeys
{
    Q_OBJECT

public:
    void apply(const QList<HotKey>& hotKeys) override
    {
        applied = hotKeys;
        ++applications;
    }
    State state(quint32 id) const override { return states.value(id, State::registered); }
    std::optional<KeyDown> keyDown(const QKeyEvent& /*event*/) const override { return std::nullopt; }

    QList<HotKey> applied;
    int applications = 0;
    QMap<quint32, State> states;
};

class FakeLoginItem final : public LoginItem
{
public:
    bool isEnabled() const override { return isOn; }
    std::optional<QString> setEnabled(bool isEnabled) override { return isOn = isEnabled, std::nullopt; }

    bool isOn = false;
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

/// Keeps secrets as long as it lives, or fails where a test wants it to.
class FakeKeychain final : public Keychain
{
    Q_OBJECT

public:
    explicit FakeKeychain(RunLoop& itsLoop) : runLoop(itsLoop) {}

    void read(const Item& item, QObject* context, Reader reader) override
    {
        runLoop.after(0, context, [this, key = key(item), reader = std::move(reader)] {
            const bool isThere = failure == done && items.contains(key);
            reader(failure == done ? (isThere ? done : notFound) : failure,
                   isThere ? items.value(key) : QByteArray());
        });
    }
    void write(const Item& item, const QByteArray& secret, QObject* context, Completion completion) override
    {
        runLoop.after(0, context, [this, key = key(item), secret, completion = std::move(completion)] {
            if (failure == done) {
                items.insert(key, secret);
            }
            completion(failure);
        });
    }
    void remove(const Item& item, QObject* context, Completion completion) override
    {
        runLoop.after(0, context, [this, key = key(item), completion = std::move(completion)] {
            if (failure == done) {
                items.remove(key);
            }
            completion(failure);
        });
    }
    void fail(Status status)
    {
        failure = status;
        setKeepsSecrets(status == done);
    }

    RunLoop& runLoop;
    Status failure = done;
    QMap<QString, QByteArray> items; ///< by "SERVICE ACCOUNT"

private:
    static QString key(const Item& item) { return item.service + u' ' + item.account; }
};

class FakeStatusBar final : public StatusBar
{
    Q_OBJECT

public:
    int thickness() const override { return 28; }
    void adopt(QWindow& window) override { window.setFlags(Qt::FramelessWindowHint); }
    void place(QWindow& window, const QRect& frame) override { window.setGeometry(frame); }
    std::unique_ptr<KeyboardClaim> claimKeyboard(QWindow& /*menu*/) override { return nullptr; }
    void lift(QWindow& window, bool /*isLifted*/) override { window.show(); }
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
    FakeKeychain keychain{runLoop};
    FakeStatusBar statusBar;
    FakeFloatingWindows floatingWindows;
    FakeAppearance appearance;
    FakeAudioHardware audioHardware;
    FakeEventTaps eventTaps;
    FakeMediaPlayers mediaPlayers;
    FakeHaptics haptics;
    FakeHotKeys hotKeys;
    FakeLoginItem loginItem;
    RemoteRequests remoteRequests;
    NotificationCenter distributedNotifications;
    NotificationCenter notifications;
    Platform ports{.runLoop = runLoop,
                   .scripts = scripts,
                   .automation = automation,
                   .workspace = workspace,
                   .power = power,
                   .pasteboard = pasteboard,
                   .keychain = keychain,
                   .statusBar = statusBar,
                   .floatingWindows = floatingWindows,
                   .appearance = appearance,
                   .audioHardware = audioHardware,
                   .eventTaps = eventTaps,
                   .mediaPlayers = mediaPlayers,
                   .haptics = haptics,
                   .hotKeys = hotKeys,
                   .loginItem = loginItem,
                   .remoteRequests = remoteRequests,
                   .distributedNotifications = distributedNotifications,
                   .notifications = notifications};
};
