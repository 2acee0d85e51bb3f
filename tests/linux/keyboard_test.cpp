#include "base/EventLoop.h"
#include "engine/PlayerScripts.h"
#include "linux/script/Interpreter.h"
#include "linux/x11/SystemEvents.h"
#include "linux/x11/VirtualKeys.h"
#include "linux/x11/X11Keyboard.h"
#include "linux/x11/X11Session.h"
#include "linux/x11/X11Windows.h"
#include "support/Command.h"
#include "support/Program.h"

#include <QtTest>

#include <xcb/xtest.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString spotify = u"Spotify"_s;

/// Keys by their place on the keyboard.
constexpr uint8_t x = 53;
constexpr uint8_t scrollLock = 78;

/// xdotool would do, if it did not press every key in the first layout.
bool tap(uint8_t keycode)
{
    xcb_connection_t* const server = X11Session::connection();
    xcb_test_fake_input(server, XCB_KEY_PRESS, keycode, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    const auto released = xcb_test_fake_input_checked(server, XCB_KEY_RELEASE, keycode, XCB_CURRENT_TIME,
                                                      XCB_WINDOW_NONE, 0, 0, 0);
    return xcb_request_check(server, released) == nullptr;
}

/// What the user's fingers do: a command of xdotool, "layout" or nothing.
bool act(const QString& action)
{
    if (action == u"layout") {
        return tap(scrollLock);
    }
    return action.isEmpty() || run(u"xdotool "_s + action) != u"?";
}

QString keystroke(qint64 processId, const QString& what)
{
    return uR"(tell application "System Events"
        try
            tell (first process whose unix id is %1) to keystroke %2
            return "OK"
        on error errMsg
            return "ERR: " & errMsg
        end try
    end tell)"_s.arg(QString::number(processId), what);
}

/// A program that shows a window and tells which keys arrive there.
class KeyWitness final : public Program
{
public:
    explicit KeyWitness(const QString& windowClass)
        : Program(u"xev"_s, {u"-event"_s, u"keyboard"_s, u"-name"_s, u"witness-of-"_s + windowClass})
        , window(run(u"xdotool search --sync --name ^witness-of-%1$"_s.arg(windowClass)).toUInt())
    {
        run(u"xdotool set_window --class %1 --classname %1 %2"_s.arg(windowClass).arg(window));
        run(u"xprop -id %1 -f _NET_WM_PID 32c -set _NET_WM_PID %2"_s.arg(window).arg(processId()));
    }

    bool hasKeyboard() const
    {
        return QTest::qWaitFor([this] { return X11Windows::active() == window; });
    }
    bool takesKeyboard() const
    {
        X11Windows::activate(window);
        return hasKeyboard();
    }

    /// The keys so far but for modifiers, each as "1:N". The number is what was held: 1 for Shift, 2 for Caps
    /// Lock, 4 for Ctrl and 8 for Alt, and 2000 for the second layout.
    QString keys()
    {
        _heard += QString::fromUtf8(readAllStandardOutput());
        static const QRegularExpression press(u"KeyPress event.*\\n.*\\n +state 0x(\\w+), .*"
                                              "\\(keysym 0x\\w+, (?!\\w+_(?:L|R|Lock|Group))(\\w+)"_s);
        QStringList keys;
        for (const auto& found : press.globalMatch(_heard)) {
            keys << found.captured(1) + u':' + found.captured(2);
        }
        return keys.join(u' ');
    }
    void forgetKeys() { keys(), _heard.clear(); }

    const xcb_window_t window;

private:
    QString _heard;
};

} // namespace

/// A window of Spotify's class and one of a browser's, and what is typed into them.
class KeyboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        for (KeyWitness* const witness : {&*_player, &_browser}) {
            QVERIFY(witness->takesKeyboard());
            witness->forgetKeys();
        }
    }

    void keystrokes()
    {
        struct Row {
            QString what; ///< is typed; empty: love in Spotify
            QString keys; ///< with what the X key does then, "ERR" when it is refused
            QString layout = u"us"_s;
            QString before = {}; ///< what fingers do
            QString after = {};
        };
        for (const auto& [what, keys, layout, before, after] :
             {Row{{}, u"4:s 0:x"_s},
              {u"\"k\" using {command down, option down, shift down}"_s, u"d:K 0:x"_s},
              {u"\"Nж\""_s, u"ERR 0:x"_s},
              {u"\"N\" using {shift down, playing}"_s, u"ERR 0:x"_s},
              {u"\" \""_s, u"0:space 5:X"_s, u"us"_s, u"keydown Control_L keydown Shift_R"_s,
               u"keyup Shift_R keyup Control_L"_s},
              {u"\"pN\""_s, u"0:p 1:N 2:X"_s, u"us"_s, u"key Caps_Lock"_s, u"key Caps_Lock"_s},
              {u"\"N\""_s, u"ERR 0:Cyrillic_che"_s, u"ru,us"_s},
              {{}, u"4:s 0:Cyrillic_che"_s, u"ru,us"_s},
              {u"\"N\" using {shift down}"_s, u"2001:N 2000:x"_s, u"ru,us"_s, u"layout"_s, u"layout"_s}}) {
            init();
            KeyWitness& witness = what.isEmpty() ? *_player : _browser;
            QVERIFY(witness.takesKeyboard());
            const auto reset = qScopeGuard([undo = after] {
                act(undo);
                run(u"setxkbmap -option '' -layout us"_s);
            });
            QCOMPARE(run(u"setxkbmap -option grp:sclk_toggle -layout "_s + layout), QString());
            QVERIFY(act(before));
            const bool isRefused = keys.startsWith(u"ERR ");
            if (what.isEmpty()) {
                QCOMPARE(_interpreter.run(PlayerScripts::loveSpotify()), ScriptOutcome());
            } else {
                const QString script = keystroke(witness.processId(), what);
                QCOMPARE(reply(script).left(4), isRefused ? u"ERR:"_s : u"OK"_s);
            }
            QVERIFY(tap(x));
            QTRY_COMPARE(witness.keys(), QString(keys).remove(u"ERR "_s));
        }
    }

    void keyCodes_data()
    {
        QTest::addColumn<quint32>("code");
        QTest::addColumn<int>("place"); // of the key, by its keycode
        QTest::newRow("us") << 6U << 52;
        QTest::newRow("de") << 6U << 29;    // Z is where Y was
        QTest::newRow("fr") << 21U << 13;   // 4 is typed with Shift
        QTest::newRow("ru") << 6U << 52;    // nothing is labelled Z
        QTest::newRow("ru,de") << 6U << 29; // but on the other layout
    }

    /// Whatever the layout, the code that is recorded for a key means that key, and there is one for each.
    void keyCodes()
    {
        const auto reset = qScopeGuard([] { run(u"setxkbmap us"_s); });
        QCOMPARE(run(u"setxkbmap -layout "_s + QString::fromLatin1(QTest::currentDataTag())), QString());
        const auto keyboard = X11Keyboard::state();
        QVERIFY(keyboard);
        QFETCH(const quint32, code);
        QTEST(int{VirtualKeys::keycode(code, *keyboard).value_or(0)}, "place");
        for (quint32 each = 0; each < 127; ++each) {
            if (const auto key = VirtualKeys::keycode(each, *keyboard)) {
                QCOMPARE(VirtualKeys::code(*key, *keyboard), std::optional(each));
            }
        }
        for (xcb_keycode_t key = 9; key <= 61; ++key) { // the rows from Escape to the last sign
            const bool isModifier = key == 37 || key == 50;
            QVERIFY2(VirtualKeys::code(key, *keyboard).has_value() != isModifier,
                     qPrintable(QString::number(key)));
        }
    }

    void aHeldHotKeySwallowsNothing()
    {
        QVERIFY(_player->takesKeyboard());
        xcb_connection_t* const server = X11Session::connection();
        const auto grab = xcb_grab_key_checked(server, 0, X11Session::root(), XCB_MOD_MASK_CONTROL, x,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        QVERIFY(xcb_request_check(server, grab) == nullptr);
        const auto release = qScopeGuard([&] {
            xcb_ungrab_key(server, x, X11Session::root(), XCB_MOD_MASK_CONTROL);
            act(u"keyup 53 keyup Control_L"_s);
        });
        QVERIFY(act(u"keydown Control_L keydown 53"_s));
        _interpreter.run(PlayerScripts::loveSpotify());
        QTRY_COMPARE(_player->keys(), u"4:s"_s);
    }

    void loveReachesAWindowInTheBackground()
    {
        QVERIFY(_browser.takesKeyboard());
        QCOMPARE(_interpreter.run(PlayerScripts::loveSpotify()), ScriptOutcome());
        QCOMPARE(_interpreter.run(PlayerScripts::spotifyKeystroke(u" "_s, {})), ScriptOutcome());
        QTRY_COMPARE(_player->keys(), u"4:s 0:space"_s);
        QVERIFY(_browser.hasKeyboard() && tap(x));
        QTRY_COMPARE(_browser.keys(), u"0:x"_s);
    }

    void aWindowThatNeverGetsTheKeyboardGetsNoKeys()
    {
        QFile processId(qEnvironmentVariable("PELLAR_DESKTOP_PID") + u"/windows"_s);
        QVERIFY(processId.open(QFile::ReadOnly));
        const pid_t windowManager = processId.readAll().trimmed().toInt();
        QVERIFY(_browser.takesKeyboard());
        {
            const auto wakeUp = qScopeGuard([&] { kill(windowManager, SIGCONT); });
            QCOMPARE(kill(windowManager, SIGSTOP), 0);
            static bool isWarned = false;
            const auto handler = qInstallMessageHandler([](auto, const auto&, const QString& text) {
                isWarned = isWarned || text.contains(u"did not get the keyboard");
            });
            const auto restore = qScopeGuard([handler] { qInstallMessageHandler(handler); });
            QCOMPARE(_interpreter.run(PlayerScripts::loveSpotify()), ScriptOutcome());
            QTRY_VERIFY(isWarned);
        }
        // The window manager wakes up and does, too late, what it was asked for: there and back. Then it
        // shows another window, and when that is gone the keyboard goes to the one that had it last.
        {
            const KeyWitness last(u"Last"_s);
            QVERIFY(last.hasKeyboard());
        }
        QVERIFY(_browser.hasKeyboard() && tap(x));
        QTRY_COMPARE(_browser.keys() + _player->keys(), u"0:x"_s);
    }

    void oddWindows()
    {
        const auto repair = qScopeGuard([this] { _player.emplace(spotify); });
        const auto ask = [this](const QString& question) {
            return reply(u"tell application \"System Events\" to get "_s + question);
        };
        const QString player =
            u"unix id of first process whose bundle identifier is \"com.spotify.client\""_s;
        QCOMPARE(ask(player), QString::number(_player->processId()));
        QVERIFY(_player->takesKeyboard());
        for (const auto& damage :
             {u"-f _NET_WM_PID 8s -set _NET_WM_PID 12"_s, u"-remove _NET_WM_PID"_s,
              u"-f WM_CLASS 8s -set WM_CLASS spotify"_s, u"-f WM_CLASS 32c -set WM_CLASS 7"_s}) {
            QCOMPARE(run(u"xprop -id %1 "_s.arg(_player->window) + damage), QString());
            QCOMPARE(ask(player), QString());
            QCOMPARE(ask(u"bundle identifier of first process whose frontmost is false"_s),
                     u"org.mozilla.firefox"_s);
        }
        QVERIFY(reply(keystroke(1, u"\"N\""_s)).startsWith(u"ERR: "));
    }

private:
    QString reply(const QString& script) { return _interpreter.run(script).reply.value_or(QString()); }

    EventLoop _runLoop;
    std::shared_ptr<SystemEvents> _events = std::make_shared<SystemEvents>(_runLoop);
    Interpreter _interpreter{
        [this](const QString& name) { return name == u"system events" ? _events : nullptr; }};
    std::optional<KeyWitness> _player{spotify};
    KeyWitness _browser{u"Firefox"_s};
};

QTEST_MAIN(KeyboardTest)
#include "keyboard_test.moc"
