#pragma once

class Appearance;
class AudioHardware;
class Automation;
class EventTaps;
class FloatingWindows;
class HapticFeedback;
class HotKeys;
class Keychain;
class LoginItem;
class MediaPlayers;
class NotificationCenter;
class Pasteboard;
class PowerState;
class RemoteRequests;
class RunLoop;
class ScriptRunner;
class StatusBar;
class Workspace;

/// The services of the desktop that the program runs on. All references outlive every user of the struct.
struct Platform {
    RunLoop& runLoop;
    ScriptRunner& scripts;
    Automation& automation;
    Workspace& workspace;
    PowerState& power;
    Pasteboard& pasteboard;
    Keychain& keychain;
    StatusBar& statusBar;
    FloatingWindows& floatingWindows;
    Appearance& appearance;
    AudioHardware& audioHardware;
    EventTaps& eventTaps;
    MediaPlayers& mediaPlayers;
    HapticFeedback& haptics;
    HotKeys& hotKeys;
    LoginItem& loginItem;
    RemoteRequests& remoteRequests;

    /// What the players say of themselves: "com.apple.Music.playerInfo" and
    /// "com.spotify.client.PlaybackStateChanged".
    NotificationCenter& distributedNotifications;

    /// Broadcasts within the program.
    NotificationCenter& notifications;

    /// The platform that the shared instances use; set once, before the first of them is touched.
    static Platform& current();
    static void setCurrent(Platform* platform);
};
