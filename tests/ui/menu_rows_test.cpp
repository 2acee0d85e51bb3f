#include "ui/MenuFixture.h"
#include "ui/menu/ClassicMenu.h"
#include "ui/menu/PellarMenuModel.h"

#include <QAccessible>
#include <QRegularExpression>
#include <QTest>

#include <array>

using Change = void (*)(MenuFixture&);
Q_DECLARE_METATYPE(Change)

namespace {

/// The rows as lines, those of a submenu behind it: "#" is a heading, "~" information, "x" a check mark.
QStringList lines(const std::vector<PellarMenuItem>& items)
{
    static const QHash<PellarMenuItem::Kind, QString> marks = {
        {PellarMenuItem::Kind::header, QStringLiteral("# ")},
        {PellarMenuItem::Kind::info, QStringLiteral("~ ")},
        {PellarMenuItem::Kind::toggle, QStringLiteral("o ")},
        {PellarMenuItem::Kind::separator, QStringLiteral("---")}};
    QStringList list;
    for (const PellarMenuItem& item : items) {
        const QString mark = item.isOn ? QStringLiteral("x ") : marks.value(item.kind);
        const QString icon = item.icon ? QStringLiteral(" (%1)").arg(*item.icon) : QString();
        const QString inner = lines(item.items).join(QStringLiteral(", "));
        list << mark + item.title + icon + (inner.isEmpty() ? QString() : QString(u": " + inner));
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

/// Whether no list is empty, and separators are between rows only.
bool isWhole(const std::vector<PellarMenuItem>& items)
{
    bool isDivider = true;
    for (const PellarMenuItem& item : items) {
        const bool wasDivider = std::exchange(isDivider, item.kind == PellarMenuItem::Kind::separator);
        const bool isSubmenu = item.kind == PellarMenuItem::Kind::submenu;
        if ((isDivider && wasDivider) || (isSubmenu && !isWhole(item.items))) {
            return false;
        }
    }
    return !isDivider;
}

/// The rows that a classic menu shows, as far as they can be told from it.
std::vector<PellarMenuItem> shown(const QMenu& menu)
{
    std::vector<PellarMenuItem> items;
    for (const QAction* const action : menu.actions()) {
        using Kind = PellarMenuItem::Kind;
        PellarMenuItem& item = items.emplace_back();
        item.kind = action->isSeparator()   ? Kind::separator
                    : action->menu()        ? Kind::submenu
                    : action->isCheckable() ? Kind::toggle
                    : action->isEnabled()   ? Kind::action
                    : action->font().bold() ? Kind::header
                                            : Kind::info;
        item.title = action->text().replace(QStringLiteral("&&"), QStringLiteral("&"));
        item.isOn = action->isChecked();
        if (action->menu() != nullptr) {
            item.items = shown(*action->menu());
        }
    }
    return items;
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
Up Next (list.bullet): Tide — Shore, Solo
---
Sleep Timer: 15 minutes, 30 minutes, 45 minutes, 60 minutes, 90 minutes, ---, ~ No Timer Active
Audio Output: o Speakers, x Headphones
---
Listening Stats: ~ Today: 42m, ~ This Week: 2h 5m, ~ Streak: 3 days, ---, # Top Artists, ~   1. A (5m), ~   2. B (4m), ~   3. C (3m), ~   4. D (2m), ~   5. E (1m)
Recently Played: Harbour — Ines, Untitled, ---, Clear History
---
Power Mode (Normal): o Low Power, x Normal, o Power User, ---, Power Mode Settings…
Audio Sources: x Apple Music, x Spotify, o System Audio
o Show Widget
Settings…
---
Quit Pellar)");
    QCOMPARE(lines(MenuFixture().rows()).join(u'\n'), expected);
}

void MenuRowsTest::followsState_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>(
        "fresh"); ///< lines that the menu has otherwise not; what "no" is before, it lacks
    const auto row = [](const char* fresh, Change change) {
        QTest::addRow("%s", fresh) << change << QString::fromUtf8(fresh);
    };
    row("# Not Playing|no Now Playing…|no Copy Song Link|no o Love Track (heart)",
        [](MenuFixture& menu) { menu.state.title = QStringLiteral("Not Playing"); });
    row("x Loved (heart.fill)|x Suggesting Less (hand.thumbsdown.fill)|no o Love Track (heart)",
        [](MenuFixture& menu) {
            menu.state.reaction = {true, true};
        });
    row("o Save to Liked Songs (heart)|no o Suggest Less Like This (hand.thumbsdown)", [](MenuFixture& menu) {
        menu.state.activePlayer = Player::spotify;
        menu.state.supportsDislike = false;
    });
    row("no Open in Music App", [](MenuFixture& menu) { menu.state.activePlayer = Player::systemAudio; });
    row("Up Next (list.bullet): ~ Nothing Up Next|Audio Output: ~ No Output Devices|"
        "Listening Stats: ~ Today: 42m, ~ This Week: 2h 5m, ~ Streak: 1 day, ---, # Top Artists, "
        "~ No Artists Yet",
        [](MenuFixture& menu) {
            menu.state.upNext->clear();
            menu.state.outputs.clear();
            menu.state.listening->streak = 1;
            menu.state.listening->topArtists.clear();
        });
    row("Sleep Timer: 15 minutes, 30 minutes, 45 minutes, 60 minutes, 90 minutes, ---, "
        "Cancel Timer (10:05 left)|x Hide Widget",
        [](MenuFixture& menu) {
            menu.state.sleepTimerRemaining = 605;
            menu.state.isWidgetShown = true;
        });
    row("Power Mode (Low Power): x Low Power, o Normal, o Power User, ---, ~ macOS Low Power Mode is on, "
        "---, "
        "Power Mode Settings…",
        [](MenuFixture& menu) {
            menu.state.isSystemLowPower = true;
            menu.state.powerMode = PowerMode::lowPower;
        });
}

void MenuRowsTest::followsState()
{
    QFETCH(Change, change);
    QFETCH(QString, fresh);
    MenuFixture menu;
    const QStringList before = lines(menu.rows());
    change(menu);
    const QStringList after = lines(menu.rows());
    for (const QString& line : fresh.split(u'|')) {
        const bool isGone = line.startsWith(QStringLiteral("no "));
        const QString row = isGone ? line.mid(3) : line;
        QVERIFY2(before.contains(row) == isGone && after.contains(row) != isGone,
                 qPrintable(row + u" in\n" + after.join(u'\n')));
    }
}

/// Whatever is hidden, empty or cannot be done, what is left is a whole menu.
void MenuRowsTest::hidesWholeSections()
{
    using State = ContextMenuState;
    const std::array<std::pair<bool State::*, const char*>, 6> sections = {
        {{&State::showUpNext, "Up Next"},
         {&State::showReactions, "Love Track"},
         {&State::showPowerMode, "Power Mode"},
         {&State::showAudioSources, "Audio Sources"},
         {&State::showListeningStats, "Listening Stats"},
         {&State::showRecentlyPlayed, "Recently Played"}}};
    for (unsigned bits = 0; bits < 512; ++bits) {
        const auto isSet = [bits](size_t bit) { return (bits >> bit & 1) != 0; };
        MenuFixture menu;
        for (size_t i = 0; i < sections.size(); ++i) {
            menu.state.*sections[i].first = !isSet(i);
        }
        if (isSet(6)) {
            menu.state.title = QStringLiteral("Not Playing");
        }
        if (isSet(7)) {
            menu.state.recentlyPlayed->clear();
        }
        if (isSet(8)) {
            menu.commands = {};
            menu.commands.quit = [] {};
        }
        const QString text = lines(menu.rows()).join(u'\n');
        for (size_t i = 0; i < sections.size(); ++i) {
            QVERIFY2(!isSet(i) || !text.contains(QString::fromLatin1(sections[i].second)), qPrintable(text));
        }
        QVERIFY2(isWhole(menu.rows()) && text.endsWith(QStringLiteral("Quit Pellar")), qPrintable(text));
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
        static const QRegularExpression icon(QStringLiteral(" \\([a-z.]+\\)"));
        QCOMPARE(lines(shown(classic)).join(u'\n'), lines(menu.rows()).join(u'\n').remove(icon));
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
