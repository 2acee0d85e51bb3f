#include "KeyWitness.h"
#include "base/EventLoop.h"
#include "engine/PlayerScripts.h"
#include "platform/linux/script/Interpreter.h"
#include "platform/linux/x11/SystemEvents.h"
#include "platform/linux/x11/X11Processes.h"
#include "platform/linux/x11/X11Session.h"

#include <QGuiApplication>
#include <QtTest>

#include <xcb/xtest.h>

#include <csignal>

namespace {

const QString spotify = QStringLiteral("Spotify");
const QString firefox = QStringLiteral("Firefox");
const QString xKey = QStringLiteral("53"); // by its place on the keyboard

bool run(const QString& commandLine)
{
    QStringList words = QProcess::splitCommand(commandLine);
    const QString program = words.takeFirst();
    return QProcess::execute(program, words) == 0;
}

/// Not by xdotool, which puts the layout back at once.
bool switchLayout()
{
    constexpr uint8_t scrollLock = 78;
    xcb_connection_t* const server = X11Session::connection();
    xcb_test_fake_input(server, XCB_KEY_PRESS, scrollLock, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    const auto released = xcb_test_fake_input_checked(server, XCB_KEY_RELEASE, scrollLock, XCB_CURRENT_TIME,
                                                      XCB_WINDOW_NONE, 0, 0, 0);
    return xcb_request_check(server, released) == nullptr;
}

bool xdotool(const QString& arguments)
{
    if (arguments == QStringLiteral("switch layout")) {
        return switchLayout();
    }
    return arguments.isEmpty() || run(QStringLiteral("xdotool ") + arguments);
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

QString question(const QString& name, const QString& filter)
{
    return QStringLiteral("tell application \"System Events\" to get %1 of first process whose %2")
        .arg(name, filter);
}

/// Waits until a witness's window is the active one.
bool hasKeyboard(KeyWitness& witness)
{
    return QTest::qWaitFor([&witness] {
        return witness.window() != XCB_WINDOW_NONE && X11Windows::active() == witness.window();
    });
}

/// Stops a process for as long as this lives.
class Pause
{
public:
    explicit Pause(pid_t process) : _process(process) { kill(_process, SIGSTOP); }
    ~Pause() { kill(_process, SIGCONT); }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

private:
    pid_t _process;
};

/// Undoes what a test did to the keyboard, however it ends.
class KeyboardReset
{
public:
    KeyboardReset() = default;
    ~KeyboardReset()
    {
        xdotool(_undo);
        run(QStringLiteral("setxkbmap -layout us -option ''"));
    }
    KeyboardReset(const KeyboardReset&) = delete;
    KeyboardReset& operator=(const KeyboardReset&) = delete;

    /// An undo that does nothing is empty.
    bool prepare(const QString& layout, const QString& before, const QString& undo)
    {
        _undo = undo;
        return run(QStringLiteral("setxkbmap -option grp:sclk_toggle -layout ") + layout) && xdotool(before);
    }

private:
    QString _undo;
};

} // namespace

class KeyboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keystrokes_data();
    void keystrokes();
    void refusals_data();
    void refusals();
    void loveReachesAWindowInTheBackground();
    void aWindowThatNeverGetsTheKeyboardGetsNoKeys();
    void aHeldHotKeySwallowsNothing();
    void oddWindows_data();
    void oddWindows();
    void bundleIds_data();
    void bundleIds();

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
    QTest::addColumn<QString>("before"); // by the user's fingers
    QTest::addColumn<QString>("undo");
    QTest::addColumn<QString>("script"); // empty: love in Spotify
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("x"); // what the X key does afterwards
    const auto row = [](const char* name, const char* layout, const char* before, const char* undo,
                        const char* script, const char* keys, const char* x) {
        QTest::newRow(name) << QString::fromLatin1(layout) << QString::fromLatin1(before)
                            << QString::fromLatin1(undo) << QString::fromLatin1(script)
                            << QString::fromUtf8(keys).split(u',') << QString::fromUtf8(x);
    };
    row("love", "us", "", "", "", "Ctrl+S=", "X=x");
    row("space", "us", "", "", "\" \"", "Space= ", "X=x");
    row("shift-N", "us", "", "", "\"N\" using {shift down}", "Shift+N=N", "X=x");
    row("a capital by itself", "us", "", "", "\"nP\"", "N=n,Shift+P=P", "X=x");
    row("all modifiers", "us", "", "", "\"k\" using {command down, option down, shift down}",
        "Ctrl+Alt+Shift+K=", "X=x");
    row("one modifier", "us", "", "", "\"k\" using control down", "Ctrl+K=", "X=x");
    row("Super is held", "us", "keydown Super_L", "keyup Super_L", "", "Ctrl+S=", "Meta+X=x");
    row("Ctrl and Shift are held", "us", "keydown Control_L keydown Shift_R", "keyup Shift_R keyup Control_L",
        "\" \"", "Space= ", "Ctrl+Shift+X=");
    row("Caps Lock is on", "us", "key Caps_Lock", "key Caps_Lock", "\"pN\"", "P=p,Shift+N=N", "X=X");
    row("letters elsewhere", "fr", "", "", "\"aQ\"", "A=a,Shift+Q=Q", "X=x");
    row("shortcut on Cyrillic", "ru,us", "", "", "", "Ctrl+S=", "Ч=ч");
    row("second layout", "ru,us", "switch layout", "switch layout", "\"N\" using {shift down}", "Shift+N=N",
        "X=x");
}

void KeyboardTest::keystrokes()
{
    QFETCH(const QString, layout);
    QFETCH(const QString, before);
    QFETCH(const QString, undo);
    QFETCH(const QString, script);
    QFETCH(const QStringList, keys);
    QFETCH(const QString, x);
    KeyWitness witness(script.isEmpty() ? spotify : firefox);
    QVERIFY(hasKeyboard(witness));
    KeyboardReset keyboard;
    QVERIFY(keyboard.prepare(layout, before, undo));

    if (script.isEmpty()) {
        QCOMPARE(_interpreter->run(PlayerScripts::loveSpotify()), ScriptOutcome());
    } else {
        QCOMPARE(reply(keystroke(witness.processId(), script)), QStringLiteral("OK"));
    }

    QTRY_COMPARE(witness.keys().size(), keys.size());
    QVERIFY(xdotool(QStringLiteral("key ") + xKey));
    QTRY_COMPARE(witness.keys(), keys + QStringList(x));
}

void KeyboardTest::refusals_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("what");
    QTest::addColumn<qint64>("processId"); // 0: the witness's
    const auto row = [](const char* name, const char* layout, const char* what, qint64 processId) {
        QTest::newRow(name) << QString::fromLatin1(layout) << QString::fromUtf8(what) << processId;
    };
    row("no such process", "us", "\"N\"", 99);
    row("unknown character", "us", "\"Nж\"", 0);
    row("Latin on Cyrillic", "ru", "\"N\"", 0);
    row("no modifier", "us", "\"N\" using {shift down, playing}", 0);
    row("no text", "us", "5", 0);
}

void KeyboardTest::refusals()
{
    QFETCH(const QString, layout);
    QFETCH(const QString, what);
    QFETCH(const qint64, processId);
    KeyWitness witness(firefox);
    QVERIFY(hasKeyboard(witness));
    KeyboardReset keyboard;
    QVERIFY(keyboard.prepare(layout, {}, {}));

    const QString answer = reply(keystroke(processId != 0 ? processId : witness.processId(), what));

    QVERIFY2(answer.startsWith(QStringLiteral("ERR: ")), qUtf8Printable(answer));
    QVERIFY(xdotool(QStringLiteral("key Escape")));
    QTRY_COMPARE(witness.keys(), QStringList(QStringLiteral("Esc=")));
}

void KeyboardTest::loveReachesAWindowInTheBackground()
{
    KeyWitness player(spotify);
    QVERIFY(hasKeyboard(player));
    KeyWitness front(firefox);
    QVERIFY(hasKeyboard(front));
    const QString script = PlayerScripts::loveSpotify();
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(_interpreter->run(script), ScriptOutcome());
    QCOMPARE(_interpreter->run(script), ScriptOutcome());
    QVERIFY2(clock.elapsed() < 40, qPrintable(QString::number(clock.elapsed())));

    QTRY_COMPARE(player.keys(), QStringList(2, QStringLiteral("Ctrl+S=")));
    QTRY_COMPARE(X11Windows::active(), front.window());
    QVERIFY(xdotool(QStringLiteral("key ") + xKey));
    QTRY_COMPARE(front.keys(), QStringList(QStringLiteral("X=x")));
    QCOMPARE(player.keys().size(), 2);
}

void KeyboardTest::aWindowThatNeverGetsTheKeyboardGetsNoKeys()
{
    QFile pidFile(qEnvironmentVariable("PELLAR_DESKTOP_PID") + QStringLiteral("/windows"));
    QVERIFY(pidFile.open(QFile::ReadOnly));
    KeyWitness player(spotify);
    QVERIFY(hasKeyboard(player));
    KeyWitness front(firefox);
    QVERIFY(hasKeyboard(front));
    {
        const Pause windowManager(pidFile.readAll().trimmed().toInt());
        static int warnings = 0;
        const auto before =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
                warnings += text.contains(QStringLiteral("did not get the keyboard")) ? 1 : 0;
            });
        const auto restore = qScopeGuard([before] { qInstallMessageHandler(before); });
        QCOMPARE(_interpreter->run(PlayerScripts::loveSpotify()), ScriptOutcome());
        QTRY_COMPARE_WITH_TIMEOUT(warnings, 1, 3000);
    }
    // The window manager wakes up and does, too late, what it was asked for: there and back. Then it shows
    // another window, and when that is gone the keyboard goes to the one that had it last.
    {
        KeyWitness last(QStringLiteral("Last"));
        QVERIFY(hasKeyboard(last));
    }
    QTRY_COMPARE(X11Windows::active(), front.window());
    QVERIFY(xdotool(QStringLiteral("key Escape")));
    QTRY_COMPARE(front.keys() + player.keys(), QStringList(QStringLiteral("Esc=")));
}

void KeyboardTest::aHeldHotKeySwallowsNothing()
{
    KeyWitness witness(spotify);
    QVERIFY(hasKeyboard(witness));
    xcb_connection_t* const server = X11Session::connection();
    const auto xKeycode = static_cast<xcb_keycode_t>(xKey.toInt());
    const auto grab = xcb_grab_key_checked(server, 0, X11Session::root(), XCB_MOD_MASK_CONTROL, xKeycode,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    QVERIFY(xcb_request_check(server, grab) == nullptr);
    const auto release = qScopeGuard([&] {
        xcb_ungrab_key(server, xKeycode, X11Session::root(), XCB_MOD_MASK_CONTROL);
        xdotool(QStringLiteral("keyup 53 keyup Control_L"));
    });
    QVERIFY(xdotool(QStringLiteral("keydown Control_L keydown 53")));
    _interpreter->run(PlayerScripts::loveSpotify());
    QTRY_COMPARE(witness.keys(), QStringList(QStringLiteral("Ctrl+S=")));
}

void KeyboardTest::oddWindows_data()
{
    QTest::addColumn<QString>("xprop");
    QTest::addColumn<QString>("bundleId");  // by the process id
    QTest::addColumn<QString>("processId"); // by the bundle identifier: "own" or nothing
    const QString none;
    const QString own = QStringLiteral("own");
    const QString id = QStringLiteral("com.spotify.client");
    QTest::newRow("as it should be") << QStringLiteral("-version") << id << own;
    QTest::newRow("no process id") << QStringLiteral("-remove _NET_WM_PID") << none << none;
    QTest::newRow("a text as process id")
        << QStringLiteral("-f _NET_WM_PID 8s -set _NET_WM_PID 12") << none << none;
    QTest::newRow("process 0") << QStringLiteral("-f _NET_WM_PID 32c -set _NET_WM_PID 0") << none << none;
    QTest::newRow("no class") << QStringLiteral("-remove WM_CLASS") << none << none;
    QTest::newRow("numbers as class") << QStringLiteral("-f WM_CLASS 32c -set WM_CLASS 7") << none << none;
    QTest::newRow("half a class") << QStringLiteral("-f WM_CLASS 8s -set WM_CLASS spotify") << none << none;
}

void KeyboardTest::oddWindows()
{
    QFETCH(const QString, xprop);
    QFETCH(const QString, bundleId);
    QFETCH(QString, processId);
    KeyWitness good(firefox);
    QVERIFY(hasKeyboard(good));
    KeyWitness odd(spotify);
    QVERIFY(hasKeyboard(odd));
    QVERIFY(run(QStringLiteral("xprop -id %1 %2").arg(QString::number(odd.window()), xprop)));
    const QString pid = QString::number(odd.processId());
    processId.replace(QStringLiteral("own"), pid);

    QCOMPARE(reply(question(QStringLiteral("bundle identifier"), QStringLiteral("unix id is ") + pid)),
             bundleId);
    QCOMPARE(reply(question(QStringLiteral("unix id"),
                            QStringLiteral("bundle identifier is \"com.spotify.client\""))),
             processId);
    QCOMPARE(reply(question(QStringLiteral("name"),
                            QStringLiteral("bundle identifier is \"org.mozilla.firefox\""))),
             QStringLiteral("firefox"));
    QCOMPARE(
        reply(question(QStringLiteral("frontmost"), QStringLiteral("unix id is %1").arg(good.processId()))),
        QStringLiteral("false"));
}

void KeyboardTest::bundleIds_data()
{
    QTest::addColumn<QString>("windowClass");
    QTest::addColumn<QString>("bundleId");
    const auto row = [](const char* windowClass, const char* bundleId) {
        QTest::newRow(windowClass) << QString::fromLatin1(windowClass) << QString::fromLatin1(bundleId);
    };
    row("chromium", "com.google.Chrome");
    row("google-chrome-unstable", "com.google.Chrome.canary");
    row("firefox-esr", "org.mozilla.firefox");
    row("microsoft-edge", "com.microsoft.edgemac");
    row("brave-browser-beta", "com.brave.Browser.beta");
    row("vivaldi-stable", "com.vivaldi.Vivaldi");
    row("opera", "com.operasoftware.Opera");
    row("xterm", "");
}

void KeyboardTest::bundleIds()
{
    QFETCH(const QString, windowClass);
    QTEST(X11Processes::bundleId(windowClass).value_or(QString()), "bundleId");
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
