#pragma once

#include <cmath>
#include <optional>

/// How long to wait before something that was not answered is asked again: twice as long each time, and not
/// for ever.
class Backoff
{
public:
    static constexpr double first = 0.25; // seconds

    /// Seconds; none when it has been asked often enough.
    std::optional<double> next()
    {
        constexpr int most = 9; // two minutes altogether
        return _tries < most ? std::optional(std::ldexp(first, _tries++)) : std::nullopt;
    }
    void reset() { _tries = 0; }

private:
    int _tries = 0;
};
