#include "audio/SampleRing.h"
#include "audio/SpectrumAnalyzer.h"
#include "platform/AudioHardware.h"

#include <QTest>

class SampleRingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void foldsToMono_data();
    void foldsToMono();
    void wraps();
};

void SampleRingTest::foldsToMono_data()
{
    QTest::addColumn<QList<float>>("input");
    QTest::addColumn<quint32>("channels");
    QTest::addColumn<int>("cutBytes");
    QTest::addColumn<QList<float>>("mono");

    using Floats = QList<float>;
    QTest::newRow("mono") << Floats{1, 2, 3} << 1U << 0 << Floats{1, 2, 3};
    QTest::newRow("stereo") << Floats{1, 3, -5, 5} << 2U << 0 << Floats{2, 0};
    QTest::newRow("four: neighbours") << Floats{1, 3, 5, 7} << 4U << 0 << Floats{2, 6};
    QTest::newRow("odd stereo") << Floats{1, 3, 5} << 2U << 0 << Floats{2};
    QTest::newRow("no channels") << Floats{1, 2} << 0U << 0 << Floats{1, 2};
    QTest::newRow("under four bytes") << Floats{1} << 1U << 1 << Floats{};
    QTest::newRow("broken last sample") << Floats{1, 2} << 1U << 3 << Floats{1};
    QTest::newRow("null") << Floats{} << 2U << 0 << Floats{};
}

void SampleRingTest::foldsToMono()
{
    QFETCH(QList<float>, input);
    QFETCH(quint32, channels);
    QFETCH(int, cutBytes);
    QFETCH(QList<float>, mono);
    SampleRing ring;
    const AudioBuffer buffer{.channels = channels,
                             .byteSize = static_cast<quint32>(input.size() * sizeof(float) - cutBytes),
                             .data = input.isEmpty() ? nullptr : input.constData()};
    ring.write({.count = 0, .buffers = &buffer});
    ring.write({.count = 1, .buffers = nullptr});
    ring.write({.count = 1, .buffers = &buffer});
    SpectrumAnalyzer::Samples newest;
    ring.copyNewest(newest);
    QCOMPARE(QList<float>(newest.end() - mono.size(), newest.end()), mono);
    QCOMPARE(*(newest.end() - mono.size() - 1), 0.0F); // and no more than those
}

void SampleRingTest::wraps()
{
    SampleRing ring;
    QList<float> samples;
    for (int i = 0; i < 1500; ++i) {
        samples << static_cast<float>(i);
    }
    const AudioBuffer buffer{.channels = 1, .byteSize = 1500 * sizeof(float), .data = samples.constData()};
    SpectrumAnalyzer::Samples newest;
    for (int round = 0; round < 5; ++round) { // ends at 1500, 952, 404, 1904, 1356
        ring.write({.count = 1, .buffers = &buffer});
        ring.copyNewest(newest);
        QCOMPARE(QList<float>(newest.begin(), newest.end()), samples.mid(476));
    }
}

QTEST_GUILESS_MAIN(SampleRingTest)
#include "sample_ring_test.moc"
