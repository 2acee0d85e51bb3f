#include "EngineFixture.h"
#include "engine/ArtworkImage.h"
#include "engine/ArtworkSearch.h"
#include "support/HttpStandIn.h"
#include "support/Picture.h"

#include <QtTest>

namespace {

using Manner = HttpStandIn::Manner;

} // namespace

class ArtworkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _server = std::make_unique<HttpStandIn>();
        _engine = std::make_unique<EngineFixture>();
        _engine->defaults.setObject(u"com.orvalen.pellar.endpoint.artworkSearch"_s, _server->address());
        const QByteArray address = _server->address().toLatin1();
        _server->answer("/search", {.body = "{\"results\": [{\"artworkUrl100\": \"" + address +
                                            "/100x100/a-100x100.png\"}]}"});
        _server->answer("/600x600/a-600x600.png", {.body = pictureFile(Qt::blue)});
        _server->answer("/green", {.body = pictureFile(Qt::green)});
    }

    void chooses()
    {
        const QByteArray three = "{'artworkUrl100': 'http://h/1'},"
                                 "{'artworkUrl100': 'http://h/2', 'collectionName': 'THE SEA (Deluxe) é'},"
                                 "{'artworkUrl100': 'http://h/3', 'collectionName': 'the sea'}";
        const std::vector<std::tuple<QByteArray, QString, QString>> rows = {
            // results, album, what is chosen
            {three, u"The Sea"_s, u"http://h/2"_s},
            {three, u"(deluxe) e\u0301"_s, u"http://h/2"_s}, // the accent composed otherwise
            {three, u""_s, u"http://h/1"_s},
            {"{'collectionName': 'Sea'}, {'artworkUrl100': 'http://h/2'}", u"Sea"_s, u""_s},
            {"{'artworkUrl100': 'file:///etc/hostname'}", u""_s, u""_s}};
        for (const auto& [results, album, chosen] : rows) {
            QByteArray reply = "{'results': [" + results + "]}";
            const auto artwork = chosenArtwork(reply.replace('\'', '"'), album);
            QCOMPARE(artwork.value_or(QUrl()).toString(), chosen);
        }
        QVERIFY(!chosenArtwork("<html>", QString()));
    }

    void loads()
    {
        // An Exif block with one entry, orientation 6: the camera was held on its side.
        const auto turned =
            QByteArray::fromHex("ffe1002245786966000049492a0008000000010012010300010000000600000000000000");
        const std::vector<std::pair<QString, QSize>> rows = {
            {addressOf(pictureFile(Qt::red, {2400, 1200}, "jpg")), {600, 300}},
            {addressOf(pictureFile(Qt::red, {1200, 800}, "jpg").insert(2, turned)), {400, 600}},
            {addressOf(pictureFile(Qt::black, {5000, 5000}, "png", QImage::Format_Mono)),
             {0, 0}}, // too large
            {addressOf(pictureFile(Qt::red, {300, 300}).left(200)), {0, 0}},
            {u"data:image/png,"_s + QString::fromLatin1(pictureFile(Qt::red).toPercentEncoding()), {8, 8}},
            {u"file:///dev/zero"_s, {0, 0}}};
        for (const auto& [address, size] : rows) {
            QCOMPARE(loadArtwork(address, {}).size(), size);
        }
    }

    void searchesForMusic()
    {
        playMusic(u"Ein & Aus?|||Björk|||Album"_s);
        QTRY_COMPARE(shown(), QColor(Qt::blue));
        QTRY_VERIFY(_engine->theme->tint() && _engine->theme->tint()->hue() == QColor(Qt::blue).hue());
        for (const auto& album : {u"Album"_s, u"Other"_s, u"Other"_s}) { // a search for each album
            playMusic(u"Ein & Aus?|||Björk|||"_s + album);
        }
        QTRY_COMPARE(_server->requestCount(), 4);
        const QByteArray song = "term=Bj%C3%B6rk%20Ein%20%26%20Aus%3F&media=music&entity=song&limit=5";
        const QByteArray cover = "/600x600/a-600x600.png";
        QByteArrayList requested;
        for (const HttpStandIn::Request& request : _server->take()) {
            requested << (request.query.isEmpty() ? request.path : request.query);
        }
        QCOMPARE(requested, (QByteArrayList{song, cover, song, cover}));
    }

    void prefersThePlayersCover()
    {
        for (const auto& [path, color] : {std::pair(u"/green", Qt::green), std::pair(u"/gone", Qt::blue)}) {
            _engine->desktop.workspace.artworks.insert(BundleId::music, _server->address() + path);
            playMusic(u"Song|||Band|||Album"_s);
            QTRY_COMPARE(shown(), QColor(color));
        }
    }

    void triesAgainAfterFailure()
    {
        _server->answer("/600x600/a-600x600.png", {.body = "<html>"});
        playMusic(u"Song|||Band|||Album"_s);
        QTRY_COMPARE(_server->requestCount(), 2);
        _server->answer("/600x600/a-600x600.png", {.body = pictureFile(Qt::blue)});
        QTRY_COMPARE((_engine->service->refresh(), shown()), QColor(Qt::blue));
    }

    void loadsForSpotify()
    {
        _engine->start();
        notifySpotify(u"Wave"_s);
        QTRY_COMPARE(shown(), QColor(Qt::green));
        notifySpotify(u"Another of the same album"_s);
        _engine->service->nextTrack();
        notifySpotify(u"Fetched anew after a skip"_s);
        QTRY_COMPARE(_server->requestCount(), 2);
    }

    /// Music's cover is asked for a little after its track has begun; by then another player may have taken
    /// over.
    void looksUpForThePlayerOnShow()
    {
        _engine->start();
        for (const QString& state : {u"Playing"_s, u"Paused"_s}) {
            _engine->notify(Player::appleMusic, {{u"Player State"_s, state}, {u"Name"_s, u"Song"_s}});
        }
        notifySpotify(u"Wave"_s);
        const int questions = _engine->desktop.workspace.artworkQuestions;
        _engine->desktop.runLoop.advance(0.2);
        QCOMPARE(_engine->desktop.workspace.artworkQuestions, questions);
        QTRY_COMPARE(shown(), QColor(Qt::green));
    }

    /// One that comes when its player is gone, and one that was given up for another track.
    void discardsLateCover()
    {
        _server->answer("/green", {.body = pictureFile(Qt::green), .manner = Manner::held});
        _engine->start();
        QList<QColor> seen;
        const QObject watch;
        connect(_engine->service.get(), &NowPlayingService::artworkChanged, &watch, [&] { seen << shown(); });
        notifySpotify(u"Wave"_s);
        QTRY_COMPARE(_server->requestCount(), 1);
        _engine->service->refresh(); // it does not run
        _server->release();
        QTRY_COMPARE(_server->connectionCount(), 0);
        _engine->desktop.workspace.artworks.insert(BundleId::music, _server->address() + u"/green");
        playMusic(u"Song|||Band|||Album"_s);
        QTRY_COMPARE(_server->requestCount(), 2);
        _engine->desktop.workspace.artworks.clear();
        playMusic(u"Other|||Band|||Album"_s);
        QTRY_COMPARE(seen, QList{QColor(Qt::blue)});
    }

    void doesNotHoldUpTheEnd()
    {
        _server->answer("/search", {.manner = Manner::held});
        for (const char* title : {"One", "Two", "Three"}) {
            playMusic(QLatin1String(title) + u"|||Band|||Album"_s);
        }
        QTRY_COMPARE(_server->requestCount(), 1);
        QElapsedTimer watch;
        watch.start();
        _engine->service.reset();
        QVERIFY2(watch.elapsed() < 2000, "waited for the server");
    }

private:
    /// "Title|||Artist|||Album"
    void playMusic(const QString& fields) const
    {
        _engine->reply(Player::appleMusic, fields + u"|||200|||1|||true|||7"_s);
        _engine->service ? _engine->service->refresh() : _engine->start();
    }

    void notifySpotify(const QString& title) const
    {
        _engine->notify(Player::spotify, {{u"Player State"_s, u"Playing"_s},
                                          {u"Name"_s, title},
                                          {u"Artwork URL"_s, QString(_server->address() + u"/green")}});
    }

    QColor shown() const
    {
        const QImage artwork = _engine->service->artwork();
        return artwork.isNull() ? QColor() : artwork.pixelColor(0, 0);
    }

    std::unique_ptr<HttpStandIn> _server;
    std::unique_ptr<EngineFixture> _engine;
};

QTEST_MAIN(ArtworkTest)
#include "artwork_test.moc"
