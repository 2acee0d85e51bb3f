#include "support/Windows.h"
#include "ui/MenuFixture.h"
#include "ui/menu/ClassicMenu.h"
#include "ui/menu/PellarMenuModel.h"

#include <QAccessible>
#include <QTextDocumentFragment>
#include <QtTest>

namespace {

/// The rows as lines, those of a submenu behind it: "#" is a heading, "~" information, "x" a check mark.
QStringList lines(const std::vector<PellarMenuItem>& items)
{
    static const QHash<PellarMenuItem::Kind, QString> marks = {{PellarMenuItem::Kind::header, u"# "_s},
                                                               {PellarMenuItem::Kind::info, u"~ "_s},
                                                               {PellarMenuItem::Kind::toggle, u"o "_s},
                                                               {PellarMenuItem::Kind::separator, u"---"_s}};
    QStringList list;
    for (const PellarMenuItem& item : items) {
        const QString mark = item.isOn ? u"x "_s : marks.value(item.kind);
        const QString icon = item.icon ? u" (%1)"_s.arg(*item.icon) : QString();
        const QString inner = lines(item.items).join(u", "_s);
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

/// A classic menu shows these rows.
void compare(const QMenu& menu, const std::vector<PellarMenuItem>& items)
{
    using Kind = PellarMenuItem::Kind;
    QCOMPARE(menu.actions().size(), items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        const PellarMenuItem& item = items[i];
        const QAction& action = *menu.actions().at(i);
        QCOMPARE(action.text().replace(u"&&"_s, u"&"_s), item.title);
        QVERIFY(action.isSeparator() == (item.kind == Kind::separator) && action.isChecked() == item.isOn);
        QVERIFY(action.isEnabled() == (item.kind != Kind::header && item.kind != Kind::info));
        QVERIFY(action.isCheckable() == (item.kind == Kind::toggle));
        QCOMPARE(action.menu() != nullptr, item.kind == Kind::submenu);
        if (action.menu() != nullptr) {
            compare(*action.menu(), item.items);
        }
    }
}

} // namespace

class MenuRowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsEverything()
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
Listening Stats: ~ Today: 42m, ~ This Week: 2h 5m, ~ Streak: 3 days, ---, # Top Artists, ~   1. A (1m), ~   2. B (1m), ~   3. C (1m), ~   4. D (1m), ~   5. E (1m)
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

    void followsState()
    {
        using Change = void (*)(MenuFixture&);
        const std::vector<std::pair<QString, Change>> rows = {
            // lines that the menu has otherwise not; what "no" is before, it lacks
            {u"# Not Playing|no Now Playing…|no Copy Song Link|no o Love Track (heart)"_s,
             [](MenuFixture& menu) { menu.state.title = u"Not Playing"_s; }},
            {u"x Loved (heart.fill)|x Suggesting Less (hand.thumbsdown.fill)|no o Love Track (heart)"_s,
             [](MenuFixture& menu) { menu.state.reaction = {.loved = true, .disliked = true}; }},
            {u"o Save to Liked Songs (heart)"_s,
             [](MenuFixture& menu) { menu.state.activePlayer = Player::spotify; }},
            {u"no Open in Music App"_s,
             [](MenuFixture& menu) { menu.state.activePlayer = Player::systemAudio; }},
            {u"Up Next (list.bullet): ~ Nothing Up Next"_s,
             [](MenuFixture& menu) { menu.state.upNext->clear(); }},
            {u"Listening Stats: ~ Today: 1m, ~ This Week: 2m, ~ Streak: 1 day, ---, # Top Artists, ~ No Artists Yet"_s,
             [](MenuFixture& menu) {
                 *menu.state.listening = {u"1m"_s, u"2m"_s, 1, {}};
             }},
            {u"Sleep Timer: 15 minutes, 30 minutes, 45 minutes, 60 minutes, 90 minutes, ---, Cancel Timer (10:05 left)"_s,
             [](MenuFixture& menu) { menu.state.sleepTimerRemaining = 605; }},
            {u"x Hide Widget"_s, [](MenuFixture& menu) { menu.state.isWidgetShown = true; }},
            {u"Power Mode (Normal): o Low Power, x Normal, o Power User, ---, ~ macOS Low Power Mode is on, ---, Power Mode Settings…"_s,
             [](MenuFixture& menu) { menu.state.isSystemLowPower = true; }}};
        for (const auto& [fresh, change] : rows) {
            MenuFixture menu;
            const QStringList before = lines(menu.rows());
            change(menu);
            const QStringList after = lines(menu.rows());
            for (const QString& line : fresh.split(u'|')) {
                const bool isGone = line.startsWith(u"no "_s);
                const QString row = isGone ? line.mid(3) : line;
                QVERIFY2(before.contains(row) == isGone && after.contains(row) != isGone,
                         qPrintable(row + u" in\n" + after.join(u'\n')));
            }
        }
    }

    /// Whatever is hidden, empty or cannot be done, what is left is a whole menu.
    void hidesWholeSections()
    {
        using State = ContextMenuState;
        const std::pair<bool State::*, QString> sections[] = {
            {&State::showUpNext, u"Up Next"_s},           {&State::showReactions, u"Love Track"_s},
            {&State::showPowerMode, u"Power Mode"_s},     {&State::showAudioSources, u"Audio Sources"_s},
            {&State::showListeningStats, u"Listening"_s}, {&State::showRecentlyPlayed, u"Recently"_s}};
        for (unsigned bits = 0; bits < 256; ++bits) {
            MenuFixture menu;
            if ((bits & 64U) != 0) {
                menu.state.title = u"Not Playing"_s;
            }
            if ((bits & 128U) != 0) {
                menu.commands = {};
                menu.commands.quit = [] {};
            }
            for (unsigned bit = 1; const auto& [isShown, name] : sections) {
                menu.state.*isShown = (bits & bit) == 0;
                QVERIFY((bits & bit) == 0 || !lines(menu.rows()).join(u'\n').contains(name));
                bit *= 2;
            }
            const QString text = lines(menu.rows()).join(u'\n');
            QVERIFY2(isWhole(menu.rows()) && text.endsWith(u"Quit Pellar"_s), qPrintable(text));
        }
    }

    void commandsTheirOwn()
    {
        MenuFixture menu;
        menu.state.sleepTimerRemaining = 60;
        chooseAll(menu.rows());
        QCOMPARE(menu.told.join(u'|'),
                 u"preview|open|link|love|dislike|play 7|play 8|sleep 15|sleep 30|sleep 45|sleep 60|"
                 "sleep 90|wake|output 41|output 52|copy Harbour — Ines|copy Untitled|clear|"
                 "mode lowPower|mode normal|mode powerUser|modes|source 1|source 2|source 4|widget|"
                 "settings|quit"_s);
        menu.told.clear();
        menu.state.reaction = {true, true};
        chooseAll(menu.rows());
        QVERIFY(menu.told.contains(u"unlove"_s) && menu.told.contains(u"undislike"_s));
        QVERIFY(!menu.told.contains(u"love"_s) && !menu.told.contains(u"dislike"_s));
    }

    /// Also when it is filled anew, time and again; rows that stay are the actions that they were.
    void classicShowsTheSame()
    {
        MenuFixture menu;
        ClassicMenu classic;
        const auto check = [&menu, &classic] {
            classic.setItems(menu.rows(), false);
            compare(classic, menu.rows());
        };
        check();
        const QAction* const last = classic.actions().last();
        for (const auto& title : {u"Not Playing"_s, u"Song"_s}) {
            menu.state.title = title;
            menu.state.reaction.loved = !menu.state.reaction.loved;
            menu.state.outputs.removeLast();
            check();
            QCOMPARE(classic.actions().last(), last);
        }

        menu.state.title = u"Salt & Stone\nLive"_s;
        for (const auto& name : {u"<b>R&amp;B 終わりのない歌の題名"_s, u"R&B 終わりのない歌の題名"_s}) {
            menu.state.artist = name.repeated(20);
            classic.setItems(menu.rows(), false);
            const QString tip = classic.actions().at(1)->toolTip();
            QVERIFY(Qt::mightBeRichText(tip));
            QCOMPARE(QTextDocumentFragment::fromHtml(tip).toPlainText(), menu.state.artist);
        }
        QCOMPARE(classic.actions().first()->text(), u"Salt && Stone Live"_s);
        QVERIFY(classic.sizeHint().width() < 430 && PellarMenuModel(menu.rows()).size().width() < 400);
    }

    void closesWhenChosenFrom()
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
        QCOMPARE(fixture.told, QStringList(u"preview"_s));
        QVERIFY(!menu.isVisible() && !isHeard());

        menu.popup(QPoint());
        QAccessibleInterface* const row =
            Windows::find(QAccessible::queryAccessibleInterface(&menu), u"15 minutes"_s);
        QVERIFY(row != nullptr);
        row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(fixture.told.last(), u"sleep 15"_s);
        QVERIFY(!menu.isVisible());
    }
};

QTEST_MAIN(MenuRowsTest)
#include "menu_rows_test.moc"
