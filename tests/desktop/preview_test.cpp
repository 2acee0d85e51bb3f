#include "app/AppDelegate.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "prefs/MenuStyleManager.h"
#include "prefs/WidgetManager.h"
#include "support/HttpStandIn.h"
#include "support/MemoryDefaults.h"
#include "support/RealPlayer.h"
#include "support/Windows.h"
#include "ui/QmlModules.h"
#include "ui/pill/PillLayout.h"

#include <QApplication>
#include <QQuickView>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;

/// The preview and the widget of the whole program but its main function, under a real pointer; what they do
/// is read from the player.
class PreviewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(_mpv.start());
        _defaults.setObject(u"com.orvalen.pellar.endpoint.artworkSearch"_s, u"http://127.0.0.1:1"_s);
        _defaults.setObject(u"com.orvalen.pellar.endpoint.lyrics"_s, _server.address());
        _server.answer("/api/get", {.body = R"({"syncedLyrics": "[00:01.00]First\n[00:30.00]Second"})"});
        _defaults.setObject(u"pellar_onboarding_complete"_s, true);
        UserDefaults::setStandard(&_defaults);
        Platform::setCurrent(&_linux.ports());
        MenuStyleManager::shared().style = PellarMenuStyle::liquidGlass;
        start();
        QWindow* const pill = Windows::named(u"Pellar"_s);
        QVERIFY(pill != nullptr && QTest::qWaitForWindowExposed(pill));
        _title = pill->geometry().center() + QPoint(40, 0);
    }

    void cleanupTestCase() { _program.reset(); }

    void opensAndCloses()
    {
        using Act = std::function<void()>;
        const auto press = [](const QString& key) { return [key] { run(u"xdotool key "_s + key); }; };
        const Act chooseRow = [this] {
            Windows::click(_title, 3);
            QTRY_VERIFY(isUnfolded(u"Pellar Menu"_s));
            run(u"xdotool key space"_s);
        };
        const Act hold = [this] { holdTitle(); };
        const Act clickBeside = [] { Windows::click({100, 700}); };
        for (const auto& [open, close] : {std::pair<Act, Act>{hold, press(u"Escape"_s)},
                                          {chooseRow, press(u"space"_s)},
                                          {chooseRow, clickBeside},
                                          {hold, hold}}) {
            open();
            QTRY_VERIFY(isUnfolded(u"Pellar Preview"_s));
            QTRY_VERIFY(Windows::named(u"Pellar Menu"_s) == nullptr);
            close();
            QTRY_VERIFY(Windows::named(u"Pellar Preview"_s) == nullptr);
        }
        hold();
        QTRY_VERIFY(isUnfolded(u"Pellar Preview"_s));
        Windows::click(_title, 3);
        QTRY_VERIFY(Windows::named(u"Pellar Preview"_s) == nullptr && isUnfolded(u"Pellar Menu"_s));
        run(u"xdotool key Escape"_s);
        QTRY_VERIFY(Windows::named(u"Pellar Menu"_s) == nullptr);
        QCOMPARE(RealPlayer::status(), u"Playing"_s); // Space has only closed it
    }

    void commandsPlayer()
    {
        holdTitle();
        QTRY_VERIFY(isUnfolded(u"Pellar Preview"_s));
        const auto place = [](const QString& name) {
            QAccessibleInterface* const root = Windows::named(u"Pellar Preview"_s)->accessibleRoot();
            QAccessibleInterface* const found = Windows::find(root, name);
            return found != nullptr ? found->rect() : QRect();
        };
        Windows::click(place(u"Pause"_s).center());
        QTRY_COMPARE(RealPlayer::status(), u"Paused"_s);
        const QRect bar = place(u"Position"_s);
        Windows::drag({bar.left() + 20, bar.top() + 9}, {bar.left() + bar.width() / 4, bar.top() + 9});
        QTRY_VERIFY(std::abs(RealPlayer::position() - 10) < 0.5); // of 40 seconds
        QTRY_VERIFY(!place(u"First"_s).isEmpty());
        const QRect words = place(u"Lyrics"_s);
        Windows::click({words.center().x(), words.top() + words.height() * 42 / 100 + 30}); // the next line
        QTRY_VERIFY(std::abs(RealPlayer::position() - 30) < 0.5); // mpv seeks by key frames
        run(u"xdotool key Tab Left"_s); // the first that the keyboard goes to is the scrub bar
        QTRY_VERIFY(std::abs(RealPlayer::position() - 25) < 0.5);
        const QString title = RealPlayer::metadata(u"title"_s);
        run(u"xdotool key Tab Tab Tab Return"_s);
        QTRY_VERIFY(RealPlayer::metadata(u"title"_s) != title);
        Windows::click(place(u"Play"_s).center());
        QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
        run(u"xdotool key Escape"_s);
        QTRY_VERIFY(Windows::named(u"Pellar Preview"_s) == nullptr);
    }

    /// Where and how large it is says the X server.
    void widgetStaysWhereItIsPut()
    {
        WidgetManager::shared().isEnabled = true;
        QTRY_COMPARE(widgetFrame(), QRect(960, 40, 300, 140));
        QProcess other;
        other.start(u"xev"_s, {u"-name"_s, u"Other"_s, u"-geometry"_s, u"300x200+900+100"_s});
        QTRY_VERIFY(isWidgetAbove(u"Other"_s));
        WidgetManager::shared().alwaysOnTop = false;
        run(u"xdotool search --name ^Other$ windowactivate"_s);
        QTRY_VERIFY(!isWidgetAbove(u"Other"_s));
        WidgetManager::shared().alwaysOnTop = true;
        QTRY_VERIFY(isWidgetAbove(u"Other"_s));
        other.kill();
        QVERIFY(other.waitForFinished());
        Windows::drag({980, 60}, {580, 360});
        QTRY_COMPARE(widgetFrame(), QRect(560, 340, 300, 140));
        Windows::drag({854, 474}, {921, 551});
        QTRY_COMPARE(widgetFrame(), QRect(560, 340, 367, 217));
        Windows::drag({743, 531}, {743, 400}); // a button
        const QRect frame = widgetFrame();
        QCOMPARE(frame.topLeft(), QPoint(560, 340));
        start();
        QTRY_COMPARE(widgetFrame(), frame);
        WidgetManager::shared().resetPosition();
        QTRY_COMPARE(widgetFrame(), QRect(960, 40, 300, 140));
        run(u"xrandr --setmonitor left 640/170x800/210+0+0 screen"_s);
        QTRY_COMPARE(widgetFrame(), QRect(340, 40, 300, 140));
        start();
        QTRY_COMPARE(widgetFrame(), QRect(340, 40, 300, 140));
        run(u"xrandr --delmonitor left"_s); // its screen is there again
        QTRY_COMPARE(widgetFrame(), QRect(960, 40, 300, 140));
        run(u"xdotool mousemove 1000 60"_s);
        QAccessibleInterface* const cross =
            Windows::find(Windows::named(u"Pellar Widget"_s)->accessibleRoot(), u"Close Widget"_s);
        Windows::click(cross->rect().center());
        QTRY_VERIFY(widgetFrame().isNull());
        QVERIFY(!WidgetManager::shared().isEnabled);
    }

private:
    /// Anew, if it runs.
    void start()
    {
        _program.reset();
        _program = std::make_unique<AppDelegate>(_linux.ports(), _defaults, _linux.appearance());
        _program->applicationDidFinishLaunching();
    }

    void holdTitle() const
    {
        run(u"xdotool mousemove %1 %2 mousedown 1 sleep 0.6 mouseup 1"_s.arg(_title.x()).arg(_title.y()));
    }

    static bool isUnfolded(const QString& title)
    {
        const QWindow* const panel = Windows::named(title);
        return panel != nullptr && panel->opacity() == 1 && panel->height() > 200;
    }

    /// As the window manager has it and a window of another program.
    static bool isWidgetAbove(const QString& title)
    {
        const QString stack = run(u"xprop -root _NET_CLIENT_LIST_STACKING"_s);
        const auto place = [&stack](const QString& name) {
            const uint id = run(u"xdotool search --onlyvisible --name ^%1$"_s.arg(name)).toUInt();
            return stack.indexOf(u"0x"_s + QString::number(id, 16));
        };
        const auto other = place(title);
        return other >= 0 && place(u"Pellar.Widget"_s) > other;
    }

    static QRect widgetFrame()
    {
        const QString shell =
            run(u"xdotool search --onlyvisible --name ^Pellar.Widget$ getwindowgeometry --shell"_s);
        QList<int> sides;
        for (const QString& side : {u"X"_s, u"Y"_s, u"WIDTH"_s, u"HEIGHT"_s}) {
            const auto match =
                QRegularExpression(u"^%1=(-?\\d+)$"_s.arg(side), QRegularExpression::MultilineOption)
                    .match(shell);
            sides << match.captured(1).toInt();
        }
        return {sides[0], sides[1], sides[2], sides[3]};
    }

    MemoryDefaults _defaults;
    HttpStandIn _server;
    PlayerChoice _casting{_defaults};
    LinuxPlatform _linux{_casting};
    std::unique_ptr<AppDelegate> _program;
    RealPlayer _mpv;
    QPoint _title; ///< a place on the pill where there is no control
};

int main(int argc, char** argv)
{
    importQmlModules();
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    PreviewTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "preview_test.moc"
