#include "support/Command.h"
#include "support/LoopbackServices.h"
#include "support/MprisStandIn.h"
#include "support/Program.h"
#include "ui/pill/PillLayout.h"

#include <QDir>
#include <QElapsedTimer>
#include <QPixmap>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString onboardingKey = u"pellar_onboarding_complete"_s;

/// By way of the accessibility bus.
void press(const QStringList& controls)
{
    const QString said =
        output(QStringLiteral(PELLAR_SOURCE_DIR "/tools/a11y"), QStringList{u"press"_s} + controls);
    QVERIFY2(said != u"?", qPrintable(controls.join(u", ")));
}

QString stateOf(const QString& control)
{
    return output(QStringLiteral(PELLAR_SOURCE_DIR "/tools/a11y"), {u"state"_s, control});
}

/// Whether a screen reader finds something on the screen, in what `tools/a11y tree` prints.
bool isSaid(const QString& text)
{
    return output(QStringLiteral(PELLAR_SOURCE_DIR "/tools/a11y"), {u"tree"_s}).contains(text);
}

QVariant stored(const QString& key)
{
    return PlistUserDefaults(PlistUserDefaults::defaultPath()).object(key);
}

/// "?" when there is no such window. A search also fails when some window goes while it is under way.
QString place(const QString& title)
{
    QString found = u"?"_s;
    for (int i = 0; i < 3 && found == u"?"; ++i) {
        found = run(u"xdotool search --onlyvisible --name \"^%1$\" getwindowgeometry"_s.arg(title));
    }
    return found;
}

bool isOpen(const QString& title)
{
    return place(title) != u"?";
}

/// None when there is no such window.
QRect frameOf(const QString& title)
{
    static const QRegularExpression numbers(u"(\\d+),(\\d+) .*\\n.*?(\\d+)x(\\d+)"_s);
    const auto found = numbers.match(place(title));
    const auto number = [&found](int which) { return found.captured(which).toInt(); };
    return {number(1), number(2), number(3), number(4)};
}

/// What is seen on the screen.
QImage picture(const QRect& part)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, part.x(), part.y(), part.width(), part.height())
        .toImage();
}

/// How long it takes until a part of the screen has changed ten times.
double secondsOfTenChanges(const QRect& part)
{
    QElapsedTimer timer;
    timer.start();
    QImage last = picture(part);
    for (int i = 0; i < 10; ++i) {
        const auto isChanged = [&] { return picture(part) != last; };
        if (!QTest::qWaitFor(isChanged)) {
            return std::numeric_limits<double>::quiet_NaN();
        }
        last = picture(part);
    }
    return static_cast<double>(timer.elapsed()) / 1000;
}

} // namespace

/// Every control of the windows, operated as by a screen reader, and what it does at the far end.
class WindowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        run(u"dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress"_s);
        keepServicesToLoopback();
        PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
        defaults.setObject(u"pellar.menu.style"_s, u"liquidGlass"_s);
        defaults.setObject(u"com.orvalen.pellar.endpoint.spotifyAccounts"_s, u"http://127.0.0.1:1"_s);
        defaults.setObject(u"com.orvalen.pellar.endpoint.webSite"_s, u"https://pellar.example/"_s);
        defaults.setObject(u"com.orvalen.pellar.endpoint.support"_s, u"mailto:help@pellar.example"_s);
        QFile browser(_folder.filePath(u"xdg-open"_s));
        QVERIFY(browser.open(QFile::WriteOnly));
        browser.write("#!/bin/sh\necho \"$1\" >%1.new && mv %1.new %1\n"_ba.replace(
            "%1", _folder.filePath(u"asked"_s).toUtf8()));
        QVERIFY(browser.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        qputenv("PATH", _folder.path().toUtf8() + ':' + qgetenv("PATH"));
        defaults.setObject(u"pellar.permission.granted.com.spotify.client"_s, true);
        defaults.removeObject(onboardingKey);
    }

    /// Each choice counts as it is made; the window comes on the first start only.
    void leadsThroughFirstStart()
    {
        start();
        QTRY_VERIFY(isSaid(u"'Spotify Access' off 'Spotify is not running."_s)); // and not that it is done
        press({u"Live Audio Visualizer: Live"_s});
        QTRY_COMPARE(stored(u"com.orvalen.pellar.audio.live_visualizer_enabled"_s), true);
        press({u"Live Audio Visualizer: Synthetic"_s}); // which can be chosen still
        QTRY_COMPARE(stored(u"com.orvalen.pellar.audio.live_visualizer_enabled"_s), false);
        QCOMPARE(stored(u"com.orvalen.pellar.audio.live_visualizer_decided"_s), true);
        QVERIFY(!stored(onboardingKey).isValid());
        press({u"Get Started"_s});
        QTRY_COMPARE(stored(onboardingKey), true);
        QTRY_VERIFY(!isOpen(u"Welcome to Pellar.*"_s));
        quit();
        start();
        openSettings();
        QVERIFY(!isOpen(u"Welcome to Pellar.*"_s));
        press({u"About"_s, u"Setup Permissions…"_s});
        QTRY_VERIFY(isOpen(u"Welcome to Pellar.*"_s));
        run(u"xdotool key Escape"_s);
    }

    /// Past five switches to the themes, and back to the last of the switches.
    void keysReachSettings()
    {
        press({u"Customization"_s});
        QTRY_VERIFY(run(u"xdotool getwindowfocus getwindowname"_s).startsWith(u"Settings"));
        run(u"xdotool key Tab Tab Tab Tab Tab Tab Right Right Left shift+Tab"_s);
        bool isShown = true;
        for (const QString& key : {u"space"_s, u"Return"_s, u"KP_Enter"_s, u"space"_s}) {
            run(u"xdotool key "_s + key);
            isShown = !isShown;
            QTRY_COMPARE(stored(u"pellar.pill.showNextButton"_s), isShown);
        }
        QCOMPARE(stored(u"pellar.theme.mode"_s), u"classic"_s);
    }

    void controlsReachSettings_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QVariant>("value");
        const auto add = [](const char* tab, const QString& control, const QString& key,
                            const QVariant& value) {
            QTest::newRow(qPrintable(control + u'=' + key)) << QString::fromLatin1(tab) << value;
        };
        const auto toggles = [&add](const char* tab, const QString& keys,
                                    const QMap<QString, QString>& rows) {
            for (const auto& [control, key] : rows.toStdMap()) {
                add(tab, control, keys + key, false);
            }
        };
        toggles("Customization", u"pellar.pill.show"_s,
                {{u"Album art"_s, u"AlbumArt"_s},
                 {u"Visualizer"_s, u"Visualizer"_s},
                 {u"Track title"_s, u"Title"_s},
                 {u"Previous track button"_s, u"PrevButton"_s},
                 {u"Next track button"_s, u"NextButton"_s}});
        toggles("Customization", u"pellar.menu.show."_s,
                {{u"Up Next"_s, u"upNext"_s},
                 {u"Love / Suggest Less"_s, u"reactions"_s},
                 {u"Power Mode"_s, u"powerMode"_s},
                 {u"Audio Sources"_s, u"audioSources"_s},
                 {u"Listening Stats"_s, u"stats"_s},
                 {u"Recently Played"_s, u"recent"_s}});
        toggles("Widget", u"pellar.widget."_s,
                {{u"Artwork"_s, u"showArtwork"_s},
                 {u"Title"_s, u"showTitle"_s},
                 {u"Artist"_s, u"showArtist"_s},
                 {u"Progress bar + timestamps"_s, u"showProgress"_s},
                 {u"Transport buttons"_s, u"showTransport"_s},
                 {u"Always on top"_s, u"alwaysOnTop"_s}});
        for (const auto& theme :
             {u"Album Art"_s, u"Classic"_s, u"Midnight"_s, u"Warmth"_s, u"Tide"_s, u"Dusk"_s}) {
            QString raw = QString(theme).remove(u' ');
            raw.front() = raw.front().toLower();
            add("Customization", u"Theme>"_s + theme, u"pellar.theme.mode"_s, raw);
        }
        const QString style = u"Right-Click Menu Style>"_s;
        add("Customization", style + u"Classic", u"pellar.menu.style"_s, u"classic"_s);
        add("Customization", style + u"Liquid Glass", u"pellar.menu.style"_s, u"liquidGlass"_s);
        add("Widget", u"Current lyric line"_s, u"pellar.widget.showLyric"_s, true);
        add("General", u"Live audio capture"_s, u"com.orvalen.pellar.audio.live_visualizer_enabled"_s, true);
    }

    void controlsReachSettings()
    {
        QFETCH(QString, tab);
        QFETCH(QVariant, value);
        const QStringList words = QString::fromUtf8(QTest::currentDataTag()).split(u'=');
        press({tab, words[0]});
        QTRY_COMPARE(stored(words[1]), value);
        QCOMPARE(stateOf(words[0]), value == false ? u"off"_s : u"on"_s);
    }

    void platformServices()
    {
        press({u"General"_s, u"Launch at login"_s, u"Send anonymous usage data"_s});
        QTRY_COMPARE(stored(u"com.orvalen.pellar.analytics.optOut"_s), true);
        QTRY_COMPARE(stateOf(u"Launch at login"_s), u"on"_s);
        const QDir autostart(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/autostart");
        QCOMPARE(autostart.entryList({u"*.desktop"_s}).size(), 1);
        press({u"Launch at login"_s});
        QTRY_COMPARE(stateOf(u"Launch at login"_s), u"off"_s);
    }

    void shortcutsAreRecorded()
    {
        const QString key = u"pellar.shortcut.playPause"_s;
        const auto chord = [](qlonglong code, qlonglong modifiers) {
            return QVariant(QVariantMap{{u"keyCode"_s, code}, {u"modifiers"_s, modifiers}});
        };
        press({u"General"_s, u"Play / Pause: Change"_s});
        run(u"xdotool key k ctrl+q"_s);               // the first one is refused
        QTRY_COMPARE(stored(key), chord(12, 0x1000)); // and does nothing else
        press({u"Play / Pause: Change"_s});
        run(u"xdotool key Escape ctrl+alt+j"_s);
        press({u"Play / Pause: Change"_s, u"Widget"_s, u"General"_s}); // which gives up, too
        run(u"xdotool key ctrl+alt+j"_s);
        press({u"Next Track: Change"_s});
        run(u"xdotool key ctrl+q"_s);
        QTRY_VERIFY(isSaid(u"“Play / Pause” has this shortcut."_s));
        press({u"Next Track: Disable"_s});
        QTRY_COMPARE(stored(u"pellar.shortcut.nextTrack"_s), u"disabled"_s);
        QCOMPARE(stored(key), chord(12, 0x1000));
        press({u"Reset to Defaults"_s});
        QTRY_COMPARE(stored(key), chord(49, 0x300));
    }

    /// What the last test has set shows in the pill and in the menu; what the menu sets shows in the window.
    void surfacesAgree()
    {
        QTRY_VERIFY(place(u"Pellar"_s).contains(u"Geometry: 40x"));
        press({u"Customization"_s, u"Track title"_s, u"Audio Sources"_s, u"Power Mode"_s});
        QTRY_VERIFY(place(u"Pellar"_s).contains(u"Geometry: 101x"));
        openMenu();
        QVERIFY(isSaid(u"menu item: 'Sleep Timer'"_s) && !isSaid(u"menu item: 'Listening Stats'"_s));
        press({u"Pellar>Audio Sources"_s, u"Live Visualizer"_s});
        press({u"General"_s});
        QTRY_COMPARE(stateOf(u"Live audio capture"_s), u"off"_s);
    }

    void pillWearsTheme()
    {
        const auto color = [] {
            const QRect pill = frameOf(u"Pellar"_s);
            return picture({pill.left() + 5, pill.center().y(), 1, 1}).pixelColor(0, 0);
        };
        press({u"Customization"_s, u"Theme>Warmth"_s});
        QTRY_VERIFY(color().red() > color().blue() + 10);
        press({u"Theme>Tide"_s});
        QTRY_VERIFY(color().blue() > color().red() + 10);
    }

    void widgetIsShapedAndPutBack()
    {
        const QString widget = u"Pellar Widget.*"_s;
        press({u"Widget"_s, u"Show floating widget"_s});
        QTRY_VERIFY(isOpen(widget));
        const QSize bare = frameOf(widget).size();
        press({u"Progress bar + timestamps"_s, u"Transport buttons"_s});
        QTRY_VERIFY(frameOf(widget).height() > bare.height());
        QCOMPARE(frameOf(widget).topLeft(), QPoint(960, 40));
        run(u"xdotool search --onlyvisible --name ^Pellar.Widget windowmove 200 300"_s);
        QTRY_COMPARE(frameOf(widget).topLeft(), QPoint(200, 300));
        press({u"Reset Position"_s});
        QTRY_COMPARE(frameOf(widget), QRect(960, 40, 300, 140));
        press({u"Show floating widget"_s});
        QTRY_VERIFY(!isOpen(widget));
    }

    void browserIsAskedFor()
    {
        const auto opened = [this](const QStringList& controls) {
            QFile asked(_folder.filePath(u"asked"_s));
            asked.remove();
            press(controls);
            return QTest::qWaitFor([&] { return asked.open(QFile::ReadOnly); }) ? asked.readAll().trimmed()
                                                                                : QByteArray();
        };
        QVERIFY(opened({u"Accounts"_s, u"Spotify: Connect"_s}).startsWith("http://127.0.0.1:1/authorize?"));
        QCOMPARE(opened({u"About"_s, u"Website"_s}), "https://pellar.example/"_ba);
        QCOMPARE(opened({u"Contact Support"_s}), "mailto:help@pellar.example"_ba);
    }

    void powerModes()
    {
        MprisStandIn player(u"drummer"_s);
        player.change(
            MprisStandIn::playing(MprisStandIn::metadata(u"/t/1"_s, u"Song"_s, u"Band"_s, QString(), 100)));
        press({u"Customization"_s, u"Visualizer"_s, u"About"_s});
        QTRY_COMPARE(frameOf(u"Pellar"_s).width(), 119);
        openMenu();
        press({u"Power Mode (Normal)"_s, u"Power Mode Settings…"_s});
        const QRect pill = frameOf(u"Pellar"_s);
        const PillElements elements{.albumArt = false, .previousButton = false, .nextButton = false};
        const QRect bars = PillLayout::make(pill.size(), elements).visualizer.toRect();
        press({u"Visualizer refresh rate"_s, u"5 fps"_s});
        QTRY_VERIFY(secondsOfTenChanges(bars.translated(pill.topLeft())) > 1.5);
        press({u"Visualizer refresh rate"_s, u"30 fps"_s});
        QTRY_VERIFY(secondsOfTenChanges(bars.translated(pill.topLeft())) < 1);

        press({u"Power Mode>Power User"_s, u"Visualizer"_s});
        const auto mode = [] {
            const QByteArray json = stored(u"com.orvalen.pellar.power.settings.v1"_s).toByteArray();
            return json.mid(json.indexOf("powerUser"));
        };
        QTRY_VERIFY(mode().contains("\"visualizerEnabled\":false,\"visualizerFPS\":30"));
        press({u"Visualizer"_s, u"Visualizer refresh rate"_s, u"60 fps"_s});
        QTRY_VERIFY(mode().contains("\"visualizerEnabled\":true,\"visualizerFPS\":60"));
        press({u"Drift refresh interval"_s, u"2 seconds"_s});
        QTRY_VERIFY(mode().contains("\"driftRefreshSeconds\":2,"));
        press({u"Reset to Defaults"_s});
        QTRY_VERIFY(
            mode().contains("\"driftRefreshSeconds\":5,\"visualizerEnabled\":true,\"visualizerFPS\":30"));
        run(u"xdotool key ctrl+w"_s);
        QTRY_VERIFY(!isOpen(u"Power Modes.*"_s));
    }

    /// There is one window, which comes back where it was left.
    void remembersPlace()
    {
        const QString settings = u"Settings.*"_s;
        QTRY_VERIFY(run(u"xdotool search --onlyvisible --name ^Settings windowmove 60 90"_s) != u"?");
        openSettings();
        QString left; // where the frame's corner is at 60
        QTRY_VERIFY((left = place(settings).section(u'\n', 1)).contains(u"Position: 6"));
        run(u"xdotool key Escape"_s);
        QTRY_VERIFY(!isOpen(settings));
        openSettings();
        QTRY_COMPARE(place(settings).section(u'\n', 1), left);
        run(u"xdotool key ctrl+q"_s);
        QTRY_COMPARE(_program->state(), QProcess::NotRunning);
        QCOMPARE(_program->exitCode(), 0);
        const QByteArray said = _program->readAllStandardError();
        QVERIFY2(!said.contains(".qml:"), said.constData()); // no view has missed anything all the while
    }

private:
    void start()
    {
        _program = std::make_unique<Program>(QStringLiteral(PELLAR_PROGRAM));
        QTRY_VERIFY_WITH_TIMEOUT(place(u"Pellar"_s) != u"?", 10000);
    }

    void quit()
    {
        _program->terminate();
        QVERIFY(_program->waitForFinished());
    }

    void openMenu()
    {
        QTRY_VERIFY(!isOpen(u"Pellar Menu.*"_s));
        run(u"xdotool search --onlyvisible --name ^Pellar$ mousemove --window %1 20 4 click 3"_s);
        QTRY_VERIFY(isOpen(u"Pellar Menu.*"_s));
    }

    void openSettings()
    {
        openMenu();
        press({u"Settings…"_s});
        QTRY_VERIFY(run(u"xdotool getwindowfocus getwindowname"_s).startsWith(u"Settings"));
    }

    QTemporaryDir _folder;
    std::unique_ptr<Program> _program;
};

QTEST_MAIN(WindowsTest)
#include "windows_test.moc"
