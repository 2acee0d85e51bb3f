#include "engine/PlayerStatus.h"
#include "engine/TrackReaction.h"
#include "engine/UpNextReply.h"

#include <QtTest>

/// What the engine reads out of the replies of its scripts.
class RepliesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void status_data();
    void status();
    void numbers();
    void reaction();
    void upNext_data();
    void upNext();
};

void RepliesTest::status_data()
{
    using Expected = std::optional<PlayerStatus>;
    QTest::addColumn<QString>("reply"); // the fields behind the album
    QTest::addColumn<Player>("player");
    QTest::addColumn<Expected>("expected");
    const auto row = [](const char* name, Player player, const char* reply, const Expected& expected) {
        QTest::newRow(name) << QString::fromUtf8(reply) << player << expected;
    };
    const auto song = [](double duration, bool isPlaying, std::optional<QString> artworkUrl = {}) {
        return PlayerStatus{QStringLiteral("Song"),
                            QStringLiteral(" Band "),
                            QStringLiteral("Álbum"),
                            duration,
                            12.5,
                            isPlaying,
                            std::move(artworkUrl)};
    };
    constexpr Player music = Player::appleMusic;
    constexpr Player spotify = Player::spotify;
    const QString url = QStringLiteral("https://a/b");
    row("five fields", music, "|||215.5|||12.5", {});
    row("six fields", music, "|||215.5|||12.5|||true", song(215.5, true));
    row("seconds", music, "|||215.5|||12.5|||true|||77", song(215.5, true));
    row("milliseconds", spotify, "|||215000|||12.5|||true|||https://a/b", song(215, true, url));
    row("padded address", spotify, "|||0|||12.5|||false||| \thttps://a/b\r\n", song(0, false, url));
    row("blank address", spotify, "|||0|||12.5|||true||| \n ", song(0, true));
    row("no address", spotify, "|||0|||12.5|||true", song(0, true));
    row("capital True", music, "|||0|||12.5|||True", song(0, false));
    row("padded true", music, "|||0|||12.5||| true", song(0, false));
}

void RepliesTest::status()
{
    QFETCH(const QString, reply);
    QFETCH(const Player, player);
    QTEST(parseStatusReply(QStringLiteral("Song||| Band |||Álbum") + reply, player), "expected");
    QCOMPARE(parseStatusReply(QStringLiteral("STOPPED"), player), std::nullopt);
    QCOMPARE(parseStatusReply(QString(), player), std::nullopt);
}

void RepliesTest::numbers()
{
    const auto read = [](const char* number) {
        const auto status =
            parseStatusReply(QStringLiteral("S|||B|||A|||%1|||%1|||true").arg(QString::fromLatin1(number)),
                             Player::appleMusic);
        return status && status->position == status->duration ? status->position : -1;
    };
    QCOMPARE(read("12.0"), 12.0);
    QCOMPARE(read("-1.5e2"), -150.0);
    for (const char* const none :
         {" 12.0", "12.0 ", "12,5", "1 000", "missing value", "nan", "inf", "1e999"}) {
        QVERIFY2(read(none) == 0, none);
    }
}

void RepliesTest::reaction()
{
    const auto read = [](const char* reply) { return parseReactionReply(QString::fromLatin1(reply)); };
    QCOMPARE(parseReactionReply(std::nullopt), TrackReaction());
    QCOMPARE(read(""), TrackReaction());
    QCOMPARE(read("True|TRUE"), TrackReaction());
    QCOMPARE(read("true|false"), (TrackReaction{true, false}));
    QCOMPARE(read("|true"), (TrackReaction{false, true}));
    QCOMPARE(read(" true \n|\ttrue|false"), (TrackReaction{true, true}));
}

void RepliesTest::upNext_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QList<UpNextTrack>>("expected");
    const auto row = [](const char* name, const char* reply, const QList<UpNextTrack>& expected) {
        QTest::newRow(name) << QString::fromUtf8(reply) << expected;
    };
    const auto track = [](qint64 index, const char* title, const char* artist) {
        return UpNextTrack{QString::fromUtf8(title), QString::fromUtf8(artist), index};
    };
    row("in order", "3|||B|||b###2|||Á|||a###", {track(3, "B", "b"), track(2, "Á", "a")});
    row("signs and blanks", " +3 ||| B |||b###\n-4\t|||A|||a", {track(3, " B ", "b"), track(-4, "A", "a")});
    row("two fields, then four", "3|||B###4|||A|||a|||c###", {track(4, "A", "a")});
    row("empty fields", "3||||||###", {track(3, "", "")});
    row("broken by its title", "3|||B###C|||b###4|||A|||a###", {track(4, "A", "a")});
    row("no index", "x|||B|||b###|||B|||b###1.0|||B|||b###1 2|||B|||b###99999999999999999999|||B|||b", {});
    row("beyond 32 bits", "4294967298|||B|||b", {track(4294967298, "B", "b")});
}

void RepliesTest::upNext()
{
    QFETCH(const QString, reply);
    QTEST(parseUpNextReply(reply), "expected");
    QVERIFY(parseUpNextReply(std::nullopt).isEmpty());
}

QTEST_GUILESS_MAIN(RepliesTest)
#include "replies_test.moc"
