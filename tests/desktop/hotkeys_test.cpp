#include "linux/settings/PlistUserDefaults.h"
#include "linux/x11/X11Session.h"
#include "platform/HotKeys.h"
#include "prefs/ShortcutBinding.h"
#include "support/Command.h"
#include "support/LoopbackServices.h"
#include "support/Program.h"
#include "support/RealPlayer.h"

#include <QGuiApplication>
#include <QTest>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Places of keys.
constexpr uint8_t space = 65;
constexpr uint8_t z = 52;
constexpr uint8_t zOnGermanKeyboards = 29;
constexpr uint8_t sharpS = 20;
constexpr uint16_t controlAndAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
constexpr uint16_t superAndShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;

/// Takes a chord for this test, if no other program has it.
bool take(uint8_t key, uint16_t modifiers)
{
    xcb_connection_t* const server = X11Session::connection();
    const auto grab = xcb_grab_key_checked(server, 0, X11Session::root(), modifiers, key, XCB_GRAB_MODE_ASYNC,
                                           XCB_GRAB_MODE_ASYNC);
    xcb_generic_error_t* const error = xcb_request_check(server, grab);
    std::free(error);
    return error == nullptr;
}

void leave(uint8_t key, uint16_t modifiers)
{
    xcb_ungrab_key(X11Session::connection(), key, X11Session::root(), modifiers);
    xcb_flush(X11Session::connection());
}

/// Nobody comes between, who would find taken what is only asked for.
bool isTaken(uint8_t key, uint16_t modifiers)
{
    xcb_grab_server(X11Session::connection());
    const bool wasFree = take(key, modifiers);
    if (wasFree) {
        leave(key, modifiers);
    }
    xcb_ungrab_server(X11Session::connection());
    xcb_flush(X11Session::connection());
    return !wasFree;
}

} // namespace

/// Chords pressed on the built program's desktop, and what a real player says to them.
class HotKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        keepServicesToLoopback();
        qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        run(u"dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress"_s);
        store(u"nextTrack"_s,
              StoredForm<ShortcutBinding>::of({6, HotKeyModifier::option | HotKeyModifier::control})); // Z
        QVERIFY(_mpv.start());
        QVERIFY(take(space, superAndShift)); // before the program can
        _program.emplace(QStringLiteral(PELLAR_PROGRAM));
        QTRY_VERIFY_WITH_TIMEOUT(isTaken(z, controlAndAlt), 10000);
    }

    void triesAgainWhatIsTaken()
    {
        QVERIFY(press(u"super+shift+space"_s)); // reaches this test alone
        leave(space, superAndShift);
        QTRY_VERIFY_WITH_TIMEOUT(isTaken(space, superAndShift), 15000);
        QCOMPARE(RealPlayer::status(), u"Playing"_s);
    }

    void obeys()
    {
        for (const auto& [layout, lock] : {std::pair(u"us"_s, u""_s), std::pair(u"us"_s, u"Caps_Lock"_s),
                                           std::pair(u"us"_s, u"Num_Lock"_s), std::pair(u"de"_s, u""_s)}) {
            QCOMPARE(run(u"setxkbmap "_s + layout), QString());
            QTRY_VERIFY(isTaken(layout == u"de" ? zOnGermanKeyboards : z, controlAndAlt));
            QVERIFY(lock.isEmpty() || press(lock));
            QVERIFY(press(u"super+shift+space"_s));
            QTRY_COMPARE(RealPlayer::status(), u"Paused"_s);
            QVERIFY(press(u"super+shift+space"_s));
            QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
            const QString title = RealPlayer::metadata(u"title"_s);
            QVERIFY(press(u"ctrl+alt+z"_s));
            QTRY_VERIFY(RealPlayer::metadata(u"title"_s) != title);
            QVERIFY(lock.isEmpty() || press(lock));
        }
        run(u"setxkbmap us"_s);
    }

    /// A key that is held repeats itself.
    void obeysOnceAPress()
    {
        QVERIFY(run(u"xdotool keydown super keydown shift keydown space sleep 1 keyup space keyup shift "
                    "keyup super"_s) != u"?");
        QTRY_COMPARE(RealPlayer::status(), u"Paused"_s);
        QVERIFY(press(u"super+shift+space"_s));
        QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
    }

    void obeysWhatIsRecorded()
    {
        run(u"setxkbmap de"_s);
        QCOMPARE(output(QStringLiteral(PELLAR_PROGRAM), {u"--settings"_s}), QString());
        QTRY_VERIFY(run(u"xdotool getwindowfocus getwindowname"_s).startsWith(u"Settings"));
        QVERIFY(operate({u"General"_s, u"Play / Pause: Change"_s}));
        QVERIFY(press(u"ctrl+alt+ssharp"_s));
        QTRY_VERIFY(isTaken(sharpS, controlAndAlt) && !isTaken(space, superAndShift));
        QVERIFY(press(u"ctrl+alt+ssharp"_s));
        QTRY_COMPARE(RealPlayer::status(), u"Paused"_s);
        QVERIFY(operate({u"Play / Pause: Disable"_s}));
        QTRY_VERIFY(!isTaken(sharpS, controlAndAlt));
        run(u"setxkbmap us"_s);
    }

    void leavesWhatIsDisabled()
    {
        _program->terminate();
        QVERIFY(_program->waitForFinished());
        QVERIFY(!isTaken(z, controlAndAlt)); // it is gone
        _program.emplace(QStringLiteral(PELLAR_PROGRAM));
        QTRY_VERIFY_WITH_TIMEOUT(isTaken(z, controlAndAlt), 10000);
        QVERIFY(!isTaken(space, superAndShift));
    }

private:
    static void store(const QString& shortcut, const QVariant& binding)
    {
        PlistUserDefaults(PlistUserDefaults::defaultPath())
            .setObject(u"pellar.shortcut."_s + shortcut, binding);
    }
    /// Presses controls of the program's windows, by way of the accessibility bus.
    static bool operate(const QStringList& controls)
    {
        return output(QStringLiteral(PELLAR_SOURCE_DIR "/tools/a11y"), QStringList(u"press"_s) + controls) !=
               u"?";
    }
    static bool press(const QString& chord) { return run(u"xdotool key "_s + chord) != u"?"; }

    RealPlayer _mpv;
    std::optional<Program> _program;
};

QTEST_MAIN(HotKeysTest)
#include "hotkeys_test.moc"
