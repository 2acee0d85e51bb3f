#pragma once

#include <cmath>
#include <optional>

/// The waiting times before an unanswered question is asked again: doubled each time, for a limited number of
/// times.
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
