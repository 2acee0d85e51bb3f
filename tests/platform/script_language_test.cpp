#include "platform/linux/script/Interpreter.h"
#include "platform/linux/script/Lexer.h"
#include "platform/linux/script/Parser.h"
#include "support/ScriptedDictionary.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

QByteArray oneLine(const char* source)
{
    return QByteArray(source).replace('\n', "; ").replace('\r', "");
}

} // namespace

/// The rules of the scripting language, and what happens to texts that break them.
class ScriptLanguageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void rules_data();
    void rules();
    void failures_data();
    void failures();
    void hostile_data();
    void hostile();
    void failureIsOneLogLine();
    void tokenSoup();

private:
    ScriptOutcome run(const QString& source) { return _interpreter->run(source); }

    std::unique_ptr<ScriptedDictionary> _applications;
    std::unique_ptr<Interpreter> _interpreter;
};

void ScriptLanguageTest::init()
{
    _applications = std::make_unique<ScriptedDictionary>();
    _applications->music->setTracks({
        {QStringLiteral("Dawn"), QStringLiteral("Ada"), QString(), 215.5},
        {QStringLiteral("Noon"), QStringLiteral("Bo"), QString(), 12.0},
        {QStringLiteral("Dusk"), QStringLiteral("Ada"), QString(), 90.0},
    });
    _applications->music->playTrack(2);
    _interpreter = std::make_unique<Interpreter>(
        [this](const QString& name) { return _applications->application(name); });
}

void ScriptLanguageTest::rules_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<std::optional<QString>>("expected");
    const auto row = [](const char* source, const char* expected) {
        const auto text = expected != nullptr ? std::optional(QString::fromUtf8(expected)) : std::nullopt;
        QTest::newRow(oneLine(source).constData()) << QString::fromUtf8(source) << text;
    };
    // Numbers and precedence
    row("1 + 2 * 3 - 4", "3");
    row("(1 + 2) * 3", "9");
    row("-2 * -3", "6");
    row("7 / 2", "3.5");
    row("6 ÷ 2 × 1", "3.0");
    row("-7 div 2", "-3");
    row("-7 mod 3", "-1");
    row("7.5 mod 2", "1.5");
    row("7.9 div 2", "3");
    row("10 - 3 - 2", "5");
    row("215.5", "215.5");
    row("1.0e+20", "1.0e+20");
    row("\"5\" + 1", "6");
    row("9223372036854775807", "9223372036854775807");
    row("(-9223372036854775807 - 1) mod -1", "0");
    // Texts and lists
    row("\"a\" & 1 & true & 2.50 & playing", "a1true2.5playing");
    row("1 & 2 as text", "12");
    row("\"a\\\"\\\\\\n\\t\\r\" & \"b\"", "a\"\\\n\t\rb");
    row("{1, {\"x\"}} & {2.0} as text", "1x2.0");
    row("item 2 of {1, \"two\", 3}", "two");
    row("item -1 of {1, 2} & first item of \"xy\"", nullptr);
    row("third item of \"añb\"", "b");
    row("count of {1, {2, 3}}", "2");
    row("count \"abc\"", "3");
    row("count of every item of {\"ab\", \"c\"}", "2");
    row("length of every item of {\"ab\", \"c\"} as text", "21");
    row("{}", nullptr);
    row("missing value", "missing value");
    // Coercions
    row("\" 12 \" as integer", "12");
    row("2.6 as integer", "3");
    row("3 as real", "3.0");
    row("\"1.5\" as number", "1.5");
    row("\"TRUE\" as boolean", "true");
    row("1 = 1 as text", "false");
    // Comparisons
    row("\"Straße\" is \"STRAßE\"", "true");
    row("\"a\" < \"B\"", "true");
    row("1 = 1.0", "true");
    row("\"1\" is 1", "false");
    row("{1, \"A\"} = {1.0, \"a\"}", "true");
    row("{1} = {1, 2}", "false");
    row("1 ≠ 2 and not 1 > 2 or 1 / 0 = 0", "true");
    row("2 ≤ 2 and 2 ≥ 3", "false");
    row("3 is greater than or equal to 3", "true");
    row("3 is not less than 4", "false");
    row("\"a\" is not equal to \"b\"", "true");
    row("\"a\" does not equal \"A\"", "false");
    row("\"lo\" is in \"Hello\" and {1, 2} contains 2", "true");
    row("\"Hello\" starts with \"hE\" and \"Hello\" ends with \"x\"", "false");
    row("stopped is STOPPED", "true");
    // Statements
    row("set x to 1\nset X to x + 1\nx", "2");
    row("set x to 5", nullptr);
    row("return", nullptr);
    row("1\nreturn 2\n3", "2");
    row("if 1 > 2 then\n1\nelse if 1 = 1 then\n2\nelse\n3\nend if", "2");
    row("if false then return 1\n2", "2");
    row("set s to \"\"\nrepeat with i from 5 to 1 by -2\nset s to s & i\nend repeat\ns", "531");
    row("set s to \"\"\nrepeat with i from 2 to 1\nset s to s & i\nend repeat\ns", "");
    row("set s to \"\"\nrepeat with w in {\"a\", 2}\nset s to s & w\nend repeat\ns", "a2");
    row("set n to 0\nrepeat 3 times\nset n to n + 2\nend repeat\nn", "6");
    row("set n to 0\nrepeat while n < 3\nset n to n + 1\nend repeat\nn", "3");
    row("set n to 9\nrepeat until n < 3\nset n to n - 2\nend repeat\nn", "1");
    row("set n to 0\nrepeat\nset n to n + 1\nif n is 4 then exit repeat\nend repeat\nn", "4");
    row("repeat 2 times\nrepeat\nexit repeat\nend repeat\nend repeat\n\"out\"", "out");
    row("repeat with i from 9223372036854775806 to 9223372036854775807\nend repeat\ni",
        "9223372036854775807");
    row("try\n1 / 0\non error m number n\nreturn n\nend try", "-2701");
    row("try\nerror \"own\" number 7\non error m number n\nm & n\nend try", "own7");
    row("try\nerror \"own\"\non error number n\nn\nend try", "-2700");
    row("try\nundefined\nend try\n\"on\"", "on");
    row("1 -- one\n# two\n(* three (* four *)\n *) + 1", "1");
    row("set x to 1 + ¬\n  2\r\nx", "3");
    // Targets
    row("tell application \"Music\" to name of current track", "Noon");
    row("tell app \"Music\"\nget the name of the current track\nend tell", "Noon");
    row("name of current track of application \"Music\"", "Noon");
    row("application \"Music\"'s current track's name", "Noon");
    row("tell application \"Music\"\ntell current track to name & player state\nend tell", "Noonplaying");
    row("tell application \"Music\"\ntell current track\npause\nplayer state\nend tell\nend tell", "paused");
    row("tell application \"Music\" to name of every track as text", "DawnNoonDusk");
    row("tell application \"Music\" to name of (tracks whose artist is \"ada\") as text", "DawnDusk");
    row("tell application \"Music\" to name of last track of current playlist where loved is false", "Dusk");
    row("tell application \"Music\" to artist of track \"dusk\"", "Ada");
    row("tell application \"Music\" to name of track (1 + 1) of current playlist", "Noon");
    row("tell application \"Music\"\nset loved of every track to true\nloved of track 3\nend tell", "true");
    row("tell application \"Music\" to (count tracks) & \"|\" & (count of every track whose name > \"Dd\") "
        "as text",
        "3|2");
    row("tell application \"Music\" to current track is second track", "true");
    row("tell application \"Music\" to current track", nullptr);
    row("tell application \"Music\" to it is application \"music\"", "true");
    row("tell application \"Tapes\" to running", "false");
    row("", nullptr);
}

void ScriptLanguageTest::rules()
{
    QFETCH(const QString, source);
    const ScriptOutcome outcome = run(source);
    QVERIFY2(!outcome.errorNumber, qPrintable(outcome.errorMessage));
    QTEST(outcome.reply, "expected");
}

void ScriptLanguageTest::failures_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("number");
    const auto row = [](const char* source, int number) {
        QTest::newRow(oneLine(source).constData()) << QString::fromUtf8(source) << number;
    };
    for (const char* const source : {"tell application \"Music\"",
                                     "tell application Music to play",
                                     "if true then\n1",
                                     "end",
                                     "else",
                                     "repeat 2\nend repeat",
                                     "exit repeat",
                                     "try\nend tell",
                                     "tell application \"Music\"\nend try",
                                     "set 5 to 1",
                                     "set end to 1",
                                     "set x",
                                     "set (1 + 1) to 2",
                                     "set current to 1 to 2",
                                     "1 +",
                                     "(1",
                                     "{1,",
                                     "{1 2}",
                                     "1 2",
                                     "\"open",
                                     "\"\\x\"",
                                     "(* open",
                                     "1 ¬ 2",
                                     "§",
                                     "name of",
                                     "5 of x",
                                     "every x",
                                     "track of current playlist",
                                     "x as colour",
                                     "return return",
                                     "on error",
                                     "repeat with name in {}\nend",
                                     "keystroke \"s\" with",
                                     "1\x01"}) {
        row(source, ScriptError::syntax);
    }
    row("x", ScriptError::undefinedVariable);
    row("set x to pause", ScriptError::noSuchObject);
    row("tell application \"Music\"\nset x to pause\nx\nend tell", ScriptError::undefinedVariable);
    row("name", ScriptError::noSuchObject);
    row("tell application \"Music\" to name", ScriptError::noSuchObject);
    row("tell application \"Music\" to genre of current track", ScriptError::noSuchObject);
    row("tell application \"Music\" to flavour of current track", ScriptError::noSuchObject);
    row("tell application \"Music\" to name of track 9", ScriptError::noSuchIndex);
    row("tell application \"Music\" to name of track 0", ScriptError::noSuchIndex);
    row("tell application \"Music\" to track \"Night\"", ScriptError::noSuchObject);
    row("tell application \"Music\" to first track whose name is \"Night\"", ScriptError::noSuchIndex);
    row("tell application \"Music\" to first track whose undefined is 1", ScriptError::undefinedVariable);
    row("tell application \"Music\" to quit", ScriptError::notUnderstood);
    row("tell application \"Music\" to set name of current track to \"x\"", ScriptError::notSettable);
    row("tell 5 to play", ScriptError::noSuchObject);
    row("tell application \"Tapes\" to playpause", ScriptError::notRunning);
    row("item 4 of {1, 2, 3}", ScriptError::noSuchIndex);
    row("item -4 of {1, 2, 3}", ScriptError::noSuchIndex);
    row("name of 5", ScriptError::noSuchObject);
    row("count of 5", ScriptError::noSuchObject);
    row("\"x\" as integer", ScriptError::cannotConvert);
    row("\"nan\" as real", ScriptError::cannotConvert);
    row("\"a\" + 1", ScriptError::cannotConvert);
    row("not 1", ScriptError::cannotConvert);
    row("1 < \"a\"", ScriptError::cannotConvert);
    row("if \"true\" then 1", ScriptError::cannotConvert);
    row("repeat with i in 5\nend repeat", ScriptError::cannotConvert);
    row("repeat with i from 1 to 2 by 0\nend repeat", ScriptError::divisionByZero);
    row("1 / 0", ScriptError::divisionByZero);
    row("1 div 0.0", ScriptError::divisionByZero);
    row("1 mod 0", ScriptError::divisionByZero);
    row("9223372036854775808", ScriptError::numberTooLarge);
    row("1e999", ScriptError::numberTooLarge);
    row("9223372036854775807 + 1", ScriptError::numberTooLarge);
    row("-9223372036854775807 - 2", ScriptError::numberTooLarge);
    row("9223372036854775807 * 2", ScriptError::numberTooLarge);
    row("-(-9223372036854775807 - 1)", ScriptError::numberTooLarge);
    row("(-9223372036854775807 - 1) div -1", ScriptError::numberTooLarge);
    row("1e300 * 1e300", ScriptError::numberTooLarge);
    row("1e300 as integer", ScriptError::numberTooLarge);
    row("error \"own\" number 12", 12);
    row("error number 99999999999", ScriptError::numberTooLarge);
}

void ScriptLanguageTest::failures()
{
    QFETCH(const QString, source);
    const ScriptOutcome outcome = run(source);
    QCOMPARE(outcome.reply, std::nullopt);
    QVERIFY(!outcome.errorMessage.isEmpty());
    QTEST(outcome.errorNumber.value_or(0), "number");
}

void ScriptLanguageTest::hostile_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("number");
    const auto looped = [](const char* before, const char* body) {
        return QStringLiteral("%1\nrepeat\n%2\nend repeat")
            .arg(QString::fromLatin1(before), QString::fromLatin1(body));
    };
    const auto many = [](const char* text) {
        const QString piece = QString::fromLatin1(text);
        return piece.repeated(Lexer::longestSource / piece.size());
    };
    constexpr int deep = ScriptError::tooDeep;
    constexpr int large = ScriptError::tooLarge;
    constexpr int endless = ScriptError::tooLong;
    QTest::newRow("brackets") << many("(") << deep;
    QTest::newRow("braces") << many("{") << deep;
    QTest::newRow("not") << many("not ") << deep;
    QTest::newRow("signs") << many("- ") << deep;
    QTest::newRow("containers") << many("name of ") << deep;
    QTest::newRow("owners") << QString(u'x' + many("'s x").chopped(1)) << deep;
    QTest::newRow("indices") << many("track -(") << deep;
    QTest::newRow("commands") << many("play ") << deep;
    QTest::newRow("a long sum") << many("1+") << deep;
    QTest::newRow("coercions") << QString(u'1' + many(" as text").chopped(8)) << deep;
    QTest::newRow("filters") << many("tracks whose ") << deep;
    QTest::newRow("tells") << many("tell it to ") << deep;
    QTest::newRow("blocks") << many("try\n") << deep;
    QTest::newRow("conditions") << many("if true then ") << deep;
    QTest::newRow("source") << many("1\n") + QStringLiteral("\n\n\n") << large;
    QTest::newRow("while true") << QStringLiteral("repeat while true\nend repeat") << endless;
    QTest::newRow("errors in a loop") << looped("", "try\nx\nend try") << endless;
    QTest::newRow("questions that go outward")
        << QString(looped("tell application \"Music\"", QByteArray("try\n")
                                                            .append(QByteArray("tell it to ").repeated(40))
                                                            .append("genre\nend try")) +
                   QStringLiteral("\nend tell"))
        << endless;
    QTest::newRow("times") << QStringLiteral("repeat 9223372036854775807 times\nend repeat") << endless;
    QTest::newRow("a text that doubles") << looped("set s to \"ab\"", "set s to s & s") << large;
    QTest::newRow("the same, caught") << looped("set s to \"ab\"", "try\nset s to s & s\nend try") << endless;
    QTest::newRow("comparing it") << looped("set s to \"ab\"",
                                            "try\nset s to s & s\nend try\ns is s & \"\"\ns contains \"c\"")
                                  << endless;
    QTest::newRow("a list that doubles") << looped("set a to {1}", "set a to a & a") << large;
    QTest::newRow("a list in itself") << looped("set a to {}", "set a to {a}") << large;
    QTest::newRow("twice in itself") << looped("set a to {1}", "try\nset a to {a, a}\nend try\na = a & {}")
                                     << endless;
    QTest::newRow("written out") << looped("set s to \"ab\"\nrepeat 20 times\nset s to s & s\nend repeat",
                                           "try\n{s, s, s} as text\nend try")
                                 << endless;
}

void ScriptLanguageTest::hostile()
{
    QFETCH(const QString, source);
    const ScriptOutcome outcome = run(source);
    QCOMPARE(outcome.reply, std::nullopt);
    QTEST(outcome.errorNumber.value_or(0), "number");
}

void ScriptLanguageTest::failureIsOneLogLine()
{
    static QStringList lines;
    lines.clear();
    const auto previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& line) {
            if (qstrcmp(context.category, "com.orvalen.pellar.script") == 0) {
                lines.append(line);
            }
        });
    run(QStringLiteral("1 + 1"));
    run(QStringLiteral("try\nx\nend try"));
    run(QStringLiteral("error \"broken\nin two\" number 12"));
    qInstallMessageHandler(previous);
    QCOMPARE(lines, QStringList{QStringLiteral("script error 12 broken in two")});
}

/// Words of the language in any order from a fixed seed: whatever comes out, it comes out.
void ScriptLanguageTest::tokenSoup()
{
    const QStringList words =
        QStringLiteral("tell|application \"Music\"|end tell|try|on error|end try|if|then|else|end "
                       "if|repeat|repeat with|from|to|"
                       "by|while|times|end repeat|exit "
                       "repeat|set|x|y|return|of|every|track|tracks|item|whose|first|last|current "
                       "track|current playlist|name|player state|player position|playing|play|pause|next "
                       "track|keystroke|using|"
                       "{|}|(|)|,|&|+|-|*|/|div|mod|is|is not|is "
                       "in|contains|<|≥|=|and|or|not|as|text|integer|list|count|count "
                       "of|1|2|-1|0|3.5|9223372036854775807|\"a\"|\"\"|true|false|missing "
                       "value|it|'s|error|number|\n|\n|\n|\n|¬\n|"
                       "--|(*|\"|the")
            .split(u'|');
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
