#include "EngineFixture.h"
#include "engine/ArtworkImage.h"
#include "engine/ArtworkSearch.h"
#include "support/HttpStandIn.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace {

using Manner = HttpStandIn::Manner;

QByteArray picture(const QColor& color, QSize size = {8, 8}, const char* format = "png",
                   QImage::Format pixels = QImage::Format_RGB32)
{
    QImage image(size, pixels);
    image.fill(color);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

/// A JPEG picture whose camera was held on its side.
QByteArray turnedPicture(QSize size)
{
    // An Exif block with one entry: orientation 6.
    static const QByteArray turned =
        QByteArray::fromHex("ffe1002245786966000049492a0008000000010012010300010000000600000000000000");
    return picture(Qt::red, size, "jpg").insert(2, turned);
}

} // namespace

class ArtworkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void chooses_data();
    void chooses();
    void decodes_data();
    void decodes();
    void loads_data();
    void loads();
    void searchesForMusic();
    void prefersThePlayersCover();
    void triesAgainAfterFailure();
    void discardsLateCover();
    void loadsForSpotify();
    void doesNotHoldUpTheEnd();

private:
    void playMusic(const QString& fields) const;
    QColor shown() const
    {
        const QImage artwork = _engine->service->artwork();
        return artwork.isNull() ? QColor() : artwork.pixelColor(0, 0);
    }
    QByteArrayList requested();

    std::unique_ptr<HttpStandIn> _server;
    std::unique_ptr<EngineFixture> _engine;
};

void ArtworkTest::init()
{
    _server = std::make_unique<HttpStandIn>();
    _engine = std::make_unique<EngineFixture>();
    _engine->defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.artworkSearch"),
                                _server->address());
    const QString found = QStringLiteral(R"({"results": [{"artworkUrl100": "%1/100x100/a-100x100.png"}]})")
                              .arg(_server->address());
    _server->answer("/search", {.body = found.toLatin1()});
    _server->answer("/600x600/a-600x600.png", {.body = picture(Qt::blue)});
    _server->answer("/green", {.body = picture(Qt::green)});
}

/// "Title|||Artist|||Album"
void ArtworkTest::playMusic(const QString& fields) const
{
    _engine->reply(Player::appleMusic, fields + QStringLiteral("|||200|||1|||true|||7"));
    if (_engine->service) {
        _engine->service->refresh();
    } else {
        _engine->start();
    }
}

QByteArrayList ArtworkTest::requested()
{
    QByteArrayList targets;
    for (const HttpStandIn::Request& request : _server->take()) {
        targets << (request.query.isEmpty() ? request.path : request.path + '?' + request.query);
    }
    return targets;
}

void ArtworkTest::chooses_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("album");
    QTest::addColumn<QString>("chosen");
    const QByteArray three = R"({"results": [{"artworkUrl100": "http://h/1"},
        {"artworkUrl100": "http://h/2", "collectionName": "THE SEA (Deluxe) é"},
        {"artworkUrl100": "http://h/3", "collectionName": "the sea"}]})";
    const auto row = [](const char* name, const QByteArray& reply, const char* album, const char* chosen) {
        QTest::newRow(name) << reply << QString::fromUtf8(album) << QString::fromLatin1(chosen);
    };
    row("album", three, "The Sea", "http://h/2");
    row("accent composed otherwise", three, "(deluxe) e\u0301", "http://h/2");
    row("another album", three, "The Shore", "http://h/1");
    row("no album", three, "", "http://h/1");
    row("chosen without cover",
        R"({"results": [{"collectionName": "Sea"}, {"artworkUrl100": "http://h/2"}]})", "Sea", "");
    row("nothing found", R"({"results": []})", "", "");
    row("no objects", R"({"results": [{"artworkUrl100": "http://h/1"}, 2]})", "", "");
    row("list", R"([{"artworkUrl100": "http://h/1"}])", "", "");
    row("no JSON", "<html>", "", "");
    row("file of this computer", R"({"results": [{"artworkUrl100": "file:///etc/hostname"}]})", "", "");
}

void ArtworkTest::chooses()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, album);
    QTEST(chosenArtwork(reply, album).value_or(QUrl()).toString(), "chosen");
}

void ArtworkTest::decodes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << picture(Qt::red, {7, 5}) << QSize(7, 5);
    QTest::newRow("wide") << picture(Qt::red, {2400, 1200}, "jpg") << QSize(600, 300);
    QTest::newRow("a line") << picture(Qt::red, {6000, 1}) << QSize(600, 1);
    QTest::newRow("on its side") << turnedPicture({40, 20}) << QSize(20, 40);
    QTest::newRow("large, on its side") << turnedPicture({1200, 800}) << QSize(400, 600);
    QTest::newRow("bitmap") << picture(Qt::red, {9, 9}, "bmp") << QSize(9, 9);
    QTest::newRow("too large") << picture(Qt::black, {5000, 5000}, "png", QImage::Format_Mono) << QSize(0, 0);
    QTest::newRow("cut short") << picture(Qt::red, {300, 300}).left(200) << QSize(0, 0);
    QTest::newRow("no image") << QByteArray("<html>") << QSize(0, 0);
    QTest::newRow("nothing") << QByteArray() << QSize(0, 0);
}

void ArtworkTest::decodes()
{
    QFETCH(QByteArray, content);
    QTEST(decodeArtwork(content).size(), "size");
}

void ArtworkTest::loads_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isImage");
    const auto row = [](const char* name, const QString& address, bool isImage = false) {
        QTest::newRow(name) << address << isImage;
    };
    const QString base64 = QString::fromLatin1(picture(Qt::red).toBase64());
    row("data", QStringLiteral("data:image/png;base64,") + base64, true);
    row("data, encoded for addresses",
        u"data:;BASE64," + QString::fromLatin1(base64.toLatin1().toPercentEncoding()), true);
    row("data without comma", QStringLiteral("data:image/png;base64"));
    row("file", QStringLiteral("file://%1/a b%23.png"), true);
    row("no file", QStringLiteral("file://%1/none"));
    row("folder", QStringLiteral("file://%1"));
    row("pipe", QStringLiteral("file://%1/pipe"));
    row("device", QStringLiteral("file:///dev/zero"));
    row("another scheme", QStringLiteral("ftp://127.0.0.1/a.png"));
    row("no address", QStringLiteral("cover"));
}

void ArtworkTest::loads()
{
    QFETCH(QString, address);
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a b#.png")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(picture(Qt::red)) > 0);
    file.close();
    QCOMPARE(mkfifo(QFile::encodeName(folder.filePath(QStringLiteral("pipe"))).constData(), S_IRUSR), 0);
    QTEST(!loadArtwork(address.replace(QStringLiteral("%1"), folder.path()), {}).isNull(), "isImage");
}

void ArtworkTest::searchesForMusic()
{
    playMusic(QStringLiteral("Ein & Aus?|||Björk|||Album"));
    QTRY_COMPARE(shown(), QColor(Qt::blue));
    QTRY_VERIFY(_engine->theme.tint());
    playMusic(QStringLiteral("Ein & Aus?|||Björk|||Album"));
    playMusic(QStringLiteral("Ein & Aus?|||Björk|||Other"));
    playMusic(QStringLiteral("Ein & Aus?|||Björk|||Other"));
    playMusic(QStringLiteral("End|||Nobody|||"));
    const QByteArray song = "/search?term=Bj%C3%B6rk%20Ein%20%26%20Aus%3F&media=music&entity=song&limit=5";
    const QByteArray cover = "/600x600/a-600x600.png";
    const QByteArray end = "/search?term=Nobody%20End&media=music&entity=song&limit=5";
    QTRY_COMPARE(_server->requestCount(), 6);
    QCOMPARE(requested(), (QByteArrayList{song, cover, song, cover, end, cover}));
}

void ArtworkTest::prefersThePlayersCover()
{
    QString& cover = _engine->desktop.workspace.artworks[BundleId::music];
    cover = _server->address() + QStringLiteral("/green");
    playMusic(QStringLiteral("Song|||Band|||Album"));
    QTRY_COMPARE(shown(), QColor(Qt::green));
    QCOMPARE(requested(), QByteArrayList{"/green"});

    cover = _server->address() + QStringLiteral("/gone");
    playMusic(QStringLiteral("Song|||Band|||Album"));
    QTRY_COMPARE(shown(), QColor(Qt::blue));
}

void ArtworkTest::triesAgainAfterFailure()
{
    playMusic(QStringLiteral("Song|||Band|||Album"));
    QTRY_COMPARE(shown(), QColor(Qt::blue));
    _server->answer("/search", {.status = 503, .body = "busy"});
    requested();
    playMusic(QStringLiteral("Other|||Band|||Album"));
    QTRY_COMPARE(_server->requestCount(), 1);
    _server->answer("/search", {.body = R"({"results": [{"artworkUrl100": ")" +
                                        _server->address().toLatin1() + R"(/green"}]})"});
    QTRY_COMPARE((_engine->service->refresh(), shown()), QColor(Qt::green));
}

void ArtworkTest::discardsLateCover()
{
    QList<QColor> seen;
    _server->answer("/green", {.body = picture(Qt::green), .manner = Manner::held});
    _engine->desktop.workspace.artworks[BundleId::music] = _server->address() + QStringLiteral("/green");
    playMusic(QStringLiteral("Song|||Band|||Album"));
    const auto watch = _engine->service->bindableArtwork().onValueChanged([&] { seen << shown(); });
    QTRY_COMPARE(_server->requestCount(), 1);
    _engine->desktop.workspace.artworks.clear();
    playMusic(QStringLiteral("Other|||Band|||Album"));
    _server->release();
    QTRY_COMPARE(seen, QList{QColor(Qt::blue)});
}

void ArtworkTest::loadsForSpotify()
{
    _engine->start();
    QVariantMap info = {{QStringLiteral("Player State"), QStringLiteral("Playing")},
                        {QStringLiteral("Name"), QStringLiteral("Wave")},
                        {QStringLiteral("Artwork URL"), QString(_server->address() + u"/green")}};
    _engine->notifySpotify(info);
    QTRY_COMPARE(shown(), QColor(Qt::green));
    info[QStringLiteral("Name")] = QStringLiteral("Another of the same album");
    _engine->notifySpotify(info);
    _engine->service->nextTrack();
    info[QStringLiteral("Name")] = QStringLiteral("Fetched anew after a skip");
    _engine->notifySpotify(info);
    QTRY_COMPARE(_server->requestCount(), 2);
    QCOMPARE(requested(), (QByteArrayList{"/green", "/green"}));

    // What comes when Spotify is no longer on show is not shown.
    _server->answer("/held", {.body = picture(Qt::red), .manner = Manner::held});
    info[QStringLiteral("Artwork URL")] = QString(_server->address() + u"/held");
    info[QStringLiteral("Name")] = QStringLiteral("Late");
    _engine->notifySpotify(info);
    QTRY_COMPARE(_server->requestCount(), 1);
    QList<QColor> seen;
    const auto watch = _engine->service->bindableArtwork().onValueChanged([&] { seen << shown(); });
    playMusic(QStringLiteral("Song|||Band|||Album"));
    _server->release();
    QTRY_COMPARE(seen, QList{QColor(Qt::blue)});
}

void ArtworkTest::doesNotHoldUpTheEnd()
{
    _server->answer("/search", {.manner = Manner::held});
    for (const char* title : {"One", "Two", "Three"}) {
        playMusic(QLatin1String(title) + QStringLiteral("|||Band|||Album"));
    }
    QTRY_COMPARE(_server->requestCount(), 1);
    QElapsedTimer watch;
    watch.start();
    _engine->service.reset();
    QVERIFY2(watch.elapsed() < 2000, "waited for the server");
}

QTEST_MAIN(ArtworkTest)
#include "artwork_test.moc"
