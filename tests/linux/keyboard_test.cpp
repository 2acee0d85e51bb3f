#include "KeyWitness.h"
#include "base/EventLoop.h"
#include "engine/PlayerScripts.h"
#include "linux/script/Interpreter.h"
#include "linux/x11/SystemEvents.h"
#include "linux/x11/X11Session.h"
#include "linux/x11/X11Windows.h"

#include <QGuiApplication>
#include <QtTest>

#include <xcb/xtest.h>

#include <csignal>

namespace {

const QString spotify = QStringLiteral("Spotify");
const QString firefox = QStringLiteral("Firefox");

/// Keys by their place on the keyboard.
constexpr uint8_t x = 53;
constexpr uint8_t scrollLock = 78;

bool run(const QString& commandLine)
{
    QStringList words = QProcess::splitCommand(commandLine);
    const QString program = words.takeFirst();
    return QProcess::execute(program, words) == 0;
}

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
    if (action == QStringLiteral("layout")) {
        return tap(scrollLock);
    }
    return action.isEmpty() || run(QStringLiteral("xdotool ") + action);
}

QString keystroke(qint64 processId, const QString& what)
{
    return QStringLiteral("tell application \"System Events\"\n    try\n"
                          "        set p to first process whose unix id is %1\n"
                          "        tell p to keystroke %2\n"
                          "        return \"OK\"\n    on error errMsg\n"
                          "        return \"ERR: \" & errMsg\n    end try\nend tell")
        .arg(QString::number(processId), what);
}

/// Waits until a witness's window is the active one.
bool hasKeyboard(KeyWitness& witness)
{
    return QTest::qWaitFor([&witness] {
        return witness.window() != XCB_WINDOW_NONE && X11Windows::active() == witness.window();
    });
}

/// Gives a witness's new window the keyboard, if the window manager has not done so by itself.
bool takesKeyboard(KeyWitness& witness)
{
    return QTest::qWaitFor([&witness] {
        const xcb_window_t window = witness.window();
        if (window != XCB_WINDOW_NONE && X11Windows::active() != window) {
            X11Windows::activate(window);
        }
        return window != XCB_WINDOW_NONE && X11Windows::active() == window;
    });
}

} // namespace

class KeyboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keystrokes_data();
    void keystrokes();
    void aHeldHotKeySwallowsNothing();
    void loveReachesAWindowInTheBackground();
    void aWindowThatNeverGetsTheKeyboardGetsNoKeys();
    void oddWindows();

private:
    QString reply(const QString& script) { return _interpreter->run(script).reply.value_or(QString()); }

    EventLoop _runLoop;
    std::unique_ptr<Interpreter> _interpreter;
};

void KeyboardTest::init()
{
    const auto events = std::make_shared<SystemEvents>(_runLoop);
    _interpreter = std::make_unique<Interpreter>(
        [events](const QString& name) { return name == QStringLiteral("system events") ? events : nullptr; });
}

void KeyboardTest::keystrokes_data()
{
    QTest::addColumn<QStringList>("fingers"); // layout; what is done with the keys before; how it is undone
    QTest::addColumn<QString>("what");        // empty: love in Spotify
    QTest::addColumn<QString>("keys");        // with what the X key does then, "ERR" when it is refused
    const auto row = [](const char* name, const char* what, const char* keys, const char* fingers = "us") {
        QTest::newRow(name) << QString::fromLatin1(fingers).split(u';') << QString::fromUtf8(what)
                            << QString::fromUtf8(keys);
    };
    row("love", "", "Ctrl+S=,X=x");
    row("space", "\" \"", "Space= ,X=x");
    row("a capital by itself", "\"nP\"", "N=n,Shift+P=P,X=x");
    row("all modifiers", "\"k\" using {command down, option down, shift down}", "Ctrl+Alt+Shift+K=,X=x");
    row("unknown character", "\"Nж\"", "ERR,X=x");
    row("no modifier", "\"N\" using {shift down, playing}", "ERR,X=x");
    row("no text", "5", "ERR,X=x");
    row("Ctrl and Shift are held", "\" \"",
        "Space= ,Ctrl+Shift+X=", "us;keydown Control_L keydown Shift_R;keyup Shift_R keyup Control_L");
    row("Caps Lock is on", "\"pN\"", "P=p,Shift+N=N,X=X", "us;key Caps_Lock;key Caps_Lock");
    row("Latin on Cyrillic", "\"N\"", "ERR,Ч=ч", "ru,us");
    row("shortcut on Cyrillic", "", "Ctrl+S=,Ч=ч", "ru,us");
    row("second layout", "\"N\" using {shift down}", "Shift+N=N,X=x", "ru,us;layout;layout");
}

void KeyboardTest::keystrokes()
{
    QFETCH(const QStringList, fingers);
    QFETCH(const QString, what);
    QFETCH(QString, keys);
    KeyWitness witness(what.isEmpty() ? spotify : firefox);
    QVERIFY(takesKeyboard(witness));
    const auto reset = qScopeGuard([&fingers] {
        act(fingers.value(2));
        run(QStringLiteral("setxkbmap -option '' -layout us"));
    });
    QVERIFY(run(QStringLiteral("setxkbmap -option grp:sclk_toggle -layout ") + fingers.constFirst()));
    QVERIFY(act(fingers.value(1)));

    const bool isRefused = keys.startsWith(QStringLiteral("ERR,"));
    if (what.isEmpty()) {
        QCOMPARE(_interpreter->run(PlayerScripts::loveSpotify()), ScriptOutcome());
    } else {
        const QString answer = reply(keystroke(witness.processId(), what));
        QCOMPARE(answer.left(4), isRefused ? QStringLiteral("ERR:") : QStringLiteral("OK"));
    }
    QVERIFY(tap(x));
    QTRY_COMPARE(witness.keys(), keys.remove(QStringLiteral("ERR,")));
}

void KeyboardTest::aHeldHotKeySwallowsNothing()
{
    KeyWitness witness(spotify);
    QVERIFY(takesKeyboard(witness));
    xcb_connection_t* const server = X11Session::connection();
    const auto grab = xcb_grab_key_checked(server, 0, X11Session::root(), XCB_MOD_MASK_CONTROL, x,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    QVERIFY(xcb_request_check(server, grab) == nullptr);
    const auto release = qScopeGuard([&] {
        xcb_ungrab_key(server, x, X11Session::root(), XCB_MOD_MASK_CONTROL);
        act(QStringLiteral("keyup 53 keyup Control_L"));
    });
    QVERIFY(act(QStringLiteral("keydown Control_L keydown 53")));
    _interpreter->run(PlayerScripts::loveSpotify());
    QTRY_COMPARE(witness.keys(), QStringLiteral("Ctrl+S="));
}

void KeyboardTest::loveReachesAWindowInTheBackground()
{
    KeyWitness player(spotify);
    QVERIFY(takesKeyboard(player));
    KeyWitness front(firefox);
    QVERIFY(hasKeyboard(front));
    QCOMPARE(_interpreter->run(PlayerScripts::loveSpotify()), ScriptOutcome());
    QCOMPARE(_interpreter->run(PlayerScripts::spotifyKeystroke(QStringLiteral(" "), {})), ScriptOutcome());
    QTRY_COMPARE(player.keys(), QStringLiteral("Ctrl+S=,Space= "));
    QVERIFY(hasKeyboard(front) && tap(x));
    QTRY_COMPARE(front.keys(), QStringLiteral("X=x"));
    QCOMPARE(player.keys(), QStringLiteral("Ctrl+S=,Space= "));
}

void KeyboardTest::aWindowThatNeverGetsTheKeyboardGetsNoKeys()
{
    QFile processId(qEnvironmentVariable("PELLAR_DESKTOP_PID") + QStringLiteral("/windows"));
    QVERIFY(processId.open(QFile::ReadOnly));
    const pid_t windowManager = processId.readAll().trimmed().toInt();
    KeyWitness player(spotify);
    QVERIFY(takesKeyboard(player));
    KeyWitness front(firefox);
    QVERIFY(hasKeyboard(front));
    {
        static int warnings = 0;
        const auto handler = qInstallMessageHandler([](auto, const auto&, const QString& text) {
            warnings += text.contains(QStringLiteral("did not get the keyboard")) ? 1 : 0;
        });
        const auto restore = qScopeGuard([&] {
            kill(windowManager, SIGCONT);
            qInstallMessageHandler(handler);
        });
        QCOMPARE(kill(windowManager, SIGSTOP), 0);
        QCOMPARE(_interpreter->run(PlayerScripts::loveSpotify()), ScriptOutcome());
        QTRY_COMPARE(warnings, 1);
    }
    // The window manager wakes up and does, too late, what it was asked for: there and back. Then it shows
    // another window, and when that is gone the keyboard goes to the one that had it last.
    {
        KeyWitness last(QStringLiteral("Last"));
        QVERIFY(hasKeyboard(last));
    }
    QVERIFY(hasKeyboard(front) && tap(x));
    QTRY_COMPARE(front.keys() + player.keys(), QStringLiteral("X=x"));
}

void KeyboardTest::oddWindows()
{
    KeyWitness good(firefox);
    QVERIFY(takesKeyboard(good));
    KeyWitness odd(spotify);
    QVERIFY(hasKeyboard(odd));
    const auto ask = [this](const char* question) {
        return reply(QStringLiteral("tell application \"System Events\" to get ") +
                     QString::fromLatin1(question));
    };
    const auto player = "unix id of first process whose bundle identifier is \"com.spotify.client\"";
    QCOMPARE(ask(player), QString::number(odd.processId()));
    for (const char* const damage :
         {"-f _NET_WM_PID 8s -set _NET_WM_PID 12", "-remove _NET_WM_PID",
          "-f WM_CLASS 8s -set WM_CLASS spotify", "-f WM_CLASS 32c -set WM_CLASS 7"}) {
        QVERIFY(run(QStringLiteral("xprop -id %1 %2").arg(odd.window()).arg(QLatin1String(damage))));
        QCOMPARE(ask(player), QString());
        QCOMPARE(ask("bundle identifier of first process whose frontmost is false"),
                 QStringLiteral("org.mozilla.firefox"));
    }
    QVERIFY(reply(keystroke(1, QStringLiteral("\"N\""))).startsWith(QStringLiteral("ERR: ")));
}

int main(int argc, char** argv)
{
    if (KeyWitness::isCalled(argc, argv)) {
        return KeyWitness::run(argc, argv);
    }
    QGuiApplication application(argc, argv);
    KeyboardTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "keyboard_test.moc"
