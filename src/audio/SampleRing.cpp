#include "audio/SampleRing.h"

#include "platform/AudioHardware.h"

#include <algorithm>

void SampleRing::write(const AudioBufferList& input)
{
    if (input.count == 0 || input.buffers == nullptr || input.buffers->data == nullptr) {
        return;
    }
    const AudioBuffer& buffer = *input.buffers;
    const auto* data = static_cast<const float*>(buffer.data);
    const std::size_t count = buffer.byteSize / sizeof(float);
    const std::size_t step = buffer.channels >= 2 ? 2 : 1;
    const std::unique_lock guard(_lock, std::try_to_lock);
    if (!guard.owns_lock()) {
        return;
    }
    for (std::size_t i = 0; i + step <= count; i += step) {
        _samples[_write] = step == 2 ? (data[i] + data[i + 1]) * 0.5F : data[i];
        _write = (_write + 1) % capacity;
    }
}

void SampleRing::clear()
{
    const std::lock_guard guard(_lock);
    _samples.fill(0);
}

void SampleRing::copyNewest(SpectrumAnalyzer::Samples& samples, int age) const
{
    constexpr int size = SpectrumAnalyzer::frameSize;
    const std::lock_guard guard(_lock);
    const int begin = (_write + capacity - size - std::clamp(age, 0, capacity - size)) % capacity;
    const int head = std::min(size, capacity - begin);
    std::copy_n(_samples.begin() + begin, head, samples.begin());
    std::copy_n(_samples.begin(), size - head, samples.begin() + head);
}
