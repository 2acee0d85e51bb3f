#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "lyrics/LyricsService.h"
#include "support/HttpStandIn.h"
#include "support/LogFile.h"
#include "support/ManualRunLoop.h"
#include "support/MemoryDefaults.h"

#include <QTest>

using Answer = HttpStandIn::Answer;
using Manner = HttpStandIn::Manner;
using SyncedLines = QList<SyncedLyric>;

namespace {

const QByteArray exact = "/api/get";
const QByteArray fuzzy = "/api/search";
const Answer found{.body = R"({"plainLyrics":"née","syncedLyrics":"[00:01]a\n[00:02]b"})"};
const Answer foundList{.body = R"([{"plainLyrics":"first"},{"plainLyrics":"second"}])"};
const QString foundText = QStringLiteral("2 synced, plain née");

} // namespace

/// The requests are as a server on loopback saw them.
class LyricsServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void asksAsTold();
    void endsAs_data();
    void endsAs();
    void answersFromCache();
    void takesAppleMusicFirst();
    void ignoresLateAnswers_data();
    void ignoresLateAnswers();
    void givesUpInTime();
    void asksAgainAfterSignIn();
    void needsAnAddress();

private:
    void fetch(const char* title, const char* artist = "B", const char* album = "C")
    {
        _service->fetch(QString::fromUtf8(title), QString::fromUtf8(artist), QString::fromUtf8(album));
    }
    QByteArrayList paths()
    {
        QByteArrayList result;
        for (const auto& request : _server->take()) {
            result << request.path;
        }
        return result;
    }
    QString shown() const
    {
        const auto lyrics = _service->current();
        if (!lyrics) {
            return QStringLiteral("none");
        }
        return QStringLiteral("%1 synced, plain %2")
            .arg(lyrics->synced.size())
            .arg(lyrics->plain.value_or(QString()));
    }
    std::unique_ptr<LyricsService> makeService(RunLoop& runLoop)
    {
        return std::make_unique<LyricsService>(
            runLoop, _notifications, _defaults,
            [&runLoop, this](const auto&, QObject* context, auto completion) {
                runLoop.after(0, context, [this, completion] { completion(_appleMusic); });
            });
    }

    LogFile _log;
    EventLoop _runLoop;
    NotificationCenter _notifications;
    MemoryDefaults _defaults;
    std::unique_ptr<HttpStandIn> _server;
    std::optional<SyncedLines> _appleMusic; ///< what it answers
    std::unique_ptr<LyricsService> _service;
};

void LyricsServiceTest::init()
{
    _server = std::make_unique<HttpStandIn>();
    _defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.lyrics"), _server->address());
    _appleMusic.reset();
    _service = makeService(_runLoop);
    _log.take();
}

void LyricsServiceTest::asksAsTold()
{
    _service = std::make_unique<LyricsService>(_runLoop, _notifications, _defaults,
                                               [apple = std::make_shared<AppleMusicLyricsService>(_runLoop)](
                                                   const auto&... asked) { apple->fetch(asked...); });
    fetch("A+B & Ü", "x=y;#", "50% ?/ 夜");
    QVERIFY(_service->isLoading());
    QCOMPARE(shown(), QStringLiteral("none"));
    QTRY_VERIFY(!_service->isLoading());
    const auto requests = _server->take();
    QCOMPARE(requests.size(), 2);
    const QByteArray track = "track_name=A%2BB%20%26%20%C3%9C&artist_name=x%3Dy%3B%23";
    const QByteArray album = "&album_name=50%25%20%3F%2F%20%E5%A4%9C";
    QCOMPARE(requests[0].path, exact);
    QCOMPARE(requests[0].query, track + album);
    QCOMPARE(requests[1].path, fuzzy);
    QCOMPARE(requests[1].query, track);
    for (const auto& request : requests) {
        QCOMPARE(request.method, QByteArray("GET"));
        QVERIFY(request.headers.value("user-agent").startsWith("Pellar/1.0 (http"));
    }
    const QString lookUps =
        QStringLiteral("Lyrics: GET %1 ") + _server->address() + QStringLiteral("/api/%2?%3");
    const QString query = QString::fromLatin1(track);
    QCOMPARE(
        _log.take(),
        QStringList(
            {QStringLiteral("Lyrics: fetch start: title=A+B & Ü artist=x=y;# album=50% ?/ 夜"),
             QStringLiteral("Lyrics: Apple Music miss — falling back to lrclib"),
             lookUps.arg(QStringLiteral("exact"), QStringLiteral("get"), query + QString::fromLatin1(album)),
             QStringLiteral("Lyrics: exact status=404 bytes=8"),
             lookUps.arg(QStringLiteral("fuzzy"), QStringLiteral("search"), query),
             QStringLiteral("Lyrics: fuzzy status=404 bytes=8"), QStringLiteral("Lyrics: fuzzy miss")}));
}

void LyricsServiceTest::endsAs_data()
{
    QTest::addColumn<Answer>("exactAnswer");
    QTest::addColumn<Answer>("fuzzyAnswer");
    QTest::addColumn<QString>("lyrics");
    QTest::addColumn<QString>("lastLine");
    const auto row = [](const char* name, const Answer& first, const Answer& second, const QString& lyrics,
                        const char* line) {
        QTest::newRow(name) << first << second << lyrics
                            << QStringLiteral("Lyrics: ") + QString::fromUtf8(line);
    };
    const auto text = [](const char* body) { return Answer{.body = body}; };
    const QString empty = QStringLiteral("0 synced, plain ");
    const QString first = QStringLiteral("0 synced, plain first");
    const char* const miss = "fuzzy miss";
    const char* const fuzzyHit = "fuzzy hit (2 total): synced=0 plainLen=5";
    row("exact", found, {}, foundText, "exact hit: synced=2 plainLen=3");
    row("exact, letters of several code units", text(R"({"plainLyrics":"e\u0301\ud83d\ude00"})"), {},
        QStringLiteral("0 synced, plain e\u0301😀"), "exact hit: synced=0 plainLen=2");
    row("exact, nulls", text(R"({"plainLyrics":null,"syncedLyrics":null})"), {}, empty,
        "exact hit: synced=0 plainLen=0");
    row("exact, wrong types", text(R"({"plainLyrics":["x"],"syncedLyrics":5})"), {}, empty,
        "exact hit: synced=0 plainLen=0");
    row("not found", {.status = 404, .body = found.body}, foundList, first, fuzzyHit);
    row("broken JSON", text(R"({"plainLyrics":"x")"), foundList, first, fuzzyHit);
    row("a list for an object", foundList, foundList, first, fuzzyHit);
    row("cut off", {.body = found.body, .manner = Manner::cutOff}, foundList, first, fuzzyHit);
    row("nothing found", text("[]"), text("[]"), empty, miss);
    row("an object for a list", text("[]"), found, empty, miss);
    row("a list of other things", text("[]"), text(R"([{"plainLyrics":"x"},1])"), empty, miss);
    row("server errors", {.status = 500}, {.status = 503, .body = foundList.body}, empty, miss);
}

void LyricsServiceTest::endsAs()
{
    QFETCH(Answer, exactAnswer);
    QFETCH(Answer, fuzzyAnswer);
    _server->answer(exact, exactAnswer);
    _server->answer(fuzzy, fuzzyAnswer);
    fetch("A");
    QTRY_VERIFY(!_service->isLoading());
    QTEST(shown(), "lyrics");
    QCOMPARE(_service->current()->trackTitle, QStringLiteral("A"));
    QCOMPARE(_service->current()->artist, QStringLiteral("B"));
    const QStringList log = _log.take();
    QTEST(log.last(), "lastLine");
    QCOMPARE(!log.filter(QStringLiteral("exact ERROR: ")).isEmpty(), exactAnswer.manner != Manner::whole);
}

void LyricsServiceTest::answersFromCache()
{
    fetch("Ä");
    QTRY_VERIFY(!_service->isLoading());
    _server->answer(exact, found);
    fetch("A");
    QTRY_VERIFY(!_service->isLoading());
    _server->take();
    fetch("ä", "b", "c"); // the miss is remembered
    QCOMPARE(shown(), QStringLiteral("0 synced, plain "));
    fetch("a", "b", "c");
    QCOMPARE(shown(), foundText);
    fetch("", "B");
    QCOMPARE(shown(), QStringLiteral("none"));
    fetch("A", "");
    QVERIFY(!_service->isLoading());
    fetch("A", "B", "other album");
    QTRY_VERIFY(!_service->isLoading());
    QCOMPARE(paths(), {exact});
}

void LyricsServiceTest::takesAppleMusicFirst()
{
    _server->answer(exact, found);
    _appleMusic = SyncedLines({{.time = 1, .text = QStringLiteral("x")}});
    fetch("A");
    QTRY_VERIFY(!_service->isLoading());
    QCOMPARE(shown(), QStringLiteral("1 synced, plain "));
    QCOMPARE(_log.take().last(), QStringLiteral("Lyrics: Apple Music hit: 1 lines"));
    QCOMPARE(paths(), QByteArrayList());
    _appleMusic = SyncedLines();
    fetch("B");
    QTRY_VERIFY(!_service->isLoading());
    QCOMPARE(shown(), foundText);
}

void LyricsServiceTest::ignoresLateAnswers_data()
{
    QTest::addColumn<QByteArray>("held");
    QTest::addColumn<QString>("next");
    QTest::addColumn<QString>("lyrics");
    QTest::newRow("exact, another track") << exact << QStringLiteral("Cached") << foundText;
    QTest::newRow("fuzzy, no track") << fuzzy << QString() << QStringLiteral("none");
}

void LyricsServiceTest::ignoresLateAnswers()
{
    QFETCH(QByteArray, held);
    QFETCH(QString, next);
    _server->answer(exact, found);
    fetch("Cached");
    QTRY_VERIFY(!_service->isLoading());
    _server->answer(exact, {.status = 404});
    _server->answer(held, {.body = R"([{"plainLyrics":"late"}])", .manner = Manner::held});
    _server->take();
    fetch("Slow");
    QTRY_VERIFY(_server->wasAsked(held));
    _log.take();
    _server->release(); // the answer is on its way when it is not wanted any more
    _service->fetch(next, QStringLiteral("B"), QStringLiteral("C"));
    QTEST(shown(), "lyrics");
    bool isLater = false;
    HttpClient client(_runLoop);
    HttpRequest probe;
    probe.url = QUrl(_server->address());
    const auto call = client.send(probe, this, [&](const HttpReply&) { isLater = true; });
    QTRY_VERIFY(isLater);
    QTEST(shown(), "lyrics");
    QCOMPARE(_log.take(), QStringList());
    _server->answer(exact, {.manner = Manner::held});
    fetch("Slow"); // nor was it remembered
    QVERIFY(_service->isLoading());
}

void LyricsServiceTest::givesUpInTime()
{
    ManualRunLoop clock;
    _service = makeService(clock);
    _server->answer(exact, {.body = found.body, .manner = Manner::held});
    fetch("A");
    clock.settle();
    QTRY_COMPARE(_server->requestCount(), 1);
    clock.advance(14.9);
    QVERIFY(!_log.take().last().contains(QStringLiteral("exact ERROR")));
    clock.advance(0.2);
    QTRY_VERIFY(_server->wasAsked(fuzzy));
    QVERIFY(_log.take().contains(QStringLiteral("Lyrics: exact ERROR: no answer within 15 seconds")));
    _service.reset(); // before its clock
}

void LyricsServiceTest::asksAgainAfterSignIn()
{
    const QString signIn = QStringLiteral("com.orvalen.pellar.appleMusicAuthChanged");
    _notifications.post(signIn); // nothing to fetch yet
    fetch("A");
    QTRY_VERIFY(!_service->isLoading());
    _server->answer(exact, found);
    _server->take();
    _notifications.post(signIn);
    QVERIFY(_service->isLoading());
    QTRY_COMPARE(shown(), foundText);
    QCOMPARE(paths(), {exact});
    QCOMPARE(
        _log.take().filter(QStringLiteral("Lyrics: auth changed — flushing cache, refetching active")).size(),
        2);
}

void LyricsServiceTest::needsAnAddress()
{
    _defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.lyrics"), QStringLiteral("nowhere"));
    fetch("A");
    QTRY_VERIFY(!_service->isLoading());
    QCOMPARE(shown(), QStringLiteral("none"));
}

QTEST_GUILESS_MAIN(LyricsServiceTest)
#include "lyrics_service_test.moc"
