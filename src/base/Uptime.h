#pragma once

#ifndef Q_MOC_RUN // moc 6.4 cannot read this header
#include <compare>
#endif

#include <limits>

/// A point on the steady clock, which only ever goes forward, whatever becomes of the date: for everything
/// that is a span. It has no meaning outside this run of the program.
struct Uptime {
    double seconds = 0;

    /// Longer ago than any span.
    static constexpr Uptime distantPast() { return {-std::numeric_limits<double>::infinity()}; }

    // NOLINTNEXTLINE(modernize-use-nullptr): of clang-tidy 14
    friend constexpr auto operator<=>(const Uptime&, const Uptime&) = default;
    friend constexpr Uptime operator+(Uptime time, double span) { return {time.seconds + span}; }
    friend constexpr double operator-(Uptime later, Uptime earlier)
    {
        return later.seconds - earlier.seconds;
    }
};
