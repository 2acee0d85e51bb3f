#pragma once

#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "linux/desktop/ApplicationService.h"
#include "linux/desktop/AutostartEntry.h"
#include "linux/desktop/ClipboardPasteboard.h"
#include "linux/desktop/DesktopAppearance.h"
#include "linux/desktop/DesktopAutomation.h"
#include "linux/desktop/DesktopWorkspace.h"
#include "linux/desktop/NoHapticFeedback.h"
#include "linux/desktop/PowerProfiles.h"
#include "linux/keychain/DesktopKeyring.h"
#include "linux/mpris/MprisBus.h"
#include "linux/mpris/PlayerNotifier.h"
#include "linux/mpris/PlayerRoster.h"
#include "linux/pipewire/PipewireAudioHardware.h"
#include "linux/script/Interpreter.h"
#include "linux/x11/X11EventTaps.h"
#include "linux/x11/X11FloatingWindows.h"
#include "linux/x11/X11StatusBar.h"
#include "platform/HotKeys.h"
#include "platform/Platform.h"

#include <memory>

/// The services of a Linux desktop, built and wired.
class LinuxPlatform
{
public:
    /// `casting` outlives the platform.
    explicit LinuxPlatform(const PlayerCasting& casting);

    Platform& ports() { return _ports; }
    Appearance& appearance() { return _appearance; }

private:
    EventLoop _runLoop;
    NotificationCenter _notifications;
    NotificationCenter _distributedNotifications;
    MprisBus _bus;
    PlayerRoster _roster;
    PlayerNotifier _notifier;
    DesktopWorkspace _workspace;
    DesktopAutomation _automation;
    Interpreter _interpreter;
    PowerProfiles _power;
    DesktopAppearance _appearance;
    std::unique_ptr<HotKeys> _hotKeys;
    AutostartEntry _loginItem;
    ApplicationService _remoteRequests;
    ClipboardPasteboard _pasteboard;
    DesktopKeyring _keyring;
    X11StatusBar _statusBar;
    X11FloatingWindows _floatingWindows;
    PipewireAudioHardware _audioHardware;
    X11EventTaps _eventTaps;
    NoHapticFeedback _haptics;
    Platform _ports;
};
