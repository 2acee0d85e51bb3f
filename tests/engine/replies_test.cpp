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
    void numbers_data();
    void numbers();
    void reaction_data();
    void reaction();
    void upNext_data();
    void upNext();
};

void RepliesTest::status_data()
{
    using Expected = std::optional<PlayerStatus>;
    QTest::addColumn<QString>("reply");
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
    row("stopped", music, "STOPPED", {});
    row("nothing", music, "", {});
    row("five fields", music, "Song||| Band |||Álbum|||215.5|||12.5", {});
    row("six fields", music, "Song||| Band |||Álbum|||215.5|||12.5|||true", song(215.5, true));
    row("seconds", music, "Song||| Band |||Álbum|||215.5|||12.5|||true|||77", song(215.5, true));
    row("milliseconds", spotify, "Song||| Band |||Álbum|||215000|||12.5|||true|||https://a/b",
        song(215, true, url));
    row("padded address", spotify, "Song||| Band |||Álbum|||0|||12.5|||false||| \thttps://a/b\r\n",
        song(0, false, url));
    row("blank address", spotify, "Song||| Band |||Álbum|||0|||12.5|||true||| \n ", song(0, true));
    row("no address", spotify, "Song||| Band |||Álbum|||0|||12.5|||true", song(0, true));
    row("capital True", music, "Song||| Band |||Álbum|||0|||12.5|||True", song(0, false));
    row("padded true", music, "Song||| Band |||Álbum|||0|||12.5||| true", song(0, false));
    row("separator in the title", music, "A|||B|||C|||D|||12.5|||9|||true",
        PlayerStatus{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"), 0, 12.5, false, {}});
    row("empty fields", music, "|||||||||||||||", PlayerStatus{});
}

void RepliesTest::status()
{
    QFETCH(const QString, reply);
    QFETCH(const Player, player);
    QTEST(parseStatusReply(reply, player), "expected");
}

void RepliesTest::numbers_data()
{
    QTest::addColumn<double>("expected");
    QTest::newRow("12.0") << 12.0;
    QTest::newRow("-1.5e2") << -150.0;
    QTest::newRow(" 12.0") << 0.0;
    QTest::newRow("12.0 ") << 0.0;
    QTest::newRow("\t1") << 0.0;
    QTest::newRow("12,5") << 0.0;
    QTest::newRow("1 000") << 0.0;
    QTest::newRow("missing value") << 0.0;
    QTest::newRow("nan") << 0.0;
    QTest::newRow("inf") << 0.0;
    QTest::newRow("1e999") << 0.0;
}

void RepliesTest::numbers()
{
    const QString number = QString::fromLatin1(QTest::currentDataTag());
    const auto status =
        parseStatusReply(QStringLiteral("S|||B|||A|||%1|||%1|||true").arg(number), Player::appleMusic);
    QVERIFY(status.has_value());
    QTEST(status->position, "expected");
    QTEST(status->duration, "expected");
}

void RepliesTest::reaction_data()
{
    QTest::addColumn<std::optional<QString>>("reply");
    QTest::addColumn<TrackReaction>("expected");
    const auto row = [](const char* reply, bool loved, bool disliked) {
        QTest::newRow(reply) << std::optional(QString::fromLatin1(reply)) << TrackReaction{loved, disliked};
    };
    QTest::newRow("none") << std::optional<QString>() << TrackReaction{};
    row("", false, false);
    row("true|false", true, false);
    row("false|true", false, true);
    row(" true \n|\ttrue", true, true);
    row("true", true, false);
    row("|true", false, true);
    row("True|TRUE", false, false);
    row("true|true|false", true, true);
}

void RepliesTest::reaction()
{
    QFETCH(const std::optional<QString>, reply);
    QTEST(parseReactionReply(reply), "expected");
}

void RepliesTest::upNext_data()
{
    using Tracks = QList<UpNextTrack>;
    QTest::addColumn<std::optional<QString>>("reply");
    QTest::addColumn<Tracks>("expected");
    const auto row = [](const char* name, const char* reply, const Tracks& expected) {
        QTest::newRow(name) << std::optional(QString::fromUtf8(reply)) << expected;
    };
    const auto track = [](qint64 index, const char* title, const char* artist) {
        return UpNextTrack{QString::fromUtf8(title), QString::fromUtf8(artist), index};
    };
    QTest::newRow("none") << std::optional<QString>() << Tracks();
    row("empty", "", {});
    row("in order", "3|||B|||b###2|||Á|||a###", {track(3, "B", "b"), track(2, "Á", "a")});
    row("signs and blanks", " +3 ||| B |||b###\n-4\t|||A|||a", {track(3, " B ", "b"), track(-4, "A", "a")});
    row("two fields", "3|||B###4|||A|||a###", {track(4, "A", "a")});
    row("more fields", "3|||B|||b|||c###", {track(3, "B", "b")});
    row("empty fields", "3||||||###", {track(3, "", "")});
    row("broken by its title", "3|||B###C|||b###4|||A|||a###", {track(4, "A", "a")});
    row("no index",
        "x|||B|||b###|||B|||b###1.0|||B|||b###0x1|||B|||b###1 2|||B|||b###+-1|||B|||b###"
        "- 1|||B|||b###1,000|||B|||b###٣|||B|||b###99999999999999999999|||B|||b###",
        {});
    row("beyond 32 bits", "4294967298|||B|||b", {track(4294967298, "B", "b")});
}

void RepliesTest::upNext()
{
    QFETCH(const std::optional<QString>, reply);
    QTEST(parseUpNextReply(reply), "expected");
}

QTEST_GUILESS_MAIN(RepliesTest)
#include "replies_test.moc"
