#include "linux/pipewire/CaptureGraph.h"
#include "linux/pipewire/GraphProperties.h"

#include <QTest>

#include <pipewire/keys.h>
#include <spa/utils/dict.h>

#include <vector>

namespace {

using Id = CaptureGraph::Id;

constexpr Id captureNode = 90;
constexpr Id left = 91;
constexpr Id right = 92;
constexpr Id player = 20; // its ports are 21 and up

/// A graph in which process 500 plays with the channels that are given.
CaptureGraph graphOf(const QString& channels)
{
    CaptureGraph graph;
    graph.addPort(left, captureNode, true, QStringLiteral("FL"));
    graph.addPort(right, captureNode, true, QStringLiteral("FR"));
    graph.setClient(10, 500, QStringLiteral("org.example.player"));
    graph.addStream(player, 10);
    Id port = player;
    for (const QString& channel : channels.split(u' ')) {
        graph.addPort(++port, player, false, channel);
    }
    return graph;
}

/// "21>91 22>92"
QString text(const CaptureGraph& graph, const QSet<AudioObjectId>& excluded = {})
{
    QStringList links;
    for (const auto& link : graph.links(captureNode, excluded)) {
        links << QStringLiteral("%1>%2").arg(link.outputPort).arg(link.inputPort);
    }
    return links.join(u' ');
}

} // namespace

class CaptureGraphTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linksChannels_data();
    void linksChannels();
    void choosesStreams();
    void identifiesProcess_data();
    void identifiesProcess();
};

void CaptureGraphTest::linksChannels_data()
{
    QTest::addColumn<QString>("channels");
    QTest::addColumn<QString>("links");

    QTest::newRow("stereo") << "FL FR"
                            << "21>91 22>92";
    QTest::newRow("mono") << "MONO"
                          << "21>91 21>92";
    QTest::newRow("5.1") << "FL FR FC LFE RL RR"
                         << "21>91 22>92 23>91 23>92 24>91 24>92 25>91 26>92";
    QTest::newRow("unknown") << "AUX7"
                             << "21>91 21>92";
}

void CaptureGraphTest::linksChannels()
{
    QFETCH(QString, channels);
    QTEST(text(graphOf(channels)), "links");
}

void CaptureGraphTest::choosesStreams()
{
    CaptureGraph graph = graphOf(QStringLiteral("FL"));
    const QString heard = QStringLiteral("21>91");
    QCOMPARE(text(graph), heard);
    QCOMPARE(text(graph, {500}), QString());
    QCOMPARE(text(graph, {501}), heard);

    graph.addPort(31, 30, false, QStringLiteral("FL")); // of a microphone, or a monitor
    graph.addPort(29, player, true, QStringLiteral("FL"));
    QCOMPARE(text(graph), heard);

    graph.addStream(40, 11); // before its client has said who it is
    graph.addPort(41, 40, false, QStringLiteral("FR"));
    QCOMPARE(text(graph, {500}), QString());
    graph.setClient(11, 500, QString());
    QCOMPARE(text(graph, {500}), QString());
    QCOMPARE(text(graph), heard + QStringLiteral(" 41>92"));
    graph.setClient(11, 600, QString());
    QCOMPARE(text(graph, {500}), QStringLiteral("41>92"));
    QCOMPARE(graph.processes().keys(), QList<AudioObjectId>({500, 600}));

    graph.addStream(50, std::nullopt); // nobody's
    graph.addPort(51, 50, false, QStringLiteral("FL"));
    QCOMPARE(text(graph, {500, 600}), QStringLiteral("51>91"));

    graph.remove(51);
    graph.remove(player);
    graph.remove(11);
    QCOMPARE(text(graph), QString());
    graph.remove(12345);
}

void CaptureGraphTest::identifiesProcess_data()
{
    QTest::addColumn<QStringList>("properties"); // key, value, key, value…
    QTest::addColumn<QString>("expected");

    const QString id = QStringLiteral(PW_KEY_APP_PROCESS_ID);
    const QString sec = QStringLiteral(PW_KEY_SEC_PID);
    const QString app = QStringLiteral(PW_KEY_APP_ID);
    const QString binary = QStringLiteral(PW_KEY_APP_PROCESS_BINARY);
    const QString signIn = QStringLiteral("com.orvalen.pellar.signin");
    QTest::newRow("nothing") << QStringList() << "none";
    QTest::newRow("own word first") << QStringList{id,  QStringLiteral("7"),
                                                   sec, QStringLiteral("8"),
                                                   app, QStringLiteral("org.example")}
                                    << "7 org.example";
    QTest::newRow("the kernel's word")
        << QStringList{sec, QStringLiteral("8"), binary, QStringLiteral("player")} << "8 player";
    QTest::newRow("no number") << QStringList{id, QStringLiteral("x"), sec, QStringLiteral("8")} << "8 ";
    QTest::newRow("negative") << QStringList{id, QStringLiteral("-7")} << "none";
    QTest::newRow("too large") << QStringList{id, QStringLiteral("4294967296")} << "none";
    QTest::newRow("named by its binary")
        << QStringList{id, QStringLiteral("7"), app, QStringLiteral("org.qt"), binary, signIn}
        << QStringLiteral("7 ") + signIn;
    QTest::newRow("plain binary") << QStringList{id,     QStringLiteral("7"),
                                                 app,    QStringLiteral("org.example"),
                                                 binary, QStringLiteral("python3.11")}
                                  << "7 org.example";
}

void CaptureGraphTest::identifiesProcess()
{
    QFETCH(QStringList, properties);
    QList<QByteArray> texts;
    for (const QString& word : properties) {
        texts << word.toUtf8();
    }
    std::vector<spa_dict_item> items;
    for (qsizetype i = 0; i + 1 < texts.size(); i += 2) {
        items.push_back({texts[i].constData(), texts[i + 1].constData()});
    }
    const spa_dict dict{.flags = 0, .n_items = static_cast<quint32>(items.size()), .items = items.data()};
    const auto process = GraphProperties::process(&dict);
    QTEST(process ? QStringLiteral("%1 %2").arg(process->id).arg(process->bundleId) : QStringLiteral("none"),
          "expected");
    QVERIFY(!GraphProperties::process(nullptr));
}

QTEST_APPLESS_MAIN(CaptureGraphTest)
#include "capture_graph_test.moc"
