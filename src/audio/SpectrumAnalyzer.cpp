#include "audio/SpectrumAnalyzer.h"

#include <kiss_fftr.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>

namespace {

struct Edges {
    float low;  // Hz
    float high; // Hz
};
constexpr std::array<Edges, SpectrumAnalyzer::bandCount> bandEdges = {
    {{20, 250}, {250, 1000}, {1000, 4000}, {4000, 12000}}};

constexpr int lastBin = 511;
constexpr float energyLimit = 1e30F; // beyond it, magnitudes could not be squared
constexpr float transformGain = 2;   // the levels are tuned to a transform that gives twice the sum
constexpr float magnitudeScale = 1.0F / 512;
constexpr float peakDecay = 0.992F; // per frame
constexpr float peakFloor = 0.01F;
constexpr float gateOffset = 0.001F;
constexpr float gateSpan = 0.005F;
constexpr float attack = 0.3F;
constexpr float release = 0.12F;

/// The bin that a frequency falls into. Any bin beyond the last is as good as another.
int binOf(float frequency, float binWidth)
{
    return static_cast<int>(std::min(frequency / binWidth, 1e6F));
}

} // namespace

void SpectrumAnalyzer::FreeTransform::operator()(kiss_fftr_state* state) const
{
    kiss_fftr_free(state);
}

SpectrumAnalyzer::SpectrumAnalyzer() : _transform(kiss_fftr_alloc(frameSize, 0, nullptr, nullptr))
{
    if (!_transform) {
        throw std::bad_alloc();
    }
    _peaks.fill(peakFloor);
}

SpectrumAnalyzer::~SpectrumAnalyzer() = default;

SpectrumAnalyzer::Samples SpectrumAnalyzer::normalizedHannWindow()
{
    // The squares of (1 - cos) average to 3/2.
    const double scale = std::sqrt(2.0 / 3.0);
    Samples window;
    for (int i = 0; i < frameSize; ++i) {
        window[i] = static_cast<float>(scale * (1 - std::cos(2 * std::numbers::pi * i / frameSize)));
    }
    return window;
}

SpectrumAnalyzer::Frame SpectrumAnalyzer::analyze(const Samples& samples, float sampleRate)
{
    std::array<float, 8> squares{}; // several sums, so that the loop can run on vector registers
    for (int i = 0; i < frameSize; i += 8) {
        for (int lane = 0; lane < 8; ++lane) {
            const float sample = samples[i + lane] * _window[i + lane];
            _windowed[i + lane] = sample;
            squares[lane] += sample * sample;
        }
    }
    float sum = 0;
    for (const float square : squares) {
        sum += square;
    }
    const bool isSound = sum < energyLimit && std::isfinite(sampleRate) && sampleRate > 0; // not for NaN
    if (!isSound) {
        _windowed.fill(0);
        sum = 0;
    }
    computeMagnitudes();
    smooth(isSound ? levels(sampleRate) : Levels{});
    return {.bands = _smoothed, .rms = std::sqrt(sum / frameSize)};
}

void SpectrumAnalyzer::computeMagnitudes()
{
    static_assert(sizeof(Bin) == sizeof(kiss_fft_cpx));
    kiss_fftr(_transform.get(), _windowed.data(), reinterpret_cast<kiss_fft_cpx*>(_spectrum.data()));
    for (int k = 0; k < binCount; ++k) {
        const Bin bin = _spectrum[k];
        _magnitudes[k] = transformGain * std::sqrt(bin.real * bin.real + bin.imaginary * bin.imaginary);
    }
}

SpectrumAnalyzer::Levels SpectrumAnalyzer::levels(float sampleRate)
{
    Levels result{};
    const float binWidth = sampleRate * (1.0F / frameSize);
    for (int band = 0; band < bandCount; ++band) {
        const int low = binOf(bandEdges[band].low, binWidth);
        const int high = binOf(bandEdges[band].high, binWidth);
        const int first = std::max(low, 1); // bin 0 is the constant part
        const bool isAboveSpectrum = high >= lastBin && low >= lastBin;
        // One bin is a band only where the spectrum's end cuts it short.
        const bool isTooNarrow = high < lastBin && first >= high;
        if (isAboveSpectrum || isTooNarrow) {
            continue;
        }
        const int last = std::min(high, lastBin);
        float sum = 0;
        for (int k = first; k <= last; ++k) {
            const float magnitude = _magnitudes[k] * magnitudeScale;
            sum += magnitude * magnitude;
        }
        result[band] = level(band, std::sqrt(sum / static_cast<float>(last - first + 1)));
    }
    return result;
}

float SpectrumAnalyzer::level(int band, float bandRms)
{
    _peaks[band] = std::max({bandRms, _peaks[band] * peakDecay, peakFloor});
    const float ratio = bandRms / _peaks[band];
    const float gate = std::clamp((bandRms - gateOffset) / gateSpan, 0.0F, 1.0F);
    return std::min(gate * ratio, 1.0F);
}

void SpectrumAnalyzer::smooth(const Levels& levels)
{
    for (int band = 0; band < bandCount; ++band) {
        float& smoothed = _smoothed[band];
        smoothed += (levels[band] - smoothed) * (smoothed < levels[band] ? attack : release);
    }
}
