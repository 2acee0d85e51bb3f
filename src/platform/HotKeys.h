#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

class QKeyEvent;

/// The bits of the modifiers that are held with a key, as they are stored.
namespace HotKeyModifier {

constexpr quint32 command = 0x100;
constexpr quint32 shift = 0x200;
constexpr quint32 option = 0x800;
constexpr quint32 control = 0x1000;

} // namespace HotKeyModifier

/// A key that goes down, by its virtual key code, with the bits of what is held.
struct KeyDown {
    quint32 keyCode = 0;
    quint32 modifiers = 0;
};

/// A chord that does something wherever the keyboard's focus is.
struct HotKey {
    quint32 id = 0;      ///< not 0
    quint32 keyCode = 0; ///< virtual key code
    quint32 modifiers = 0;
    QString name;   ///< of what it does, as the user reads it ("Next Track")
    QString action; ///< the same for programs ("nextTrack")
};

/// The hot keys that the desktop lets this program have.
class HotKeys : public QObject
{
    Q_OBJECT

public:
    enum class State {
        pending, ///< the desktop has not answered yet
        registered,
        taken,      ///< another program has the chord
        missing,    ///< the keyboard has no such key
        unavailable ///< this desktop gives programs no hot keys
    };

    /// Unregisters all that were registered and registers these. A chord that is not had stays without effect
    /// until the next call.
    virtual void apply(const QList<HotKey>& hotKeys) = 0;

    /// Of one that was applied; unavailable for any other.
    virtual State state(quint32 id) const = 0;

    /// The key of an event and what is held with it; none for a key without a code, as a modifier is.
    virtual std::optional<KeyDown> keyDown(const QKeyEvent& event) const = 0;

Q_SIGNALS:
    /// Once a press, however long it is held.
    void pressed(quint32 id);

    /// What became of one, or of several, has changed without `apply`, or after it.
    void statesChanged();

    /// The keys of the keyboard have changed their places: what is registered should be so anew.
    void keyboardChanged();
};
