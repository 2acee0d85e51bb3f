#include "linux/script/Interpreter.h"
#include "linux/script/Lexer.h"
#include "support/ScriptedDictionary.h"

#include <QRandomGenerator>
#include <QtTest>

/// The rules of the scripting language, and what happens to texts that break them.
class ScriptLanguageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void outcomes_data();
    void outcomes();
    void failureIsOneLogLine();
    void wordSoup();

private:
    ScriptOutcome run(const QString& source) { return _interpreter->run(source); }

    std::unique_ptr<ScriptedDictionary> _applications;
    std::unique_ptr<Interpreter> _interpreter;
};

namespace {

/// Sources and what they give: a reply, "none" or "error NUMBER". " | " stands between them, "; " for the end
/// of a line.
constexpr auto rules =
    // Numbers and precedence
    R"(1 + 2 * 3 - 4 → 3 | (1 + 2) * 3 → 9 | -2 * -3 → 6 | 7 / 2 → 3.5 | 6 ÷ 2 × 1 → 3.0 | -7 div 2 → -3 |
    -7 mod 3 → -1 | 7.5 mod 2 → 1.5 | 7.9 div 2 → 3 | 10 - 3 - 2 → 5 | 1.0e+20 → 1.0e+20 | "5" + 1 → 6 |
    9223372036854775807 → 9223372036854775807 | (-9223372036854775807 - 1) mod -1 → 0 | )"
    // Texts, lists and coercions
    R"("a" & 1 & true & 2.50 & playing → a1true2.5playing | {1, {"x"}} & {2.0} as text → 1x2.0 |
    1 & 2 as text → 12 | item 2 of {1, "two", 3} → two | item -1 of {1, 2} & first item of "xy" → none |
    third item of "añb" → b | count of {1, {2, 3}} → 2 | count "abc" → 3 | missing value → missing value |
    length of every item of {"ab", "c"} as text → 21 | {} → none | 1 = 1 as text → false |
    " 12 " as integer → 12 | 2.6 as integer → 3 | 3 as real → 3.0 |
    "1.5" as number → 1.5 | "TRUE" as boolean → true | )"
    // Comparisons
    R"("Straße" is "STRAßE" → true | "a" < "B" → true | 1 = 1.0 → true | "1" is 1 → false |
    {1, "A"} = {1.0, "a"} → true | {1} = {1, 2} → false | 1 ≠ 2 and not 1 > 2 or 1 / 0 = 0 → true |
    2 ≤ 2 and 2 ≥ 3 → false | 3 is greater than or equal to 3 → true | 3 is not less than 4 → false |
    "a" is not equal to "b" → true | "a" does not equal "A" → false | stopped is STOPPED → true |
    "lo" is in "Hello" and {1, 2} contains 2 → true |
    "Hello" starts with "hE" and "ab" ends with "x" → false | )"
    // Statements
    R"(set x to 1; set X to x + 1; x → 2 | set x to 5 → none | return → none | 1; return 2; 3 → 2 |
    if 1 > 2 then; 1; else if 1 = 1 then; 2; else; 3; end if → 2 | if false then return 1; 2 → 2 |
    set s to ""; repeat with i from 5 to 1 by -2; set s to s & i; end repeat; s → 531 |
    set s to "-"; repeat with i from 2 to 1; set s to s & i; end repeat; s → - |
    set s to ""; repeat with w in {"a", 2}; set s to s & w; end repeat; s → a2 |
    set n to 0; repeat 3 times; set n to n + 2; end repeat; n → 6 |
    set n to 0; repeat while n < 3; set n to n + 1; end repeat; n → 3 |
    set n to 9; repeat until n < 3; set n to n - 2; end repeat; n → 1 |
    repeat 2 times; repeat; exit repeat; end repeat; end repeat; "out" → out |
    repeat with i from 9223372036854775806 to 9223372036854775807; end repeat; i → 9223372036854775807 |
    try; 1 / 0; on error m number n; return n; end try → -2701 |
    try; error "own" number 7; on error m number n; m & n; end try → own7 |
    try; error "own"; on error number n; n; end try → -2700 | try; undefined; end try; "on" → on |
    1 -- one; # two; (* three (* four *); *) + 1 → 1 | )"
    // Targets
    R"(tell app "Music"; get the name of the current track; end tell → Noon |
    name of current track of application "Music" → Noon | application "Music"'s current track's name → Noon |
    tell application "Music"; tell current track to name & player state; end tell → Noonplaying |
    tell application "Music"; tell current track; pause; end tell; end tell → none |
    tell application "Music" to name of every track as text → DawnNoonDusk |
    tell application "Music" to name of (tracks whose artist is "ada") as text → DawnDusk |
    tell application "Music" to name of last track of current playlist where loved is false → Dusk |
    tell application "Music" to artist of track "dusk" → Ada |
    tell application "Music" to name of track (1 + 1) of current playlist → Noon |
    tell application "Music"; set loved of every track to true; loved of track 3; end tell → true |
    tell application "Music" to "" & (count tracks) & (count of every track whose name > "Dd") → 32 |
    tell application "Music" to current track is second track → true |
    tell application "Music" to current track → none | tell application "Tapes" to running → false |
    tell application "Music" to it is application "music" → true)";

constexpr auto nonsense =
    R"(tell application "Music" | tell application Music to play | if true then; 1 | end | else | set x |
    repeat 2; end repeat | exit repeat | try; end tell | set 5 to 1 | set end to 1 | set current to 1 to 2 |
    1 + | (1 | {1, | {1 2} | 1 2 | "open | "\x" | (* open | 1 ¬ 2 | § | name of | 5 of x | every x |
    track of current playlist | x as colour | return return | on error | repeat with name in {}; end)";

constexpr auto failures =
    R"(x → -2753 | tell application "Music"; set x to pause; x; end tell → -2753 |
    tell application "Music" to first track whose undefined is 1 → -2753 |
    set x to pause → -1728 | name → -1728 | tell application "Music" to name → -1728 |
    tell 5 to play → -1728 | name of 5 → -1728 | count of 5 → -1728 |
    tell application "Music" to flavour of current track → -1728 |
    tell application "Music" to track "Night" → -1728 | tell application "Music" to name of track 9 → -1719 |
    tell application "Music" to name of track 0 → -1719 | item -4 of {1, 2, 3} → -1719 |
    tell application "Music" to first track whose name is "Night" → -1719 |
    tell application "Music" to quit → -1708 | tell application "Tapes" to playpause → -600 |
    tell application "Music" to set name of current track to "x" → -10006 | "x" as integer → -1700 |
    "nan" as real → -1700 | "a" + 1 → -1700 | not 1 → -1700 | 1 < "a" → -1700 | if "true" then 1 → -1700 |
    repeat with i in 5; end repeat → -1700 | repeat with i from 1 to 2 by 0; end repeat → -2701 |
    1 / 0 → -2701 | 1 div 0.0 → -2701 | 1 mod 0 → -2701 | 9223372036854775808 → -2702 | 1e999 → -2702 |
    9223372036854775807 + 1 → -2702 | -9223372036854775807 - 2 → -2702 | 9223372036854775807 * 2 → -2702 |
    -(-9223372036854775807 - 1) → -2702 | (-9223372036854775807 - 1) div -1 → -2702 | 1e300 * 1e300 → -2702 |
    1e300 as integer → -2702 | error number 99999999999 → -2702 | error "own" number 12 → 12)";

void addRow(const QString& source, const QString& expected)
{
    QTest::newRow(source.left(80).replace(u'\n', u';').toUtf8().constData()) << source << expected;
}

/// Adds the rows of a table. The "%1" in `expected` is what the row itself tells.
void addRows(const char* table, const QString& expected)
{
    QString text = QString::fromUtf8(table).simplified().replace(QStringLiteral("; "), QStringLiteral("\n"));
    for (const QString& row : text.split(QStringLiteral(" | "))) {
        const QStringList parts = row.split(QStringLiteral(" → "));
        addRow(parts.constFirst(), expected.contains(u'%') ? expected.arg(parts.constLast()) : expected);
    }
}

} // namespace

void ScriptLanguageTest::init()
{
    _applications = std::make_unique<ScriptedDictionary>();
    _applications->music->setTracks({{QStringLiteral("Dawn"), QStringLiteral("Ada"), 215.5},
                                     {QStringLiteral("Noon"), QStringLiteral("Bo"), 12.0},
                                     {QStringLiteral("Dusk"), QStringLiteral("Ada"), 90.0}});
    _applications->music->playTrack(2);
    _interpreter = std::make_unique<Interpreter>(
        [this](const QString& name) { return _applications->application(name); });
}

void ScriptLanguageTest::outcomes_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");
    addRows(rules, QStringLiteral("%1"));
    addRow(QString(), QStringLiteral("none"));
    addRow(QStringLiteral("\"a\\\"\\\\\\n\\t\" & ¬\r\n\"b\"\r\n"), QStringLiteral("a\"\\\n\tb"));
    addRows(nonsense, QStringLiteral("error -2741"));
    addRows(failures, QStringLiteral("error %1"));

    const auto many = [](const char* text) {
        const QString piece = QString::fromLatin1(text);
        return piece.repeated(Lexer::longestSource / piece.size());
    };
    const QString tooDeep = QStringLiteral("error -2706");
    for (const char* const piece : {"(", "{", "not ", "- ", "name of ", "track -(", "play ", "1+",
                                    "tracks whose ", "tell it to ", "try\n", "if true then "}) {
        addRow(many(piece), tooDeep);
    }
    addRow(u'x' + many("'s x").chopped(1), tooDeep);
    addRow(u'1' + many(" as text").chopped(8), tooDeep);
    addRow(many("1\n") + QStringLiteral("\n\n\n"), QStringLiteral("error -108"));
    addRows(
        R"(set s to "ab"; repeat; set s to s & s; end repeat |
        set a to {1}; repeat; set a to a & a; end repeat | set a to {}; repeat; set a to {a}; end repeat)",
        QStringLiteral("error -108"));
    addRows(R"(repeat; 2; end repeat | repeat 9223372036854775807 times; end repeat |
        repeat; try; x; end try; end repeat |
        set s to "ab"; repeat; try; set s to s & s; end try; s is s & ""; s contains "c"; end repeat |
        set a to {1}; repeat; try; set a to {a, a}; end try; a = a & {}; end repeat |
        set s to "ab"; repeat 20 times; set s to s & s; end repeat;
        repeat; try; {s, s, s} as text; end try; end repeat)",
            QStringLiteral("error -1712"));
}

void ScriptLanguageTest::outcomes()
{
    QFETCH(const QString, source);
    const ScriptOutcome outcome = run(source);
    QVERIFY(!outcome.reply || !outcome.errorNumber);
    QCOMPARE(outcome.errorMessage.isEmpty(), !outcome.errorNumber);
    const QString failure = QStringLiteral("error %1").arg(outcome.errorNumber.value_or(0));
    QTEST(outcome.errorNumber ? failure : outcome.reply.value_or(QStringLiteral("none")), "expected");
}

void ScriptLanguageTest::failureIsOneLogLine()
{
    static QStringList lines;
    lines.clear();
    const auto previous = qInstallMessageHandler([](auto, const auto& context, const QString& line) {
        if (qstrcmp(context.category, "com.orvalen.pellar.script") == 0) {
            lines.append(line);
        }
    });
    run(QStringLiteral("try\nx\nend try"));
    run(QStringLiteral("error \"broken\nin two\" number 12"));
    qInstallMessageHandler(previous);
    QCOMPARE(lines, QStringList{QStringLiteral("script error 12 broken in two")});
}

/// Words of the language in any order from a fixed seed: whatever comes out, it comes out.
void ScriptLanguageTest::wordSoup()
{
    const QStringList words =
        QString::fromUtf8(rules).remove(u'→').remove(u'|').replace(u';', QStringLiteral(" \n")).split(u' ');
    QRandomGenerator random(20260131);
    int succeeded = 0;
    for (int round = 0; round < 20'000; ++round) {
        QString source;
        for (int left = random.bounded(1, 40); left > 0; --left) {
            source += words.at(random.bounded(words.size())) + u' ';
        }
        const ScriptOutcome outcome = run(source);
        QVERIFY2(!outcome.reply || !outcome.errorNumber, qPrintable(source));
        succeeded += outcome.errorNumber ? 0 : 1;
    }
    QVERIFY(succeeded > 0); // else the soup never got as far as the evaluator
}

QTEST_GUILESS_MAIN(ScriptLanguageTest)
#include "script_language_test.moc"
