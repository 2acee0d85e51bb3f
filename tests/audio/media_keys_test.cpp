#include "audio/MediaKeys.h"
#include "support/FakePlatform.h"
#include "support/LogFile.h"

#include <QTest>

using Key = MediaKeys::Key;

namespace {

constexpr int pid = 4711;

const QString scriptText = QStringLiteral("tell application \"System Events\"\n"
                                          "    try\n"
                                          "        set p to first process whose unix id is 4711\n"
                                          "        tell p to keystroke %1\n"
                                          "        return \"OK\"\n"
                                          "    on error errMsg\n"
                                          "        return \"ERR: \" & errMsg\n"
                                          "    end try\n"
                                          "end tell");

std::optional<RunningApplication> application(const char* bundleId)
{
    return RunningApplication{.processId = pid, .bundleId = QString::fromUtf8(bundleId)};
}

} // namespace

class MediaKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesTheWay_data();
    void choosesTheWay();
    void postsDownAndUpToBothTaps();
    void commandsWhatSounds();
};

void MediaKeysTest::choosesTheWay_data()
{
    QTest::addColumn<std::optional<RunningApplication>>("front");
    QTest::addColumn<Key>("key");
    QTest::addColumn<QString>("keystroke");
    QTest::addColumn<ScriptOutcome>("outcome");
    QTest::addColumn<QStringList>("traces");

    const QString space = QStringLiteral("\" \"");
    const QString shiftN = QStringLiteral("\"N\" using {shift down}");
    const QString shiftP = QStringLiteral("\"P\" using {shift down}");
    const ScriptOutcome done{.reply = QStringLiteral("OK"), .errorNumber = std::nullopt, .errorMessage = {}};
    const ScriptOutcome failed{
        .reply = QStringLiteral("ERR: gone"), .errorNumber = std::nullopt, .errorMessage = {}};
    const ScriptOutcome refused{
        .reply = std::nullopt, .errorNumber = -1743, .errorMessage = QStringLiteral("no")};
    const QStringList typed = {QStringLiteral(" → keystroke pid 4711")};
    const auto broadcast = [](const char* front) {
        return QStringLiteral(" → broadcast (front=%1)").arg(QString::fromUtf8(front));
    };
    QTest::newRow("Safari") << application("com.apple.Safari") << Key::playPause << space << done << typed;
    QTest::newRow("Chrome, next") << application("com.google.Chrome") << Key::next << shiftN << done << typed;
    QTest::newRow("Firefox, previous")
        << application("org.mozilla.firefox") << Key::previous << shiftP << done << typed;
    QTest::newRow("page is gone") << application("com.apple.Safari") << Key::next << shiftN << failed
                                  << QStringList{
                                         QStringLiteral(" → keystroke FAILED for pid 4711: ERR: gone"),
                                         broadcast("com.apple.Safari")};
    QTest::newRow("not permitted") << application("com.apple.Safari") << Key::next << shiftN << refused
                                   << QStringList{QStringLiteral(" → keystroke FAILED for pid 4711: no"),
                                                  broadcast("com.apple.Safari")};
    QTest::newRow("no browser") << application("com.apple.Music") << Key::next << QString() << done
                                << QStringList{broadcast("com.apple.Music")};
    QTest::newRow("no name") << std::optional(RunningApplication{.processId = pid, .bundleId = std::nullopt})
                             << Key::next << QString() << done << QStringList{broadcast("?")};
    QTest::newRow("nothing in front") << std::optional<RunningApplication>() << Key::next << QString() << done
                                      << QStringList{broadcast("?")};
}

void MediaKeysTest::choosesTheWay()
{
    QFETCH(std::optional<RunningApplication>, front);
    QFETCH(Key, key);
    QFETCH(QString, keystroke);
    QFETCH(ScriptOutcome, outcome);
    QFETCH(QStringList, traces);
    LogFile log;
    FakePlatform desktop;
    desktop.workspace.front = front;
    const QString script = scriptText.arg(keystroke);
    desktop.scripts.outcomes[script] = outcome;
    MediaKeys(desktop.ports).send(key);
    QCOMPARE(desktop.scripts.take(), keystroke.isEmpty() ? QStringList() : QStringList{script});
    const QStringList lines = log.take();
    QCOMPARE(lines.size(), traces.size());
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QVERIFY2(lines[i].endsWith(traces[i]), qPrintable(lines[i]));
    }
    const bool isBroadcast = traces.last().contains(QStringLiteral("broadcast"));
    QCOMPARE(desktop.eventTaps.posted.size(), isBroadcast ? 4 : 0);
}

void MediaKeysTest::postsDownAndUpToBothTaps()
{
    LogFile log;
    FakePlatform desktop;
    MediaKeys(desktop.ports).send(Key::next);
    const SystemDefinedEvent down{.modifierFlags = 0xA00, .data1 = 0x110A00, .data2 = -1};
    const SystemDefinedEvent up{.modifierFlags = 0xB00, .data1 = 0x110B00, .data2 = -1};
    using Posted = decltype(desktop.eventTaps.posted);
    const Posted expected = {{down, EventTaps::Tap::hid},
                             {down, EventTaps::Tap::session},
                             {up, EventTaps::Tap::hid},
                             {up, EventTaps::Tap::session}};
    QVERIFY(desktop.eventTaps.posted == expected);
}

/// Only where no program has grabbed the key, and then nobody gets the key as well.
void MediaKeysTest::commandsWhatSounds()
{
    LogFile log;
    FakePlatform desktop;
    desktop.mediaPlayers.players = {{.id = QStringLiteral(":1.7"), .isPlaying = true}};
    MediaKeys keys(desktop.ports);
    desktop.eventTaps.isGrabbed = true;
    keys.send(Key::next);
    QVERIFY(desktop.mediaPlayers.sent.isEmpty());
    QCOMPARE(std::exchange(desktop.eventTaps.posted, {}).size(), 4);
    desktop.eventTaps.isGrabbed = false;
    keys.send(Key::next);
    QCOMPARE(desktop.mediaPlayers.sent, (QList{std::pair(QStringLiteral(":1.7"), MediaCommand::next)}));
    QVERIFY(desktop.eventTaps.posted.isEmpty());
}

QTEST_GUILESS_MAIN(MediaKeysTest)
#include "media_keys_test.moc"
