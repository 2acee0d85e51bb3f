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
constexpr Id sink = 80;

/// A graph in which process 500 plays with the channels that are given.
CaptureGraph graphOf(const QString& channels)
{
    CaptureGraph graph;
    graph.addPort(left, captureNode, true, QStringLiteral("FL"));
    graph.addPort(right, captureNode, true, QStringLiteral("FR"));
    graph.setClient(10, 500, QStringLiteral("org.example.player"));
    graph.addStream(player, 10);
    graph.addCapture(captureNode);
    graph.addLink(70, player, captureNode);
    graph.addLink(71, player, sink);
    Id port = player;
    for (const QString& channel : channels.split(u' ')) {
        graph.addPort(++port, player, false, channel);
    }
    return graph;
}

/// "21>91 22>92"
QString text(const CaptureGraph& graph, const QSet<AudioObjectId>& excluded = {}, Id place = sink)
{
    QStringList links;
    for (const auto& link : graph.links(captureNode, place, excluded)) {
        links << QStringLiteral("%1>%2").arg(link.outputPort).arg(link.inputPort);
    }
    return links.join(u' ');
}

} // namespace

class CaptureGraphTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linksChannels();
    void choosesStreams();
    void keepsSinksApart();
    void identifiesProcess();
};

void CaptureGraphTest::linksChannels()
{
    QCOMPARE(text(graphOf(QStringLiteral("FL FR"))), QStringLiteral("21>91 22>92"));
    QCOMPARE(text(graphOf(QStringLiteral("MONO AUX7"))), QStringLiteral("21>91 21>92 22>91 22>92"));
    QCOMPARE(text(graphOf(QStringLiteral("FL FR FC LFE RL RR"))),
             QStringLiteral("21>91 22>92 23>91 23>92 24>91 24>92 25>91 26>92"));
}

void CaptureGraphTest::choosesStreams()
{
    CaptureGraph graph = graphOf(QStringLiteral("FL"));
    const QString heard = QStringLiteral("21>91");
    QCOMPARE(text(graph, {500}), QString());
    QCOMPARE(text(graph, {501}), heard);

    graph.addPort(31, 30, false, QStringLiteral("FL")); // of a microphone, or a monitor
    graph.addPort(29, player, true, QStringLiteral("FL"));
    QCOMPARE(text(graph), heard);

    graph.addStream(40, 11); // before its client has said who it is
    graph.addPort(41, 40, false, QStringLiteral("FR"));
    graph.addLink(72, 40, sink);
    QCOMPARE(text(graph), heard);
    graph.setClient(11, 500, QString());
    QCOMPARE(text(graph, {500}), QString());
    QCOMPARE(text(graph), heard + QStringLiteral(" 41>92"));
    graph.setClient(11, 600, QString());
    QCOMPARE(text(graph, {500}), QStringLiteral("41>92"));
    QCOMPARE(graph.processes().keys(), QList<AudioObjectId>({500, 600}));

    graph.addStream(50, std::nullopt); // nobody's
    graph.addPort(51, 50, false, QStringLiteral("FL"));
    QVERIFY(!text(graph).contains(QStringLiteral("51"))); // nor played anywhere
    graph.addLink(73, 50, sink);
    QCOMPARE(text(graph, {500, 600}), QStringLiteral("51>91"));
    for (const Id id : {51U, player, 11U, 12345U}) {
        graph.remove(id);
    }
    QCOMPARE(text(graph), QString());
}

void CaptureGraphTest::keepsSinksApart()
{
    CaptureGraph graph = graphOf(QStringLiteral("FL"));
    graph.addStream(40, std::nullopt);
    graph.addPort(41, 40, false, QStringLiteral("FR"));
    graph.addLink(72, 40, 81);
    graph.addLink(73, 40, 82);
    QCOMPARE(graph.sinks({}), (std::set<Id>{sink, 81}));
    QCOMPARE(graph.sinks({500}), (std::set<Id>{81}));
    QCOMPARE(text(graph, {}, sink), QStringLiteral("21>91"));
    QCOMPARE(text(graph, {}, 81), QStringLiteral("41>92"));
    graph.remove(72);
    QCOMPARE(text(graph, {}, 82), QStringLiteral("41>92")); // as when the stream is moved
}

void CaptureGraphTest::identifiesProcess()
{
    const auto identified = [](std::vector<spa_dict_item> items) {
        const spa_dict dict{.flags = 0, .n_items = static_cast<quint32>(items.size()), .items = items.data()};
        const auto process = GraphProperties::process(&dict);
        return process ? QStringLiteral("%1 %2").arg(process->id).arg(process->bundleId)
                       : QStringLiteral("none");
    };
    const spa_dict_item own{PW_KEY_APP_PROCESS_ID, "7"};
    const spa_dict_item kernels{PW_KEY_SEC_PID, "8"};
    const spa_dict_item name{PW_KEY_APP_ID, "org.example"};
    QCOMPARE(identified({}), QStringLiteral("none"));
    QCOMPARE(identified({kernels, own, name}), QStringLiteral("7 org.example"));
    QCOMPARE(identified({kernels, {PW_KEY_APP_PROCESS_BINARY, "player"}}), QStringLiteral("8 player"));
    QCOMPARE(identified({{PW_KEY_APP_PROCESS_ID, "x"}, kernels}), QStringLiteral("8 "));
    QCOMPARE(identified({{PW_KEY_APP_PROCESS_ID, "-7"}}), QStringLiteral("none"));
    QCOMPARE(identified({{PW_KEY_APP_PROCESS_ID, "4294967296"}}), QStringLiteral("none"));
    QCOMPARE(identified({own, name, {PW_KEY_APP_PROCESS_BINARY, "python3.11"}}),
             QStringLiteral("7 org.example"));
    QCOMPARE(identified({own, name, {PW_KEY_APP_PROCESS_BINARY, "com.orvalen.pellar.signin"}}),
             QStringLiteral("7 com.orvalen.pellar.signin"));
    QVERIFY(!GraphProperties::process(nullptr));
}

QTEST_APPLESS_MAIN(CaptureGraphTest)
#include "capture_graph_test.moc"
