#pragma once

#include <array>
#include <memory>
#include <span>

struct kiss_fftr_state;

/// Turns frames of mono sound into four band levels, from bass to treble. Each level is relative to a slowly
/// decaying peak of its band, gated so that near-silence reads as zero, and smoothed over the frames.
class SpectrumAnalyzer
{
public:
    static constexpr int frameSize = 1024; ///< samples
    static constexpr int bandCount = 4;
    using Samples = std::array<float, frameSize>;
    using Levels = std::array<float, bandCount>;

    struct Frame {
        Levels bands; ///< each 0 to 1
        float rms;    ///< of the windowed samples
    };

    SpectrumAnalyzer();
    ~SpectrumAnalyzer();
    SpectrumAnalyzer(const SpectrumAnalyzer&) = delete;
    SpectrumAnalyzer& operator=(const SpectrumAnalyzer&) = delete;

    /// `sampleRate` is in Hz. Samples that are no numbers, or too large to be squared, and a rate that is no
    /// positive number count as silence. Allocates nothing.
    Frame analyze(const Samples& samples, float sampleRate);

    /// The decaying peak of each band; 0.01 at the least.
    const Levels& peaks() const { return _peaks; }

    /// The Hann window, scaled so that its squares average to 1.
    static Samples normalizedHannWindow();

private:
    struct Bin {
        float real;
        float imaginary;
    };
    static constexpr int binCount = frameSize / 2;

    void computeMagnitudes();
    Levels levels(float sampleRate);
    float level(int band, float bandRms);
    void smooth(const Levels& levels);

    struct FreeTransform {
        void operator()(kiss_fftr_state* state) const;
    };
    std::unique_ptr<kiss_fftr_state, FreeTransform> _transform;
    Samples _window = normalizedHannWindow();
    Samples _windowed{};
    std::array<Bin, binCount + 1> _spectrum{};
    std::array<float, binCount> _magnitudes{};
    Levels _peaks;
    Levels _smoothed{};
};
