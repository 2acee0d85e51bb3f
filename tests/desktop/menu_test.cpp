#include "app/AppDelegate.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "linux/settings/PlistUserDefaults.h"
#include "prefs/MenuStyleManager.h"
#include "support/MprisStandIn.h"
#include "support/Program.h"
#include "support/RealPlayer.h"
#include "support/Windows.h"
#include "ui/QmlModules.h"
#include "ui/pill/PillLayout.h"

#include <QApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QtTest>

namespace {

QWindow* glass()
{
    return Windows::named(u"Pellar Menu"_s);
}

bool isOpen()
{
    return glass() != nullptr || QApplication::activePopupWidget() != nullptr;
}

/// Where a row of the open menu is on the screen; none when there is no such row.
std::optional<QPoint> rowNamed(const QString& title)
{
    const auto windows = QGuiApplication::topLevelWindows();
    for (QWindow* const window : windows) {
        const bool isMenu = window->isVisible() && window->type() == Qt::Popup;
        QAccessibleInterface* const row = isMenu ? Windows::find(window->accessibleRoot(), title) : nullptr;
        if (row != nullptr && !row->rect().isEmpty()) {
            return row->rect().center();
        }
    }
    return std::nullopt;
}

QString shownTitle()
{
    const auto* const view = qobject_cast<QQuickView*>(Windows::named(u"Pellar"_s));
    return view->rootObject()->property("pill").value<QObject*>()->property("title").toString();
}

} // namespace

/// The whole program but its main function, on the real services of a desktop, under a real pointer.
class MenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<PellarMenuStyle>("style");
        QTest::newRow("classic") << PellarMenuStyle::classic;
        QTest::newRow("glass") << PellarMenuStyle::liquidGlass;
    }
    void init()
    {
        QFETCH_GLOBAL(PellarMenuStyle, style);
        MenuStyleManager::shared().style = style;
    }

    void initTestCase()
    {
        QVERIFY(_mpv.start());
        _defaults.setObject(u"pellar_onboarding_complete"_s, true);
        UserDefaults::setStandard(&_defaults);
        Platform::setCurrent(&_linux.ports());
        _program = std::make_unique<AppDelegate>(_linux.ports(), _defaults, _linux.appearance());
        _program->applicationDidFinishLaunching();
        QWindow* const pill = Windows::named(u"Pellar"_s);
        QVERIFY(pill != nullptr && QTest::qWaitForWindowExposed(pill));
        _pill = pill->geometry().center() + QPoint(40, 0);
        _play = pill->position() + PillLayout::make(pill->size(), {}).playButton.center().toPoint();
        QTRY_COMPARE(shownTitle(), RealPlayer::metadata(u"title"_s));
    }

    void cleanupTestCase() { _program.reset(); }

    void cleanup()
    {
        run(u"xdotool key Escape key Escape"_s);
        QTRY_VERIFY(!isOpen());
    }

    void rowsDoWhatTheySay()
    {
        RealPlayer::tell(u"pause"_s);
        const auto resume = qScopeGuard([] { RealPlayer::tell(u"play"_s); });
        const auto track = [](int number) {
            return MprisStandIn::metadata(u"/t/%1"_s.arg(number), u"Title %1"_s.arg(number), u"Band"_s,
                                          QString(), 100);
        };
        MprisStandIn player(u"lister"_s);
        player.setTracks({track(1), track(2), track(3)});
        player.change(MprisStandIn::playing(track(2)));
        QTRY_COMPARE(shownTitle(), u"Title 2"_s);
        choose({u"Open in Music App"_s});
        QTRY_COMPARE(player.calls, QStringList{u"Raise"_s});
        choose({u"Up Next"_s, u"Title 3 — Band"_s});
        QTRY_COMPARE(player.calls.last(), u"GoTo /t/3"_s);
        choose({u"Copy Song Link"_s});
        QTRY_VERIFY(
            run(u"xclip -selection clipboard -o"_s).contains(u"apple.com/search?term=Title%202%20Band"_s));
        choose({u"Recently Played"_s, u"Title 2 — Band"_s});
        QTRY_COMPARE(run(u"xclip -selection clipboard -o"_s), u"Title 2 — Band"_s);

        for (const bool isOn : {true, false}) {
            choose({u"Audio Sources"_s, u"Live Visualizer"_s});
            QCOMPARE(_defaults.boolean(u"com.orvalen.pellar.audio.live_visualizer_enabled"_s),
                     std::optional(isOn));
        }
        choose({u"Sleep Timer"_s, u"15 minutes"_s});
        open();
        clickRow(u"Sleep Timer"_s);
        run(u"xdotool key Down Down Down Down Down Down Return"_s); // the row below the five times
        QTRY_VERIFY(!isOpen());
        open();
        clickRow(u"Sleep Timer"_s);
        QTRY_VERIFY(rowNamed(u"No Timer Active"_s));
    }

    void isDismissed()
    {
        QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
        for (const auto& [point, button] :
             {std::pair(_desktop, 1), std::pair(_desktop, 3), std::pair(_pill, 3), std::pair(_play, 1)}) {
            open();
            Windows::click(point, button); // the panel may be on its way in
            QTRY_VERIFY(!isOpen());
        }
        QCOMPARE(RealPlayer::status(), u"Playing"_s); // the click on the button only closed the menu
        Windows::click(_play);
        QTRY_COMPARE(RealPlayer::status(), u"Paused"_s); // now it reaches it again
        Windows::click(_play);
        QTRY_COMPARE(RealPlayer::status(), u"Playing"_s);
    }

    /// What is typed goes to the program in front, but for what is typed into the menu.
    void leavesKeyboardAlone()
    {
        Program front(u"xev"_s, {u"-event"_s, u"keyboard"_s});
        QString heard;
        const auto hears = [&front, &heard](const QString& key) {
            heard += QString::fromUtf8(front.readAllStandardOutput());
            return heard.contains(
                QRegularExpression(u"KeyPress event.*\\n.*\\n.*keysym 0x\\w+, %1\\)"_s.arg(key)));
        };
        run(u"xdotool search --sync --name ^Event.Tester$ windowfocus --sync"_s);
        for (const auto& keys : {u"c Escape"_s, u"c Down Down Return"_s}) { // away, and a row chosen
            open();
            heard.clear();
            run(u"xdotool key "_s + keys);
            QTRY_VERIFY(!isOpen());
            run(u"xdotool key d"_s);
            QTRY_VERIFY(hears(u"d"_s));
            for (const auto& key : {u"c"_s, u"Escape"_s, u"Down"_s, u"Return"_s}) {
                QVERIFY2(!hears(key), qPrintable(key));
            }
        }
    }

    void followsDevices()
    {
        run(u"pactl set-default-sink speakers"_s);
        open();
        clickRow(u"Audio Output"_s);
        QTRY_VERIFY(rowNamed(u"Headphones"_s));
        const QString module =
            run(u"pactl load-module module-null-sink sink_properties=device.description=Kitchen"_s);
        QTRY_VERIFY(rowNamed(u"Kitchen"_s));
        QVERIFY(rowNamed(u"Headphones"_s) && rowNamed(u"Quit Pellar"_s));
        run(u"pactl unload-module "_s + module);
        QTRY_VERIFY(!rowNamed(u"Kitchen"_s));
        clickRow(u"Headphones"_s);
        QTRY_COMPARE(run(u"pactl get-default-sink"_s), u"headphones"_s);
        QTRY_VERIFY(!isOpen());
    }

private:
    void open()
    {
        QTRY_VERIFY(!isOpen());
        Windows::click(_pill, 3);
        QTRY_VERIFY(isOpen());
    }

    void clickRow(const QString& title)
    {
        QTRY_VERIFY2(rowNamed(title), qPrintable(title));
        QTRY_VERIFY(glass() == nullptr || glass()->opacity() == 1); // it has unfolded
        Windows::click(*rowNamed(title));
    }

    /// Opens the menu and clicks on one row after the other.
    void choose(const QStringList& path)
    {
        open();
        for (const QString& title : path) {
            clickRow(title);
        }
        QTRY_VERIFY2(!isOpen(), "still open after a choice");
    }

    PlistUserDefaults _defaults{PlistUserDefaults::defaultPath()};
    PlayerChoice _casting{_defaults};
    LinuxPlatform _linux{_casting};
    std::unique_ptr<AppDelegate> _program;
    RealPlayer _mpv;
    QPoint _pill; ///< a place on the pill where there is no control
    QPoint _play; ///< the button
    const QPoint _desktop{100, 600};
};

int main(int argc, char** argv)
{
    importQmlModules();
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"pellar"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    MenuTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "menu_test.moc"
