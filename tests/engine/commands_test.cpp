#include "EngineFixture.h"

#include <QTest>

class CommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsCommand_data();
    void sendsCommand();
    void choosesTargetWithNothingActive_data();
    void choosesTargetWithNothingActive();
    void seeks();
    void pausesHijackers();
    void togglesSilentSystemAudio();
    void readsReaction();
    void sleeps();
    void tellsRemainingTime_data();
    void tellsRemainingTime();
    void copiesLink_data();
    void copiesLink();
    void remembersAccess();
    void opensSettingsWhenRefused();
};

void CommandsTest::sendsCommand_data()
{
    QTest::addColumn<Player>("active");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("scripts");
    QTest::addColumn<QList<int>>("keys");
    QTest::addColumn<double>("refreshAfter"); // seconds; 0: no refresh

    const auto music = [](const char* statement) {
        return QStringList(QStringLiteral("tell application \"Music\" to ") + QString::fromLatin1(statement));
    };
    const auto spotify = [](const char* statement) {
        return QStringList(QStringLiteral("tell application \"Spotify\" to ") +
                           QString::fromLatin1(statement));
    };
    const QList<int> none;
    const auto row = [](const char* name, Player active, const char* command, const QStringList& scripts,
                        const QList<int>& keys, double refresh) {
        QTest::newRow(name) << active << QString::fromLatin1(command) << scripts << keys << refresh;
    };
    row("Music toggles", Player::appleMusic, "toggle", music("playpause"), none, 0.3);
    row("Music next", Player::appleMusic, "next", music("next track"), none, 0.5);
    row("Music previous", Player::appleMusic, "previous", music("previous track"), none, 0.5);
    row("Spotify toggles", Player::spotify, "toggle", spotify("playpause"), none, 0.3);
    row("Spotify next", Player::spotify, "next", spotify("next track"), none, 0.5);
    row("Spotify previous", Player::spotify, "previous", spotify("previous track"), none, 0.5);
    row("system audio toggles", Player::systemAudio, "toggle", {}, {16}, 0.3);
    row("system audio next", Player::systemAudio, "next", {}, {17}, 0.5);
    row("system audio previous", Player::systemAudio, "previous", {}, {18}, 0.5);
    row("nothing toggles", Player::none, "toggle", {}, none, 0);
    row("nothing next", Player::none, "next", {}, none, 0);
    row("Music loves", Player::appleMusic, "love", {PlayerScripts::loveMusic()}, none, 0);
    row("Spotify loves", Player::spotify, "love", {PlayerScripts::loveSpotify()}, none, 0);
    row("Music dislikes", Player::appleMusic, "dislike", {PlayerScripts::dislikeMusic()}, none, 0);
    row("Spotify cannot dislike", Player::spotify, "dislike", {}, none, 0);
}

void CommandsTest::sendsCommand()
{
    QFETCH(Player, active);
    QFETCH(QString, command);
    QFETCH(QStringList, scripts);
    QFETCH(QList<int>, keys);
    QFETCH(double, refreshAfter);
    EngineFixture engine(active == Player::none ? 3 : 7);
    if (active == Player::appleMusic || active == Player::spotify) {
        engine.setState(active, QStringLiteral("playing"));
    }
    engine.start();
    if (active == Player::systemAudio) {
        engine.enterSystemAudio();
    }
    QCOMPARE(engine.service->activePlayer(), active);
    engine.desktop.scripts.take();
    engine.log.take();

    static const QMap<QString, void (NowPlayingService::*)()> commands = {
        {QStringLiteral("toggle"), &NowPlayingService::togglePlayPause},
        {QStringLiteral("next"), &NowPlayingService::nextTrack},
        {QStringLiteral("previous"), &NowPlayingService::previousTrack},
        {QStringLiteral("love"), &NowPlayingService::loveCurrentTrack},
        {QStringLiteral("dislike"), &NowPlayingService::dislikeCurrentTrack}};
    (*engine.service.*commands[command])();
    QCOMPARE(engine.desktop.scripts.take(), scripts);
    QCOMPARE(engine.keys, keys);
    const QStringList trace = engine.log.take();
    if (command == QStringLiteral("toggle")) {
        const QString name = playerName(active);
        QCOMPARE(trace,
                 QStringList(QStringLiteral("togglePlayPause: target=%1 active=%1 ax=false").arg(name)));
    }
    engine.desktop.runLoop.advance(std::max(0.0, refreshAfter - 0.01));
    QVERIFY(engine.log.take().isEmpty());
    engine.desktop.runLoop.advance(0.02);
    QCOMPARE(!engine.log.take().isEmpty(), refreshAfter > 0);
}

void CommandsTest::choosesTargetWithNothingActive_data()
{
    QTest::addColumn<int>("sources");
    QTest::addColumn<bool>("music");
    QTest::addColumn<bool>("spotify");
    QTest::addColumn<QString>("target");
    QTest::newRow("Spotify first") << 7 << true << true << QStringLiteral("spotify");
    QTest::newRow("Music alone") << 7 << true << false << QStringLiteral("appleMusic");
    QTest::newRow("Spotify disabled") << 5 << true << true << QStringLiteral("appleMusic");
    QTest::newRow("no player") << 7 << false << false << QStringLiteral("systemAudio");
    QTest::newRow("nothing at all") << 3 << false << false << QStringLiteral("none");
}

void CommandsTest::choosesTargetWithNothingActive()
{
    QFETCH(int, sources);
    QFETCH(bool, music);
    QFETCH(bool, spotify);
    EngineFixture engine(sources);
    engine.setState(Player::appleMusic, music ? QStringLiteral("stopped") : QStringLiteral("off"));
    engine.setState(Player::spotify, spotify ? QStringLiteral("stopped") : QStringLiteral("off"));
    engine.start();
    engine.log.take();
    engine.service->togglePlayPause();
    QTEST(engine.log.take().value(0).section(u' ', 1, 1).section(u'=', 1), "target");
}

void CommandsTest::seeks()
{
    EngineFixture engine(3);
    engine.setState(Player::spotify, QStringLiteral("playing"));
    engine.start();
    engine.desktop.scripts.take();
    engine.service->seekTo(90);
    QCOMPARE(engine.service->elapsed(), 90.0);
    QCOMPARE(engine.desktop.scripts.take(),
             QStringList(QStringLiteral("tell application \"Spotify\" to set player position to 90.0")));
    engine.desktop.runLoop.advance(0.3);
    QCOMPARE(engine.service->elapsed(), 30.5); // the player's word

    // Without a target the position moves all the same and a refresh follows.
    engine.quit(Player::spotify);
    engine.service->refresh();
    engine.log.take();
    engine.desktop.scripts.take();
    engine.service->seekTo(5);
    QVERIFY(engine.desktop.scripts.take().isEmpty());
    QCOMPARE(engine.service->elapsed(), 5.0);
    engine.desktop.runLoop.advance(0.31);
    QVERIFY(!engine.log.take().isEmpty());
    engine.service->seekTo(std::nan(""));
    QCOMPARE(engine.service->elapsed(), 5.0);
}

void CommandsTest::pausesHijackers()
{
    EngineFixture engine;
    engine.setState(Player::appleMusic, QStringLiteral("paused"));
    engine.start();
    engine.enterSystemAudio();
    engine.service->nextTrack();
    engine.desktop.scripts.take();
    engine.desktop.runLoop.advance(0.39);
    QVERIFY(!engine.desktop.scripts.take().contains(PlayerScripts::pauseIfPlaying(Player::appleMusic)));
    engine.desktop.runLoop.advance(0.02);
    const QStringList scripts = engine.desktop.scripts.take();
    QVERIFY(scripts.contains(PlayerScripts::pauseIfPlaying(Player::appleMusic)));
    QVERIFY(!scripts.contains(PlayerScripts::pauseIfPlaying(Player::spotify))); // does not run

    // The display stays for five seconds, even if a player has grabbed the key.
    engine.setState(Player::appleMusic, QStringLiteral("playing"));
    engine.desktop.runLoop.advance(4.5);
    engine.service->refresh();
    QCOMPARE(engine.service->activePlayer(), Player::systemAudio);
    engine.desktop.runLoop.advance(0.2);
    engine.service->refresh();
    QCOMPARE(engine.service->activePlayer(), Player::appleMusic);
}

void CommandsTest::togglesSilentSystemAudio()
{
    EngineFixture engine(4);
    engine.start();
    engine.enterSystemAudio();
    Q_EMIT engine.capture->liveChanged(false);
    engine.service->togglePlayPause();
    QVERIFY(!engine.service->isPlaying());
    engine.service->togglePlayPause();
    QVERIFY(engine.service->isPlaying());
    QCOMPARE(engine.keys, QList<int>({16, 16}));
}

void CommandsTest::readsReaction()
{
    EngineFixture engine(3);
    engine.setState(Player::appleMusic, QStringLiteral("playing"));
    engine.start();
    engine.desktop.scripts.outcomes[PlayerScripts::reaction()] = {QStringLiteral("false|true"), {}, {}};
    QCOMPARE(engine.service->currentTrackReaction(), (TrackReaction{.loved = false, .disliked = true}));
    engine.setState(Player::appleMusic, QStringLiteral("off"));
    engine.setState(Player::spotify, QStringLiteral("playing"));
    engine.service->refresh();
    engine.desktop.scripts.take();
    QCOMPARE(engine.service->currentTrackReaction(), TrackReaction{});
    QVERIFY(engine.desktop.scripts.take().isEmpty());
    QVERIFY(engine.service->supportsLoveAction() && !engine.service->supportsDislikeAction());
}

void CommandsTest::sleeps()
{
    EngineFixture engine(3);
    engine.setState(Player::appleMusic, QStringLiteral("playing"));
    engine.start();
    QList<double> published;
    connect(engine.service.get(), &NowPlayingService::sleepTimerRemainingChanged, this,
            [&] { published << engine.service->sleepTimerRemaining().value_or(-1); });
    engine.service->setSleepTimer(1);
    engine.desktop.runLoop.advance(59);
    QCOMPARE(published.size(), 60);
    QCOMPARE(published.first(), 60.0);
    QCOMPARE(published.last(), 1.0);
    engine.desktop.scripts.take();
    engine.desktop.runLoop.advance(1);
    QCOMPARE(published.last(), -1.0);
    QVERIFY(engine.desktop.scripts.take().contains(PlayerScripts::playPause(Player::appleMusic)));

    // It pauses, it never starts; a new timer replaces the old one; a cancelled one does nothing.
    engine.setState(Player::appleMusic, QStringLiteral("paused"));
    engine.service->refresh();
    engine.service->setSleepTimer(90);
    engine.service->setSleepTimer(1);
    engine.desktop.scripts.take();
    engine.desktop.runLoop.advance(61);
    QVERIFY(!engine.desktop.scripts.take().contains(PlayerScripts::playPause(Player::appleMusic)));
    QVERIFY(!engine.service->sleepTimerRemaining());
    engine.service->setSleepTimer(1);
    engine.service->cancelSleepTimer();
    QVERIFY(!engine.service->sleepTimerRemaining());
}

void CommandsTest::tellsRemainingTime_data()
{
    QTest::addColumn<QString>("duration");
    QTest::addColumn<QString>("position");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, const char* duration, const char* position, const char* text) {
        QTest::newRow(name) << QString::fromLatin1(duration) << QString::fromLatin1(position)
                            << QString::fromLatin1(text);
    };
    row("minutes", "187.9", "0.0", "-3:07");
    row("seconds", "200.0", "195.0", "-0:05");
    row("over an hour", "3725.0", "0.0", "-62:05");
    row("past the end", "10.0", "12.0", "-0:00");
    row("unknown length", "0.0", "12.0", "");
}

void CommandsTest::tellsRemainingTime()
{
    QFETCH(QString, duration);
    QFETCH(QString, position);
    EngineFixture engine(3);
    engine.reply(Player::appleMusic,
                 QStringLiteral("S|||B|||A|||%1|||%2|||true|||1").arg(duration, position));
    engine.start();
    QTEST(engine.service->timeRemainingText(), "text");
}

void CommandsTest::copiesLink_data()
{
    QTest::addColumn<Player>("player");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("link");
    QTest::newRow("Spotify") << Player::spotify << QStringLiteral("50% Röck & Roll?")
                             << QStringLiteral(
                                    "https://open.spotify.com/search/50%25%20R%C3%B6ck%20&%20Roll?%20Band");
    QTest::newRow("Music") << Player::appleMusic << QStringLiteral("A \"B\" #1")
                           << QStringLiteral("https://music.apple.com/search?term=A%20%22B%22%20%231%20Band");
    QTest::newRow("broken Unicode") << Player::spotify << QString(QChar(0xD800))
                                    << QStringLiteral("https://open.spotify.com/search/");
    QTest::newRow("system audio") << Player::systemAudio << QString() << QStringLiteral("System Audio - ");
}

void CommandsTest::copiesLink()
{
    QFETCH(Player, player);
    QFETCH(QString, title);
    EngineFixture engine;
    if (player != Player::systemAudio) {
        engine.reply(player, title + QStringLiteral("|||Band|||A|||1.0|||0.0|||true"));
    }
    engine.start();
    if (player == Player::systemAudio) {
        engine.enterSystemAudio();
    }
    engine.service->copySongLink();
    QTEST(engine.desktop.pasteboard.text, "link");
}

void CommandsTest::remembersAccess()
{
    EngineFixture engine;
    engine.start();
    const QString key = QStringLiteral("pellar.permission.granted.com.apple.Music");
    auto& answer = engine.desktop.automation.answer;
    QVERIFY(!engine.service->hasAccess(BundleId::music)); // nothing to ask, nothing stored
    answer = Automation::granted;
    QVERIFY(engine.service->hasAccess(BundleId::music));
    answer = Automation::targetNotRunning;
    QVERIFY(engine.service->hasAccess(BundleId::music)); // as before
    answer = Automation::refused;
    QVERIFY(!engine.service->hasAccess(BundleId::music));
    QCOMPARE(engine.defaults.boolean(key), std::optional(false));
    answer = Automation::targetNotRunning;
    engine.defaults.removeObject(key);
    QVERIFY(!engine.service->hasAccess(BundleId::music));
    QVERIFY(!engine.defaults.boolean(key));
}

void CommandsTest::opensSettingsWhenRefused()
{
    EngineFixture engine;
    engine.start();
    const QString probe = QStringLiteral("tell application \"Music\" to count tracks");
    engine.desktop.scripts.outcomes[probe] = {{}, -1728, {}};
    engine.service->requestAccess(QStringLiteral("Music"));
    engine.desktop.runLoop.settle();
    QVERIFY(engine.desktop.workspace.opened.isEmpty());
    engine.desktop.scripts.outcomes[probe] = {{}, -1743, {}};
    engine.service->requestAccess(QStringLiteral("Music"));
    engine.desktop.runLoop.settle();
    QCOMPARE(engine.desktop.workspace.opened,
             QStringList(QStringLiteral(
                 "x-apple.systempreferences:com.apple.preference.security?Privacy_Automation")));
}

QTEST_GUILESS_MAIN(CommandsTest)
#include "commands_test.moc"
