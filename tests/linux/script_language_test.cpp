#include "linux/script/Interpreter.h"
#include "linux/script/Lexer.h"
#include "linux/script/ScriptObject.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A player or a track: has what is put into it, can be loved and paused.
class Scripted final : public ScriptObject
{
public:
    ScriptValue property(const QString& name) override
    {
        return properties.contains(name) ? properties.value(name) : ScriptObject::property(name);
    }
    void setProperty(const QString& name, const ScriptValue& value) override
    {
        name == u"loved" ? void(properties.insert(name, value)) : ScriptObject::setProperty(name, value);
    }
    std::vector<std::shared_ptr<ScriptObject>> elements(const QString& className) override
    {
        return className == u"track" ? tracks : ScriptObject::elements(className);
    }
    ScriptValue perform(const QString& command, const ScriptValue& direct,
                        const QMap<QString, ScriptValue>& parameters) override
    {
        return command == u"pause" ? ScriptValue() : ScriptObject::perform(command, direct, parameters);
    }

    QMap<QString, ScriptValue> properties;
    std::vector<std::shared_ptr<ScriptObject>> tracks;
};

/// "Music" plays the second of the tracks Dawn, Noon and Dusk.
std::shared_ptr<ScriptObject> makeMusic()
{
    auto music = std::make_shared<Scripted>();
    for (const auto& [name, artist] :
         {std::pair(u"Dawn"_s, u"Ada"_s), {u"Noon"_s, u"Bo"_s}, {u"Dusk"_s, u"Ada"_s}}) {
        auto track = std::make_shared<Scripted>();
        track->properties = {{u"name"_s, name}, {u"artist"_s, artist}, {u"loved"_s, false}};
        music->tracks.push_back(track);
    }
    auto playlist = std::make_shared<Scripted>();
    playlist->tracks = music->tracks;
    music->properties = {{u"player state"_s, ScriptConstant{u"playing"_s}},
                         {u"current track"_s, music->tracks[1]},
                         {u"current playlist"_s, std::shared_ptr<ScriptObject>(playlist)}};
    return music;
}

} // namespace

/// The rules of the scripting language, and what happens to texts that break them.
class ScriptLanguageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outcomes_data(); // behind the tables, whose quotes would confuse moc

    void outcomes()
    {
        QFETCH(const QString, source);
        const ScriptOutcome outcome = _interpreter.run(source);
        QVERIFY(!outcome.reply || !outcome.errorNumber);
        QCOMPARE(outcome.errorMessage.isEmpty(), !outcome.errorNumber);
        const QString failure = u"error %1"_s.arg(outcome.errorNumber.value_or(0));
        QTEST(outcome.errorNumber ? failure : outcome.reply.value_or(u"none"_s), "expected");
    }

private:
    Interpreter _interpreter{[](const QString& name) { return name == u"music" ? makeMusic() : nullptr; }};
};

namespace {

/// Sources and what they give: a reply, "none" or "error NUMBER". " | " stands between them, "; " for the end
/// of a line.
constexpr auto rules =
    // Values
    R"(1 + 2 * 3 - 4 → 3 | (1 + 2) * -3 → -9 | 7 / 2 → 3.5 | -7 div 2 → -3 | "5" + 1 → 6 |
    "a" & 1 & true & 2.50 & playing → a1true2.5playing | {1, {"x"}} & {2.0} as text → 1x2.0 |
    item -1 of {1, 2} & first item of "xy" → none | count of {1, {2, 3}} → 2 | {} → none |
    "Straße" is "STRAßE" → true | 1 = 1.0 → true | "1" is 1 → false | 1 = 1 as text → false |
    1 ≠ 2 and not 1 > 2 or 1 / 0 = 0 → true | "a" is not equal to "b" → true | )"
    // Statements
    R"(set x to 1; set X to x + 1; x → 2 | set x to 5 → none | 1; return 2; 3 → 2 |
    if 1 > 2 then; 1; else if 1 = 1 then; 2; else; 3; end if → 2 | if false then return 1; 2 → 2 |
    set s to ""; repeat with i from 5 to 1 by -2; set s to s & i; end repeat; s → 531 |
    repeat 2 times; repeat; exit repeat; end repeat; end repeat; "out" → out |
    repeat with i from 9223372036854775806 to 9223372036854775807; end repeat; i → 9223372036854775807 |
    try; 1 / 0; on error m number n; return n; end try → -2701 | try; undefined; end try; "on" → on |
    1 -- one; # two; (* three (* four *); *) + 1 → 1 | )"
    // Targets
    R"(tell app "Music"; get the name of the current track; end tell → Noon |
    application "Music"'s current track's name → Noon |
    tell application "Music"; tell current track to name & player state; end tell → Noonplaying |
    tell application "Music" to name of (tracks whose artist is "ada") as text → DawnDusk |
    tell application "Music" to name of track (1 + 1) of current playlist → Noon |
    tell application "Music"; set loved of every track to true; loved of track 3; end tell → true |
    tell application "Music" to current track → none | tell application "Tapes" to running → false)";

constexpr auto nonsense =
    R"(tell application "Music" | tell application Music to play | if true then; 1 | end | set x | exit repeat |
    try; end tell | set 5 to 1 | 1 + | (1 | {1, | {1 2} | "open | "\x" | (* open | 1 ¬ 2 | § | name of | 5 of x |
    every x | track of current playlist | return return | repeat with name in {}; end)";

constexpr auto failures =
    R"(x → -2753 | tell application "Music"; set x to pause; x; end tell → -2753 | name → -1728 |
    tell application "Music" to flavour of current track → -1728 | item -4 of {1, 2, 3} → -1719 |
    tell application "Music" to name of track 9 → -1719 | tell application "Music" to name of track 0 → -1719 |
    tell application "Music" to quit → -1708 | tell application "Tapes" to playpause → -600 |
    tell application "Music" to set name of current track to "x" → -10006 | "a" + 1 → -1700 | 1 mod 0 → -2701 |
    9223372036854775808 → -2702 | 9223372036854775807 + 1 → -2702 | 1e300 * 1e300 → -2702 |
    (-9223372036854775807 - 1) div -1 → -2702 | error "own" number 12 → 12)";

void addRow(const QString& source, const QString& expected)
{
    QTest::newRow(source.left(80).replace(u'\n', u';').toUtf8().constData()) << source << expected;
}

/// Adds the rows of a table. The "%1" in `expected` is what the row itself tells.
void addRows(const char* table, const QString& expected)
{
    const QString text = QString::fromUtf8(table).simplified().replace(u"; "_s, u"\n"_s);
    for (const QString& row : text.split(u" | "_s)) {
        const QStringList parts = row.split(u" → "_s);
        addRow(parts.constFirst(), expected.contains(u'%') ? expected.arg(parts.constLast()) : expected);
    }
}

} // namespace

void ScriptLanguageTest::outcomes_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");
    addRows(rules, u"%1"_s);
    addRow(u"\"a\\\"\\\\\\n\\t\" & ¬\r\n\"b\"\r\n"_s, u"a\"\\\n\tb"_s);
    addRows(nonsense, u"error -2741"_s);
    addRows(failures, u"error %1"_s);
    addRow(QString(Lexer::longestSource, u'('), u"error -2706"_s);
    addRow(u"repeat\n2\nend repeat"_s, u"error -1712"_s); // without end
}

QTEST_GUILESS_MAIN(ScriptLanguageTest)
#include "script_language_test.moc"
