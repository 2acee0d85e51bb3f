#include "audio/AudioBridge.h"
#include "audio/SampleRing.h"
#include "audio/SpectrumAnalyzer.h"
#include "audio/VisualizerModel.h"
#include "platform/AudioHardware.h"
#include "prefs/PowerModeManager.h"
#include "support/FakeCapture.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QtTest>

#include <csignal>
#include <future>
#include <numbers>
#include <numeric>
#include <semaphore>

using namespace Qt::Literals::StringLiterals;

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

SpectrumAnalyzer::Frame hear(SpectrumAnalyzer& analyzer, const Samples& samples, float rate, int frames)
{
    SpectrumAnalyzer::Frame frame{};
    for (int i = 0; i < frames; ++i) {
        frame = analyzer.analyze(samples, rate);
    }
    return frame;
}

/// A meter on a desktop of fakes.
struct Meter {
    FakePlatform desktop;
    MemoryDefaults defaults;
    FakeCapture* capture = new FakeCapture;
    AudioBridge audio{desktop.runLoop, defaults, std::unique_ptr<AudioCapture>(capture)};
    PowerModeManager power{defaults, desktop.power};
    VisualizerModel model{desktop.runLoop, audio, power};
};

} // namespace

/// From what is captured to the bars of the meter.
class SpectrumTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void foldsToMono()
    {
        using Floats = QList<float>;
        const std::vector<std::tuple<Floats, quint32, int, Floats>> rows = {
            // samples, channels, bytes that the last sample lacks, mono
            {{1, 3, -5, 5, 9}, 2, 0, {2, 0}},
            {{1, 3, 5, 7}, 4, 0, {2, 6}}, // neighbours
            {{1, 2}, 1, 3, {1}},
            {{}, 2, 0, {}}};
        for (const auto& [input, channels, cutBytes, mono] : rows) {
            SampleRing ring;
            const auto bytes = static_cast<quint32>(input.size() * sizeof(float) - cutBytes);
            const AudioBuffer buffer{.channels = channels, .byteSize = bytes, .data = input.constData()};
            ring.write({.count = 0, .buffers = &buffer});
            ring.write({.count = 1, .buffers = nullptr});
            ring.write({.count = 1, .buffers = &buffer});
            Samples newest;
            ring.copyNewest(newest);
            QCOMPARE(Floats(newest.end() - mono.size(), newest.end()), mono);
            QCOMPARE(*(newest.end() - mono.size() - 1), 0.0F); // and no more than those
        }
    }

    void keepsTheNewest()
    {
        SampleRing ring;
        QList<float> samples(1500);
        std::iota(samples.begin(), samples.end(), 0.0F);
        const AudioBuffer buffer{
            .channels = 1, .byteSize = 1500 * sizeof(float), .data = samples.constData()};
        Samples copied;
        for (int round = 0; round < 12; ++round) { // ends at 1500, 3000, … 7500, 808, 2308…
            ring.write({.count = 1, .buffers = &buffer});
            ring.copyNewest(copied);
            QCOMPARE(QList<float>(copied.begin(), copied.end()), samples.mid(476));
            ring.copyNewest(copied, 400);
            QCOMPARE(QList<float>(copied.begin(), copied.end()), samples.mid(76, 1024));
        }
        ring.copyNewest(copied, 1'000'000);
        QCOMPARE(copied.front(), static_cast<float>(12 * 1500 - SampleRing::capacity - 6 * 1500));
    }

    /// A reader that is held up, as by a busier thread on its processor, does not hold up the real-time
    /// thread.
    void writerDoesNotWait()
    {
        static std::binary_semaphore isHeld(0);
        static std::binary_semaphore goesOn(0);
        std::signal(SIGUSR1, [](int) {
            isHeld.release();
            goesOn.acquire();
        });
        SampleRing ring;
        std::atomic<bool> isOver = false;
        std::atomic<int> reads = 0;
        std::thread reader([&] {
            Samples newest;
            for (; !isOver; ++reads) {
                ring.copyNewest(newest);
            }
        });
        const float sample = 1;
        const AudioBuffer buffer{.channels = 1, .byteSize = sizeof(float), .data = &sample};
        bool isWritten = true;
        for (int i = 0; i < 30 && isWritten; ++i) { // the reader hardly does anything but read
            for (const int seen = reads; reads < seen + 100;) {
                std::this_thread::yield();
            }
            pthread_kill(reader.native_handle(), SIGUSR1);
            isHeld.acquire();
            auto written =
                std::async(std::launch::async, [&] { ring.write({.count = 1, .buffers = &buffer}); });
            isWritten = written.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
            goesOn.release();
        }
        isOver = true;
        reader.join();
        QVERIFY(isWritten);
    }

    void hearsToneInItsBand()
    {
        using Row = std::tuple<double, float, const char*>;
        // frequency and rate in hertz; a digit a band: 1 full, 0 nothing, - anything
        for (const auto& [frequency, rate, expected] :
             {Row{100, 48000, "1000"},
              {2000, 48000, "0010"},
              {8000, 48000, "0001"},
              {15000, 48000, "0000"},
              {200, 192000, "01--"},   // no bin for the bass
              {6000, 16000, "0001"},   // top band cut at 8 kHz
              {1500, 6000, "0010"}}) { // top band above the spectrum
            SpectrumAnalyzer analyzer;
            const Levels levels = hear(analyzer, tone(frequency, 0.5, rate), rate, 60).bands;
            for (int band = 0; band < SpectrumAnalyzer::bandCount; ++band) {
                const float level = levels[band];
                const char digit = expected[band];
                QVERIFY2(digit == '-' || (digit == '1' ? level > 0.95F : level < 0.05F),
                         qPrintable(u"%1 Hz: band %2 is at %3"_s.arg(frequency).arg(band).arg(level)));
            }
        }
    }

    void risesAndFalls()
    {
        SpectrumAnalyzer analyzer;
        float expected = 0;
        for (const auto& [amplitude, share] : {std::pair(1, 0.3F), {1, 0.3F}, {0, 0.12F}, {0, 0.12F}}) {
            expected += (static_cast<float>(amplitude) - expected) * share;
            const float heard = analyzer.analyze(tone(2000, amplitude), 48000).bands[2];
            QVERIFY(std::abs(heard - expected) < 1e-4F);
        }
    }

    /// A tone in the middle of a bin is in the bins beside it, too, and in no others.
    void bandsEndAtTheirBins()
    {
        constexpr double binWidth = 48000.0 / SpectrumAnalyzer::frameSize;
        for (const auto& [below, edge] : {std::pair(0, 5), {1, 21}, {2, 85}, {3, 256}}) {
            for (const int bin : {edge - 2, edge - 1, edge + 1, edge + 2}) {
                SpectrumAnalyzer analyzer;
                const Levels levels = hear(analyzer, tone(bin * binWidth, 0.5), 48000, 60).bands;
                QCOMPARE(levels[below] > 0.1F, bin < edge + 2);
                QVERIFY(below == 3 || (levels[below + 1] > 0.1F) == (bin > edge - 2));
            }
        }
    }

    void gates()
    {
        SpectrumAnalyzer analyzer;
        QVERIFY(std::abs(hear(analyzer, tone(2000, 1), 48000, 1).rms - std::sqrt(0.5F)) < 1e-4F);
        // Half as loud reads as less than full while the peak is remembered, and as full once it has decayed.
        QVERIFY(std::abs(hear(analyzer, tone(2000, 0.5), 48000, 40).bands[2] - 0.68F) < 0.04F);
        QVERIFY(hear(analyzer, tone(2000, 0.5), 48000, 100).bands[2] > 0.98F);
        QVERIFY(hear(analyzer, tone(2000, 0.003), 48000, 1000).bands[2] < 0.01F); // noise
    }

    void silencesBadInput()
    {
        using Limits = std::numeric_limits<float>;
        using Row = std::pair<float, float>;
        for (const auto& [sample, rate] : {Row{Limits::quiet_NaN(), 48000},
                                           {Limits::max(), 48000},
                                           {1e18F, 48000}, // its square fits, its transform does not
                                           {0.5F, 0},
                                           {0.5F, Limits::quiet_NaN()}}) {
            SpectrumAnalyzer analyzer;
            Samples bad = tone(2000, 0.5);
            bad[512] = sample;
            const SpectrumAnalyzer::Frame frame = analyzer.analyze(bad, rate);
            QCOMPARE(frame.bands, Levels());
            QCOMPARE(frame.rms, 0.0F);
            QVERIFY(hear(analyzer, tone(2000, 0.5), 48000, 20).bands[2] > 0.95F); // and nothing of it stays
        }
    }

    void asksForFramesOnlyWhileItMoves()
    {
        Meter meter;
        VisualizerModel& model = meter.model;
        const VisualizerModel::Heights resting = {2, 2, 2, 2};
        QVERIFY(model.framesPerSecond() == 0 && model.heights() == resting && model.isAtRest());

        QProperty<bool> isPlaying(true);
        model.bindableIsPlaying().setBinding([&] { return isPlaying.value(); });
        QCOMPARE(model.framesPerSecond(), 15);
        isPlaying = false;
        const auto atStop = model.heights();
        QVERIFY(!model.isAtRest());
        meter.desktop.runLoop.advance(1);
        isPlaying = true; // on again before the bars have come to rest
        meter.desktop.runLoop.advance(1);
        isPlaying = false;
        meter.desktop.runLoop.advance(1.29);
        QVERIFY(model.framesPerSecond() == 15 && model.heights() == resting);
        int told = 0;
        connect(&model, &VisualizerModel::changed, this, [&] { ++told; });
        meter.desktop.runLoop.advance(0.02);
        QVERIFY(told > 0 && model.isAtRest() && model.framesPerSecond() == 0);
        // A still frame is that of the last stop.
        QVERIFY(model.heights() != atStop && model.heights() != resting);
        QCOMPARE(meter.desktop.runLoop.pending(), 0);

        isPlaying = true;
        Q_EMIT meter.capture->liveChanged(true);
        Q_EMIT meter.capture->bandsPublished({0.5F, 1, 0, 0.5F});
        QCOMPARE(model.heights(), (VisualizerModel::Heights{6.5, 11, 2, 6.5}));
    }

    void clampsTheRate()
    {
        Meter meter;
        for (const auto& [stored, rate] : {std::pair(0, 0), {-5, 0}, {2'000'000, 60}}) {
            meter.power.updateSettings(PowerMode::normal,
                                       [fps = stored](auto& mode) { mode.visualizerFPS = fps; });
            meter.model.bindableIsPlaying().setValue(true);
            QCOMPARE(meter.model.framesPerSecond(), rate);
        }
        meter.power.updateSettings(PowerMode::normal, [](auto& mode) { mode.visualizerEnabled = false; });
        QCOMPARE(meter.model.framesPerSecond(), 0);
    }
};

QTEST_APPLESS_MAIN(SpectrumTest)
#include "spectrum_test.moc"
