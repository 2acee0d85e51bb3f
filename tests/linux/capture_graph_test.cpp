#include "linux/pipewire/CaptureGraph.h"
#include "linux/pipewire/GraphProperties.h"

#include <QtTest>

#include <pipewire/keys.h>
#include <spa/utils/dict.h>

using namespace Qt::Literals::StringLiterals;

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
    graph.addPort(left, captureNode, true, u"FL"_s);
    graph.addPort(right, captureNode, true, u"FR"_s);
    graph.setClient(10, 500, u"org.example.player"_s);
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
QString text(const CaptureGraph& graph, const QSet<AudioObjectId>& excluded = {})
{
    QStringList links;
    for (const auto& link : graph.links(captureNode, sink, excluded)) {
        links << u"%1>%2"_s.arg(link.outputPort).arg(link.inputPort);
    }
    return links.join(u' ');
}

} // namespace

class CaptureGraphTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linksChannels()
    {
        QCOMPARE(text(graphOf(u"FL FR"_s)), u"21>91 22>92"_s);
        QCOMPARE(text(graphOf(u"MONO AUX7"_s)), u"21>91 21>92 22>91 22>92"_s);
        QCOMPARE(text(graphOf(u"FL FR FC LFE RL RR"_s)),
                 u"21>91 22>92 23>91 23>92 24>91 24>92 25>91 26>92"_s);
    }

    void choosesStreams()
    {
        CaptureGraph graph = graphOf(u"FL"_s);
        const QString heard = u"21>91"_s;
        QCOMPARE(text(graph, {500}), QString());
        QCOMPARE(text(graph, {501}), heard);

        graph.addPort(31, 30, false, u"FL"_s); // of a microphone, or a monitor
        graph.addPort(29, player, true, u"FL"_s);
        graph.addStream(40, 11); // before its client has said who it is
        graph.addPort(41, 40, false, u"FR"_s);
        graph.addLink(72, 40, sink);
        QCOMPARE(text(graph), heard);
        graph.setClient(11, 500, QString());
        QCOMPARE(text(graph, {500}), QString());
        QCOMPARE(text(graph), heard + u" 41>92"_s);
        graph.setClient(11, 600, QString());
        QCOMPARE(text(graph, {500}), u"41>92"_s);
        QCOMPARE(graph.processes().keys(), QList<AudioObjectId>({500, 600}));

        graph.addStream(50, std::nullopt); // nobody's
        graph.addPort(51, 50, false, u"FL"_s);
        QVERIFY(!text(graph).contains(u"51"_s)); // nor played anywhere
        graph.addLink(73, 50, sink);
        QCOMPARE(text(graph, {500, 600}), u"51>91"_s);
        for (const Id id : {51U, player, 11U, 12345U}) {
            graph.remove(id);
        }
        QCOMPARE(text(graph), QString());
    }

    void identifiesProcess()
    {
        const auto identified = [](std::vector<spa_dict_item> items) {
            const spa_dict dict{0, static_cast<quint32>(items.size()), items.data()};
            const auto process = GraphProperties::process(&dict);
            return process ? u"%1 %2"_s.arg(process->id).arg(process->bundleId) : u"none"_s;
        };
        const spa_dict_item own{PW_KEY_APP_PROCESS_ID, "7"};
        const spa_dict_item kernels{PW_KEY_SEC_PID, "8"};
        const spa_dict_item name{PW_KEY_APP_ID, "org.example"};
        QCOMPARE(identified({}), u"none"_s);
        QCOMPARE(identified({kernels, own, name}), u"7 org.example"_s);
        QCOMPARE(identified({{PW_KEY_APP_PROCESS_ID, "x"}, kernels}), u"8 "_s);
        QCOMPARE(identified({{PW_KEY_APP_PROCESS_ID, "4294967296"}}), u"none"_s);
        QCOMPARE(identified({own, name, {PW_KEY_APP_PROCESS_BINARY, "python3.11"}}), u"7 org.example"_s);
        QCOMPARE(identified({own, name, {PW_KEY_APP_PROCESS_BINARY, "com.orvalen.pellar.signin"}}),
                 u"7 com.orvalen.pellar.signin"_s);
        QVERIFY(!GraphProperties::process(nullptr));
    }
};

QTEST_APPLESS_MAIN(CaptureGraphTest)
#include "capture_graph_test.moc"
