#include "app/AppDelegate.h"
#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "linux/settings/PlistUserDefaults.h"
#include "prefs/MenuStyleManager.h"
#include "support/Command.h"
#include "support/MprisStandIn.h"
#include "support/RealPlayer.h"
#include "ui/QmlModules.h"
#include "ui/pill/PillLayout.h"

#include <QAccessible>
#include <QApplication>
#include <QProcess>
#include <QQuickItem>
#include <QQuickView>
#include <QRegularExpression>
#include <QTest>

namespace {

/// Runs a program while this one goes on answering: what it clicks on, and whose clipboard it reads, is here.
QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    const bool isDone =
        QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, 10000);
    return isDone ? QString::fromUtf8(process.readAllStandardOutput()).trimmed() : QStringLiteral("?");
}

void xdotool(const QString& words)
{
    run(QStringLiteral("xdotool"), words.split(u' '));
}

void click(QPoint point, int button = 1)
{
    xdotool(QStringLiteral("mousemove %1 %2 click %3").arg(point.x()).arg(point.y()).arg(button));
}

QString clipboard()
{
    return run(QStringLiteral("xclip"),
               {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o")});
}

QWindow* windowNamed(const QString& title)
{
    const auto windows = QGuiApplication::topLevelWindows();
    for (QWindow* const window : windows) {
        if (window->title() == title && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

QWindow* glass()
{
    return windowNamed(QStringLiteral("Pellar Menu"));
}

bool isOpen()
{
    return glass() != nullptr || QApplication::activePopupWidget() != nullptr;
}

/// What a screen reader finds under a name below an object; null when it finds nothing.
QAccessibleInterface* find(QAccessibleInterface* object, const QString& name)
{
    if (object == nullptr || object->text(QAccessible::Name) == name) {
        return object;
    }
    for (int i = 0; i < object->childCount(); ++i) {
        if (QAccessibleInterface* const found = find(object->child(i), name)) {
            return found;
        }
    }
    return nullptr;
}

/// Where a row of the open menu is on the screen; none when there is no such row.
std::optional<QPoint> rowNamed(const QString& title)
{
    const auto windows = QGuiApplication::topLevelWindows();
    for (QWindow* const window : windows) {
        const bool isMenu = window->isVisible() && window->type() == Qt::Popup;
        QAccessibleInterface* const row = isMenu ? find(window->accessibleRoot(), title) : nullptr;
        if (row != nullptr && !row->rect().isEmpty()) {
            return row->rect().center();
        }
    }
    return std::nullopt;
}

QString shownTitle()
{
    const auto* const view = qobject_cast<QQuickView*>(windowNamed(QStringLiteral("Pellar")));
    return view->rootObject()->property("pill").value<QObject*>()->property("title").toString();
}

} // namespace

/// The whole program but its main function, on the real services of a desktop, under a real pointer.
class MenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();
    void rowsDoWhatTheySay();
    void isDismissed_data() { styles(); }
    void isDismissed();
    void leavesKeyboardAlone_data() { styles(); }
    void leavesKeyboardAlone();
    void followsDevices_data() { styles(); }
    void followsDevices();

private:
    static void styles();
    void open();
    void clickRow(const QString& title);
    void choose(const QStringList& path);

    std::unique_ptr<PlistUserDefaults> _defaults;
    std::unique_ptr<PlayerChoice> _casting;
    std::unique_ptr<LinuxPlatform> _linux;
    std::unique_ptr<AppDelegate> _program;
    RealPlayer _mpv;
    QPoint _pill; ///< a place on the pill where there is no control
    QPoint _play; ///< the button
    const QPoint _desktop{100, 600};
};

void MenuTest::initTestCase()
{
    QVERIFY(_mpv.start());
    _defaults = std::make_unique<PlistUserDefaults>(PlistUserDefaults::defaultPath());
    UserDefaults::setStandard(_defaults.get());
    _casting = std::make_unique<PlayerChoice>(*_defaults);
    _linux = std::make_unique<LinuxPlatform>(*_casting);
    Platform::setCurrent(&_linux->ports());
    _program = std::make_unique<AppDelegate>(_linux->ports(), *_defaults, _linux->appearance());
    _program->applicationDidFinishLaunching();
    QWindow* const pill = windowNamed(QStringLiteral("Pellar"));
    QVERIFY(pill != nullptr && QTest::qWaitForWindowExposed(pill));
    _pill = pill->geometry().center() + QPoint(40, 0);
    _play = pill->position() + PillLayout::make(pill->size(), {}).playButton.center().toPoint();
    QTRY_COMPARE(shownTitle(), RealPlayer::metadata(QStringLiteral("title")));
}

void MenuTest::cleanupTestCase()
{
    _program.reset();
}

void MenuTest::cleanup()
{
    xdotool(QStringLiteral("key Escape key Escape"));
    QTRY_VERIFY(!isOpen());
}

void MenuTest::styles()
{
    QTest::addColumn<PellarMenuStyle>("style");
    QTest::newRow("classic") << PellarMenuStyle::classic;
    QTest::newRow("glass") << PellarMenuStyle::liquidGlass;
}

void MenuTest::open()
{
    QTRY_VERIFY(!isOpen());
    click(_pill, 3);
    QTRY_VERIFY(isOpen());
}

/// Opens the menu and clicks on one row after the other.
void MenuTest::clickRow(const QString& title)
{
    QTRY_VERIFY2(rowNamed(title), qPrintable(title));
    QTRY_VERIFY(glass() == nullptr || glass()->opacity() == 1); // it has unfolded
    click(*rowNamed(title));
}

void MenuTest::choose(const QStringList& path)
{
    open();
    for (const QString& title : path) {
        clickRow(title);
    }
    QTRY_VERIFY2(!isOpen(), "still open after a choice");
}

void MenuTest::rowsDoWhatTheySay()
{
    MenuStyleManager::shared().style = PellarMenuStyle::liquidGlass;
    RealPlayer::tell(QStringLiteral("pause"));
    const auto resume = qScopeGuard([] { RealPlayer::tell(QStringLiteral("play")); });
    const auto track = [](int number) {
        return MprisStandIn::metadata(QStringLiteral("/t/%1").arg(number),
                                      QStringLiteral("Title %1").arg(number), QStringLiteral("Band"),
                                      QString(), 100);
    };
    MprisStandIn player(QStringLiteral("lister"));
    player.setTracks({track(1), track(2), track(3)});
    player.change(MprisStandIn::playing(track(2)));
    QTRY_COMPARE(shownTitle(), QStringLiteral("Title 2"));
    choose({QStringLiteral("Open in Music App")});
    QTRY_COMPARE(player.calls, QStringList{QStringLiteral("Raise")});
    choose({QStringLiteral("Up Next"), QStringLiteral("Title 3 — Band")});
    QTRY_COMPARE(player.calls.last(), QStringLiteral("GoTo /t/3"));
    choose({QStringLiteral("Copy Song Link")});
    QTRY_VERIFY(clipboard().contains(QStringLiteral("Title%202")));
    choose({QStringLiteral("Recently Played"), QStringLiteral("Title 2 — Band")});
    QTRY_COMPARE(clipboard(), QStringLiteral("Title 2 — Band"));

    choose({QStringLiteral("Sleep Timer"), QStringLiteral("15 minutes")});
    open();
    clickRow(QStringLiteral("Sleep Timer"));
    xdotool(QStringLiteral("key Down Down Down Down Down Down Return")); // the row below the five times
    QTRY_VERIFY(!isOpen());
    open();
    clickRow(QStringLiteral("Sleep Timer"));
    QTRY_VERIFY(rowNamed(QStringLiteral("No Timer Active")));
}

void MenuTest::isDismissed()
{
    QFETCH(PellarMenuStyle, style);
    MenuStyleManager::shared().style = style;
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Playing"));
    for (const auto& [point, button] :
         {std::pair(_desktop, 1), std::pair(_desktop, 3), std::pair(_pill, 3), std::pair(_play, 1)}) {
        open();
        click(point, button); // the panel may be on its way in
        QTRY_VERIFY(!isOpen());
    }
    QCOMPARE(RealPlayer::status(), QStringLiteral("Playing")); // the click on the button only closed the menu
    click(_play);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Paused")); // now it reaches it again
    click(_play);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Playing"));
}

/// What is typed goes to the program in front, but for what is typed into the menu.
void MenuTest::leavesKeyboardAlone()
{
    QFETCH(PellarMenuStyle, style);
    MenuStyleManager::shared().style = style;
    QProcess front;
    const auto end = qScopeGuard([&front] {
        front.terminate();
        front.waitForFinished();
    });
    front.start(QStringLiteral("xev"), {QStringLiteral("-event"), QStringLiteral("keyboard")});
    QString heard;
    const auto hears = [&front, &heard](const QString& key) {
        heard += QString::fromUtf8(front.readAllStandardOutput());
        return heard.contains(
            QRegularExpression(QStringLiteral("KeyPress event.*\n.*\n.*keysym 0x\\w+, %1\\)").arg(key)));
    };
    const auto type = [](const QString& key) { xdotool(u"key " + key); };
    xdotool(QStringLiteral("search --sync --name ^Event.Tester$ windowfocus --sync"));
    type(QStringLiteral("a"));
    QTRY_VERIFY(hears(QStringLiteral("a")));
    click(_play);
    QTRY_COMPARE(RealPlayer::status(), QStringLiteral("Paused"));
    type(QStringLiteral("b"));
    QTRY_VERIFY(hears(QStringLiteral("b")));
    click(_play);
    for (const char* const keys : {"key c Escape", "key c Down Return"}) { // away, and a row chosen
        open();
        heard.clear();
        xdotool(QString::fromLatin1(keys));
        QTRY_VERIFY(!isOpen());
        type(QStringLiteral("d"));
        QTRY_VERIFY(hears(QStringLiteral("d")));
        for (const char* const key : {"c", "Escape", "Down", "Return"}) {
            QVERIFY2(!hears(QString::fromLatin1(key)), key);
        }
    }
}

void MenuTest::followsDevices()
{
    QFETCH(PellarMenuStyle, style);
    MenuStyleManager::shared().style = style;
    run(QStringLiteral("pactl"), {QStringLiteral("set-default-sink"), QStringLiteral("speakers")});
    open();
    clickRow(QStringLiteral("Audio Output"));
    QTRY_VERIFY(rowNamed(QStringLiteral("Headphones")));
    const QString module =
        run(QStringLiteral("pactl"), {QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
                                      QStringLiteral("sink_properties=device.description=Kitchen")});
    QTRY_VERIFY(rowNamed(QStringLiteral("Kitchen")));
    QVERIFY(rowNamed(QStringLiteral("Headphones")) && rowNamed(QStringLiteral("Quit Pellar")));
    run(QStringLiteral("pactl"), {QStringLiteral("unload-module"), module});
    QTRY_VERIFY(!rowNamed(QStringLiteral("Kitchen")));
    clickRow(QStringLiteral("Headphones"));
    QTRY_COMPARE(run(QStringLiteral("pactl"), {QStringLiteral("get-default-sink")}),
                 QStringLiteral("headphones"));
    QTRY_VERIFY(!isOpen());
}

int main(int argc, char** argv)
{
    importQmlModules();
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellar"));
    QApplication::setQuitOnLastWindowClosed(false);
    MenuTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "menu_test.moc"
