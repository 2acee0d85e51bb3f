#include "linux/x11/X11EventTaps.h"

#include "linux/x11/KeyboardLog.h"
#include "linux/x11/X11MediaKey.h"
#include "platform/SystemDefinedEvent.h"

Q_LOGGING_CATEGORY(keyboardLog, "com.orvalen.pellar.keyboard", QtWarningMsg)

namespace {

constexpr quint32 keyDown = 0xA;

/// The keyboard's key for an auxiliary-control key code.
std::optional<xcb_keycode_t> keycode(int mediaKey)
{
    switch (mediaKey) {
    case 16:
        return X11MediaKey::find(X11MediaKey::Symbol::play);
    case 17:
        return X11MediaKey::find(X11MediaKey::Symbol::next);
    case 18:
        return X11MediaKey::find(X11MediaKey::Symbol::previous);
    default:
        return std::nullopt;
    }
}

} // namespace

bool X11EventTaps::isTaken(int mediaKey) const
{
    const auto key = keycode(mediaKey);
    return key && X11MediaKey::isGrabbed(*key);
}

void X11EventTaps::post(const SystemDefinedEvent& event, Tap tap)
{
    const auto data = static_cast<quint32>(event.data1);
    const bool isDown = (data >> 8U & 0xFFU) == keyDown;
    if (tap != Tap::hid || event.subtype != SystemDefinedEvent::auxiliaryControl || !isDown) {
        return;
    }
    if (const auto key = keycode(static_cast<int>(data >> 16U))) {
        X11MediaKey::tap(*key);
    } else {
        qCWarning(keyboardLog, "nothing takes media keys here");
    }
}
