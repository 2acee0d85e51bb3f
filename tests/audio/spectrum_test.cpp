#include "audio/SpectrumAnalyzer.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

using Samples = SpectrumAnalyzer::Samples;
using Levels = SpectrumAnalyzer::Levels;

Samples tone(double frequency, double amplitude, double rate = 48000)
{
    Samples samples;
    for (int i = 0; i < SpectrumAnalyzer::frameSize; ++i) {
        samples[i] = static_cast<float>(amplitude * std::sin(2 * std::numbers::pi * frequency * i / rate));
    }
    return samples;
}

const Samples silent{};

SpectrumAnalyzer::Frame hear(SpectrumAnalyzer& analyzer, const Samples& samples, float rate, int frames)
{
    SpectrumAnalyzer::Frame frame{};
    for (int i = 0; i < frames; ++i) {
        frame = analyzer.analyze(samples, rate);
    }
    return frame;
}

} // namespace

class SpectrumTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowHasUnitEnergy();
    void hearsToneInItsBand_data();
    void hearsToneInItsBand();
    void risesAndFalls();
    void followsPeak();
    void gates_data();
    void gates();
    void silencesBadInput_data();
    void silencesBadInput();
};

void SpectrumTest::windowHasUnitEnergy()
{
    const Samples window = SpectrumAnalyzer::normalizedHannWindow();
    double energy = 0;
    for (const float w : window) {
        energy += double{w} * w;
    }
    QVERIFY(std::abs(energy / SpectrumAnalyzer::frameSize - 1) < 1e-6);
    QCOMPARE(window[0], 0.0F);
    QVERIFY(std::abs(window[512] - 1.63299F) < 1e-5F);
    QCOMPARE(window[1], window[1023]); // of the period, not of the frame
    // A white or steady signal keeps its RMS; a tone of amplitude 0.5 has 0.3535.
    SpectrumAnalyzer analyzer;
    QVERIFY(std::abs(analyzer.analyze(tone(1500, 0.5), 48000).rms - 0.35355F) < 1e-4F);
}

void SpectrumTest::hearsToneInItsBand_data()
{
    QTest::addColumn<double>("frequency");
    QTest::addColumn<float>("rate");
    QTest::addColumn<QString>("expected"); // a digit a band: 1 full, 0 nothing, - anything

    QTest::newRow("bass") << 100.0 << 48000.0F << "1000";
    QTest::newRow("440 Hz") << 440.0 << 48000.0F << "-100";
    QTest::newRow("2 kHz") << 2000.0 << 48000.0F << "0010";
    QTest::newRow("8 kHz") << 8000.0 << 48000.0F << "0001";
    QTest::newRow("shared edge bin") << 1000.0 << 48000.0F << "0110"; // bin 21.3: both
    QTest::newRow("above the bands") << 15000.0 << 48000.0F << "0000";
    QTest::newRow("192 kHz: no bin for the bass") << 200.0 << 192000.0F << "01--";
    QTest::newRow("16 kHz: top band cut at 8 kHz") << 6000.0 << 16000.0F << "0001";
    QTest::newRow("6 kHz: top band above the spectrum") << 1500.0 << 6000.0F << "0010";
}

void SpectrumTest::hearsToneInItsBand()
{
    QFETCH(double, frequency);
    QFETCH(float, rate);
    QFETCH(QString, expected);
    SpectrumAnalyzer analyzer;
    const Levels levels = hear(analyzer, tone(frequency, 0.5, rate), rate, 60).bands;
    for (int band = 0; band < SpectrumAnalyzer::bandCount; ++band) {
        const QString text = QStringLiteral("band %1 is at %2").arg(band).arg(levels[band]);
        if (expected[band] == u'1') {
            QVERIFY2(levels[band] > 0.95F, qPrintable(text));
        } else if (expected[band] == u'0') {
            QVERIFY2(levels[band] < 0.05F, qPrintable(text));
        }
    }
}

void SpectrumTest::risesAndFalls()
{
    SpectrumAnalyzer analyzer;
    float expected = 0;
    for (int frame = 0; frame < 20; ++frame) {
        expected += (1 - expected) * 0.3F;
        QVERIFY(std::abs(analyzer.analyze(tone(2000, 1), 48000).bands[2] - expected) < 1e-4F);
    }
    QVERIFY(expected > 0.99F);
    for (int frame = 0; frame < 20; ++frame) {
        expected *= 1 - 0.12F;
        const SpectrumAnalyzer::Frame heard = analyzer.analyze(silent, 48000);
        QVERIFY(std::abs(heard.bands[2] - expected) < 1e-4F);
        QCOMPARE(heard.rms, 0.0F);
    }
}

void SpectrumTest::followsPeak()
{
    SpectrumAnalyzer analyzer;
    hear(analyzer, tone(2000, 1), 48000, 1);
    const float loud = analyzer.peaks()[2];
    // The squares of the band's 65 bins add up to (2 / 512)² · N · N / 4, the positive half of the energy.
    QVERIFY(std::abs(loud - 2 / std::sqrt(65.0F)) < 1e-3F);
    hear(analyzer, silent, 48000, 1);
    QVERIFY(std::abs(analyzer.peaks()[2] - loud * 0.992F) < 1e-5F);
    // Half as loud reads as less than full while the peak is remembered, and as full once it has decayed.
    QVERIFY(std::abs(hear(analyzer, tone(2000, 0.5), 48000, 40).bands[2] - 0.68F) < 0.04F);
    QVERIFY(hear(analyzer, tone(2000, 0.5), 48000, 100).bands[2] > 0.98F);
    hear(analyzer, silent, 48000, 2000);
    QCOMPARE(analyzer.peaks(), Levels({0.01F, 0.01F, 0.01F, 0.01F}));
}

void SpectrumTest::gates_data()
{
    QTest::addColumn<double>("bandRms");
    QTest::addColumn<double>("level");

    // Below the peak's floor of 0.01, the ratio is bandRms / 0.01.
    QTest::newRow("below the gate") << 0.0009 << 0.0;
    QTest::newRow("in the gate") << 0.0035 << 0.5 * 0.35;
    QTest::newRow("at its end") << 0.0060 << 0.60;
    QTest::newRow("above") << 0.0080 << 0.80;
    QTest::newRow("above the floor") << 0.0200 << 1.0;
}

void SpectrumTest::gates()
{
    QFETCH(double, bandRms);
    QFETCH(double, level);
    SpectrumAnalyzer gauge; // what a tone of amplitude 1 comes to
    hear(gauge, tone(2000, 1), 48000, 1);
    SpectrumAnalyzer analyzer;
    const float heard = hear(analyzer, tone(2000, bandRms / gauge.peaks()[2]), 48000, 80).bands[2];
    QVERIFY2(std::abs(heard - level) < 2e-3, qPrintable(QString::number(heard)));
}

void SpectrumTest::silencesBadInput_data()
{
    QTest::addColumn<float>("sample");
    QTest::addColumn<float>("rate");

    using Limits = std::numeric_limits<float>;
    QTest::newRow("not a number") << Limits::quiet_NaN() << 48000.0F;
    QTest::newRow("infinite") << Limits::infinity() << 48000.0F;
    QTest::newRow("beyond squaring") << Limits::max() << 48000.0F;
    QTest::newRow("square fits, its transform does not") << 1e18F << 48000.0F;
    QTest::newRow("no rate") << 0.5F << 0.0F;
    QTest::newRow("negative rate") << 0.5F << -48000.0F;
    QTest::newRow("rate not a number") << 0.5F << Limits::quiet_NaN();
}

void SpectrumTest::silencesBadInput()
{
    QFETCH(float, sample);
    QFETCH(float, rate);
    SpectrumAnalyzer analyzer;
    Samples bad = tone(2000, 0.5);
    bad[512] = sample;
    const SpectrumAnalyzer::Frame frame = analyzer.analyze(bad, rate);
    QCOMPARE(frame.bands, Levels());
    QCOMPARE(frame.rms, 0.0F);
    QVERIFY(hear(analyzer, tone(2000, 0.5), 48000, 20).bands[2] > 0.95F); // and nothing of it stays
}

QTEST_APPLESS_MAIN(SpectrumTest)
#include "spectrum_test.moc"
