#pragma once

#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/linux/ClipboardPasteboard.h"
#include "platform/linux/DesktopAppearance.h"
#include "platform/linux/DesktopAutomation.h"
#include "platform/linux/DesktopEventTaps.h"
#include "platform/linux/DesktopWorkspace.h"
#include "platform/linux/NoHapticFeedback.h"
#include "platform/linux/PowerProfiles.h"
#include "platform/linux/mpris/MprisBus.h"
#include "platform/linux/mpris/PlayerNotifier.h"
#include "platform/linux/mpris/PlayerRoster.h"
#include "platform/linux/pipewire/PipewireAudioHardware.h"
#include "platform/linux/script/Interpreter.h"
#include "platform/linux/x11/X11StatusBar.h"

class UserDefaults;

/// The services of a Linux desktop, built and wired.
class LinuxPlatform
{
public:
    explicit LinuxPlatform(const UserDefaults& defaults);

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
    ClipboardPasteboard _pasteboard;
    X11StatusBar _statusBar;
    PipewireAudioHardware _audioHardware;
    DesktopEventTaps _eventTaps;
    NoHapticFeedback _haptics;
    Platform _ports;
};
