#include "KeyWitness.h"
#include "base/EventLoop.h"
#include "engine/PlayerScripts.h"
#include "platform/linux/script/Interpreter.h"
#include "platform/linux/x11/SystemEvents.h"
#include "platform/linux/x11/X11Session.h"
#include "platform/linux/x11/X11Windows.h"

#include <QGuiApplication>
#include <QtTest>

#include <xcb/xtest.h>

#include <csignal>

namespace {

const QString spotify = QStringLiteral("Spotify");
const QString firefox = QStringLiteral("Firefox");

/// Keys by their place on the keyboard.
constexpr uint8_t escape = 9;
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

QString question(const char* property, const QString& filter)
{
    return QStringLiteral("tell application \"System Events\" to get %1 of first process whose %2")
        .arg(QString::fromLatin1(property), filter);
}

/// Waits until a witness's window is the active one.
bool hasKeyboard(KeyWitness& witness)
{
    return QTest::qWaitFor([&witness] {
        return witness.window() != XCB_WINDOW_NONE && X11Windows::active() == witness.window();
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
    void oddWindows_data();
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
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("undo");
    QTest::addColumn<QString>("what");  // empty: love in Spotify
    QTest::addColumn<QString>("keys");  // "ERR" when it is refused
    QTest::addColumn<QString>("after"); // what the X key does then
    const auto row = [](const char* name, const char* layout, const char* before, const char* undo,
                        const char* what, const char* keys, const char* after) {
        QTest::newRow(name) << QString::fromLatin1(layout) << QString::fromLatin1(before)
                            << QString::fromLatin1(undo) << QString::fromUtf8(what)
                            << QString::fromLatin1(keys) << QString::fromUtf8(after);
    };
    const auto plain = [&row](const char* name, const char* what, const char* keys) {
        row(name, "us", "", "", what, keys, "X=x");
    };
    plain("love", "", "Ctrl+S=");
    plain("space", "\" \"", "Space= ");
    plain("shift-N", "\"N\" using {shift down}", "Shift+N=N");
    plain("a capital by itself", "\"nP\"", "N=n,Shift+P=P");
    plain("all modifiers", "\"k\" using {command down, option down, shift down}", "Ctrl+Alt+Shift+K=");
    plain("one modifier", "\"k\" using control down", "Ctrl+K=");
    plain("unknown character", "\"Nж\"", "ERR");
    plain("no modifier", "\"N\" using {shift down, playing}", "ERR");
    plain("no text", "5", "ERR");
    row("Super is held", "us", "keydown Super_L", "keyup Super_L", "", "Ctrl+S=", "Meta+X=x");
    row("Ctrl and Shift are held", "us", "keydown Control_L keydown Shift_R", "keyup Shift_R keyup Control_L",
        "\" \"", "Space= ", "Ctrl+Shift+X=");
    row("Caps Lock is on", "us", "key Caps_Lock", "key Caps_Lock", "\"pN\"", "P=p,Shift+N=N", "X=X");
    row("letters elsewhere", "fr", "", "", "\"aQ\"", "A=a,Shift+Q=Q", "X=x");
    row("Latin on Cyrillic", "ru,us", "", "", "\"N\"", "ERR", "Ч=ч");
    row("shortcut on Cyrillic", "ru,us", "", "", "", "Ctrl+S=", "Ч=ч");
    row("second layout", "ru,us", "layout", "layout", "\"N\" using {shift down}", "Shift+N=N", "X=x");
}

void KeyboardTest::keystrokes()
{
    QFETCH(const QString, layout);
    QFETCH(const QString, before);
    QFETCH(const QString, undo);
    QFETCH(const QString, what);
    QFETCH(const QString, keys);
    QFETCH(const QString, after);
    KeyWitness witness(what.isEmpty() ? spotify : firefox);
    QVERIFY(hasKeyboard(witness));
    const auto reset = qScopeGuard([&undo] {
        act(undo);
        run(QStringLiteral("setxkbmap -option '' -layout us"));
    });
    QVERIFY(run(QStringLiteral("setxkbmap -option grp:sclk_toggle -layout ") + layout) && act(before));

    const bool isRefused = keys == QStringLiteral("ERR");
    if (what.isEmpty()) {
        QCOMPARE(_interpreter->run(PlayerScripts::loveSpotify()), ScriptOutcome());
    } else {
        const QString answer = reply(keystroke(witness.processId(), what));
        QCOMPARE(answer.left(4), isRefused ? QStringLiteral("ERR:") : QStringLiteral("OK"));
    }
    QVERIFY(tap(x));
    QTRY_COMPARE(witness.keys().join(u','), isRefused ? after : QString(keys + u',' + after));
}

void KeyboardTest::aHeldHotKeySwallowsNothing()
{
    KeyWitness witness(spotify);
    QVERIFY(hasKeyboard(witness));
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
    QTRY_COMPARE(witness.keys().join(u','), QStringLiteral("Ctrl+S="));
}

void KeyboardTest::loveReachesAWindowInTheBackground()
{
    KeyWitness player(spotify);
    QVERIFY(hasKeyboard(player));
    KeyWitness front(firefox);
    QVERIFY(hasKeyboard(front));
    QCOMPARE(_interpreter->run(PlayerScripts::loveSpotify()), ScriptOutcome());
    QCOMPARE(_interpreter->run(PlayerScripts::spotifyKeystroke(QStringLiteral(" "), {})), ScriptOutcome());
    QTRY_COMPARE(player.keys().join(u','), QStringLiteral("Ctrl+S=,Space= "));
    QVERIFY(hasKeyboard(front));
    QVERIFY(tap(x));
    QTRY_COMPARE(front.keys().join(u','), QStringLiteral("X=x"));
    QCOMPARE(player.keys().size(), 2);
}

void KeyboardTest::aWindowThatNeverGetsTheKeyboardGetsNoKeys()
{
    static int warnings = 0;
    QFile processId(qEnvironmentVariable("PELLAR_DESKTOP_PID") + QStringLiteral("/windows"));
    QVERIFY(processId.open(QFile::ReadOnly));
    const pid_t windowManager = processId.readAll().trimmed().toInt();
    KeyWitness player(spotify);
    QVERIFY(hasKeyboard(player));
    KeyWitness front(firefox);
    QVERIFY(hasKeyboard(front));
    {
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
    QVERIFY(hasKeyboard(front));
    QVERIFY(tap(escape));
    QTRY_COMPARE((front.keys() + player.keys()).join(u','), QStringLiteral("Esc="));
}

void KeyboardTest::oddWindows_data()
{
    QTest::addColumn<QString>("damage"); // an option of xprop
    QTest::addColumn<QString>("bundleId");
    QTest::addColumn<bool>("isFound"); // by its bundle identifier and with its process id
    const auto row = [](const char* name, const char* damage, const char* bundleId = "") {
        QTest::newRow(name) << QString::fromLatin1(damage) << QString::fromLatin1(bundleId)
                            << (*bundleId != '\0');
    };
    row("as it should be", "-remove NOTHING", "com.spotify.client");
    row("no process id", "-remove _NET_WM_PID");
    row("a text as process id", "-f _NET_WM_PID 8s -set _NET_WM_PID 12");
    row("process 0", "-f _NET_WM_PID 32c -set _NET_WM_PID 0");
    row("no class", "-remove WM_CLASS");
    row("numbers as class", "-f WM_CLASS 32c -set WM_CLASS 7");
    row("half a class", "-f WM_CLASS 8s -set WM_CLASS spotify");
}

void KeyboardTest::oddWindows()
{
    QFETCH(const QString, damage);
    QFETCH(const bool, isFound);
    KeyWitness good(firefox);
    QVERIFY(hasKeyboard(good));
    KeyWitness odd(spotify);
    QVERIFY(hasKeyboard(odd));
    QVERIFY(run(QStringLiteral("xprop -id %1 %2").arg(QString::number(odd.window()), damage)));
    const QString unixId = QString::number(odd.processId());
    const QString browser = QStringLiteral("bundle identifier is \"org.mozilla.firefox\"");
    const QString player = QStringLiteral("bundle identifier is \"com.spotify.client\"");

    QTEST(reply(question("bundle identifier", QStringLiteral("unix id is ") + unixId)), "bundleId");
    QCOMPARE(reply(question("unix id", player)), isFound ? unixId : QString());
    QCOMPARE(reply(question("unix id", browser)), QString::number(good.processId()));
    QCOMPARE(reply(question("frontmost", browser)), QStringLiteral("false"));
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
