#include "ui/MenuFixture.h"
#include "ui/menu/ClassicMenu.h"
#include "ui/menu/PellarMenuModel.h"

#include <QAccessible>
#include <QRegularExpression>
#include <QTest>

using Change = void (*)(MenuFixture&);
Q_DECLARE_METATYPE(Change)

namespace {

/// The rows as lines: what is in a submenu is indented, "#" is a heading, "~" information, "x" a check mark.
QStringList lines(const std::vector<PellarMenuItem>& items, const QString& indent = QString())
{
    using Kind = PellarMenuItem::Kind;
    QStringList list;
    for (const PellarMenuItem& item : items) {
        const QString mark = item.kind == Kind::header ? QStringLiteral("# ")
                             : item.kind == Kind::info ? QStringLiteral("~ ")
                             : item.kind == Kind::toggle
                                 ? (item.isOn ? QStringLiteral("x ") : QStringLiteral("o "))
                                 : QString();
        const QString icon = item.icon ? QStringLiteral(" (%1)").arg(*item.icon) : QString();
        list << (item.kind == Kind::separator ? QString(indent + u"---")
                                              : QString(indent + mark + item.title + icon));
        list << lines(item.items, indent + u"    ");
    }
    return list;
}

/// What the commands of the rows do, from the first to the last.
void chooseAll(const std::vector<PellarMenuItem>& items)
{
    for (const PellarMenuItem& item : items) {
        if (item.choose) {
            item.choose();
        }
        chooseAll(item.items);
    }
}

/// A classic menu's rows as `lines` would have them, as far as they can be told from it.
QStringList classicLines(const QMenu& menu, const QString& indent = QString())
{
    QStringList list;
    for (const QAction* const action : menu.actions()) {
        const bool isToggle = action->isCheckable();
        const QString mark = isToggle ? (action->isChecked() ? QStringLiteral("x ") : QStringLiteral("o "))
                             : action->isEnabled()   ? QString()
                             : action->font().bold() ? QStringLiteral("# ")
                                                     : QStringLiteral("~ ");
        QString title = action->text();
        list << (action->isSeparator()
                     ? QString(indent + u"---")
                     : QString(indent + mark + title.replace(QStringLiteral("&&"), QStringLiteral("&"))));
        if (action->menu() != nullptr) {
            list << classicLines(*action->menu(), indent + u"    ");
        }
    }
    return list;
}

} // namespace

class MenuRowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsEverything();
    void followsState_data();
    void followsState();
    void hidesWholeSections();
    void commandsTheirOwn();
    void classicShowsTheSame();
    void escapesAndElides();
    void takesKeyEquivalent();
};

void MenuRowsTest::listsEverything()
{
    const QString expected = QStringLiteral(R"(# Salt & Stone
~ Ines
---
Now Playing…
Open in Music App
Copy Song Link
o Love Track (heart)
o Suggest Less Like This (hand.thumbsdown)
Up Next (list.bullet)
    Tide — Shore
    Solo
---
Sleep Timer
    15 minutes
    30 minutes
    45 minutes
    60 minutes
    90 minutes
    ---
    ~ No Timer Active
Audio Output
    o Speakers
    x Headphones
---
Listening Stats
    ~ Today: 42m
    ~ This Week: 2h 5m
    ~ Streak: 3 days
    ---
    # Top Artists
    ~   1. A (5m)
    ~   2. B (4m)
    ~   3. C (3m)
    ~   4. D (2m)
    ~   5. E (1m)
Recently Played
    Harbour — Ines
    Untitled
    ---
    Clear History
---
Power Mode (Normal)
    o Low Power
    x Normal
    o Power User
    ---
    Power Mode Settings…
Audio Sources
    x Apple Music
    x Spotify
    o System Audio
o Show Widget
Settings…
---
Quit Pellar)");
    QCOMPARE(lines(MenuFixture().rows()).join(u'\n'), expected);
}

void MenuRowsTest::followsState_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("gone");  ///< lines of the whole menu that are not there
    QTest::addColumn<QString>("fresh"); ///< lines that are there instead
    const auto row = [](const char* name, Change change, const char* gone, const char* fresh) {
        QTest::newRow(name) << change << QString::fromUtf8(gone) << QString::fromUtf8(fresh);
    };
    row(
        "nothing plays",
        [](MenuFixture& menu) {
            menu.state.title = QStringLiteral("Not Playing");
            menu.state.artist.clear();
        },
        "# Salt & Stone|~ Ines|---|Now Playing…|Open in Music App|Copy Song Link|o Love Track (heart)|"
        "o Suggest Less Like This (hand.thumbsdown)|Up Next (list.bullet)|    Tide — Shore|    Solo",
        "# Not Playing");
    row(
        "liked and disliked",
        [](MenuFixture& menu) {
            menu.state.reaction = {true, true};
        },
        "o Love Track (heart)|o Suggest Less Like This (hand.thumbsdown)",
        "x Loved (heart.fill)|x Suggesting Less (hand.thumbsdown.fill)");
    row(
        "Spotify",
        [](MenuFixture& menu) {
            menu.state.activePlayer = Player::spotify;
            menu.state.supportsDislike = false;
        },
        "o Love Track (heart)|o Suggest Less Like This (hand.thumbsdown)", "o Save to Liked Songs (heart)");
    row(
        "system audio has no app", [](MenuFixture& menu) { menu.state.activePlayer = Player::systemAudio; },
        "Open in Music App", "");
    row(
        "nothing to list",
        [](MenuFixture& menu) {
            menu.state.upNext->clear();
            menu.state.outputs.clear();
            menu.state.listening->topArtists.clear();
            menu.state.recentlyPlayed->clear();
        },
        "    Tide — Shore|    Solo|    o Speakers|    x Headphones|    ~   1. A (5m)|    ~   2. B (4m)|"
        "    ~   3. C (3m)|    ~   4. D (2m)|    ~   5. E (1m)|    Harbour — Ines|    Untitled|    ---",
        "    ~ Nothing Up Next|    ~ No Output Devices|    ~ No Artists Yet");
    row(
        "timer", [](MenuFixture& menu) { menu.state.sleepTimerRemaining = 605; }, "    ~ No Timer Active",
        "    Cancel Timer (10:05 left)");
    row(
        "one day", [](MenuFixture& menu) { menu.state.listening->streak = 1; }, "    ~ Streak: 3 days",
        "    ~ Streak: 1 day");
    row(
        "saving power",
        [](MenuFixture& menu) {
            menu.state.isSystemLowPower = true;
            menu.state.powerMode = PowerMode::lowPower;
        },
        "Power Mode (Normal)|    o Low Power|    x Normal",
        "Power Mode (Low Power)|    x Low Power|    o Normal|    ---|    ~ macOS Low Power Mode is on");
    row(
        "widget", [](MenuFixture& menu) { menu.state.isWidgetShown = true; }, "o Show Widget",
        "x Hide Widget");
}

void MenuRowsTest::followsState()
{
    QFETCH(Change, change);
    QFETCH(QString, gone);
    QFETCH(QString, fresh);
    MenuFixture menu;
    QStringList expected = lines(menu.rows());
    for (const QString& line : gone.split(u'|')) {
        QVERIFY2(line.isEmpty() || expected.removeOne(line), qPrintable(line));
    }
    change(menu);
    QStringList actual = lines(menu.rows());
    expected += fresh.split(u'|', Qt::SkipEmptyParts);
    expected.sort();
    actual.sort();
    QCOMPARE(actual.join(u'\n'), expected.join(u'\n'));
}

/// Whatever is hidden, empty or cannot be done, what is left is a whole menu.
void MenuRowsTest::hidesWholeSections()
{
    const QList<Change> changes = {
        [](MenuFixture& menu) { menu.state.showUpNext = false; },
        [](MenuFixture& menu) { menu.state.showReactions = false; },
        [](MenuFixture& menu) { menu.state.showPowerMode = false; },
        [](MenuFixture& menu) { menu.state.showAudioSources = false; },
        [](MenuFixture& menu) { menu.state.showListeningStats = false; },
        [](MenuFixture& menu) { menu.state.showRecentlyPlayed = false; },
        [](MenuFixture& menu) { menu.state.title = QStringLiteral("Not Playing"); },
        [](MenuFixture& menu) { menu.state.recentlyPlayed->clear(); },
        [](MenuFixture& menu) {
            menu.commands = {};
            menu.commands.quit = [] {};
        },
    };
    const QStringList titles = {
        QStringLiteral("Up Next (list.bullet)"), QStringLiteral("o Love Track (heart)"),
        QStringLiteral("Power Mode (Normal)"),   QStringLiteral("Audio Sources"),
        QStringLiteral("Listening Stats"),       QStringLiteral("Recently Played")};
    for (int bits = 0; bits < 1 << changes.size(); ++bits) {
        MenuFixture menu;
        for (int i = 0; i < changes.size(); ++i) {
            if ((bits >> i & 1) != 0) {
                changes[i](menu);
            }
        }
        const QStringList rows = lines(menu.rows());
        for (int i = 0; i < titles.size(); ++i) {
            QVERIFY((bits >> i & 1) == 0 || !rows.contains(titles[i]));
        }
        QVERIFY(rows.first().startsWith(u'#') && rows.last() == QStringLiteral("Quit Pellar"));
        const QString text = rows.join(u'\n');
        static const QRegularExpression stray(
            QStringLiteral("---\n *---|---\n(?! ).*\n    ---|    ---(\n[^ ]|$)"));
        QVERIFY2(!text.contains(stray), qPrintable(text));
        for (const PellarMenuItem& item : menu.rows()) {
            QVERIFY(item.kind != PellarMenuItem::Kind::submenu || !item.items.empty());
        }
    }
}

void MenuRowsTest::commandsTheirOwn()
{
    MenuFixture menu;
    menu.state.sleepTimerRemaining = 60;
    chooseAll(menu.rows());
    QCOMPARE(
        menu.told.join(u'|'),
        QStringLiteral("preview|open|link|love|dislike|play 7|play 8|sleep 15|sleep 30|sleep 45|sleep 60|"
                       "sleep 90|wake|output 41|output 52|copy Harbour — Ines|copy Untitled|clear|"
                       "mode lowPower|mode normal|mode powerUser|modes|source 1|source 2|source 4|widget|"
                       "settings|quit"));
    menu.told.clear();
    menu.state.reaction = {true, true};
    chooseAll(menu.rows());
    QVERIFY(menu.told.contains(QStringLiteral("unlove")) && menu.told.contains(QStringLiteral("undislike")));
    QVERIFY(!menu.told.contains(QStringLiteral("love")) && !menu.told.contains(QStringLiteral("dislike")));
}

/// Also when it is filled anew, time and again; rows that stay are the actions that they were.
void MenuRowsTest::classicShowsTheSame()
{
    MenuFixture menu;
    ClassicMenu classic;
    const auto check = [&menu, &classic] {
        classic.setItems(menu.rows(), false);
        static const QRegularExpression icon(QStringLiteral(" \\([a-z.]+\\)(?=\n)"));
        QCOMPARE(classicLines(classic).join(u'\n'), lines(menu.rows()).join(u'\n').remove(icon));
    };
    check();
    const QAction* const last = classic.actions().last();
    menu.state.reaction.loved = true;
    menu.state.outputs.removeFirst();
    check();
    menu.state.title = QStringLiteral("Not Playing");
    menu.state.artist.clear();
    menu.state.showPowerMode = false;
    check();
    menu.state = MenuFixture().state;
    check();
    QCOMPARE(classic.actions().last(), last);
}

void MenuRowsTest::escapesAndElides()
{
    MenuFixture fixture;
    fixture.state.title = QStringLiteral("Salt & Stone\nLive");
    fixture.state.artist = QStringLiteral("終わりのない歌の題名").repeated(20);
    ClassicMenu classic;
    classic.setItems(fixture.rows(), false);
    QCOMPARE(classic.actions().first()->text(), QStringLiteral("Salt && Stone Live"));
    QVERIFY(classic.sizeHint().width() < 430);
    QVERIFY(PellarMenuModel(fixture.rows()).size().width() < 400);
}

void MenuRowsTest::takesKeyEquivalent()
{
    MenuFixture fixture;
    ClassicMenu menu;
    menu.setItems(fixture.rows(), false);
    const QAccessibleInterface* const program = QAccessible::queryAccessibleInterface(qApp);
    const auto isHeard = [&] {
        return program->indexOfChild(QAccessible::queryAccessibleInterface(&menu)) >= 0;
    };
    menu.popup(QPoint());
    QVERIFY(isHeard());
    QTest::sendKeyEvent(QTest::Press, &menu, Qt::Key(0), QString(), {}); // as of a switch of the layout
    QVERIFY(menu.isVisible() && fixture.told.isEmpty());
    QTest::keyClick(&menu, Qt::Key_Space);
    QCOMPARE(fixture.told, QStringList(QStringLiteral("preview")));
    QVERIFY(!menu.isVisible() && !isHeard());
}

QTEST_MAIN(MenuRowsTest)
#include "menu_rows_test.moc"
