#pragma once

#ifndef Q_MOC_RUN // moc 6.4 cannot read this header
#include <compare>
#endif

/// A point in time, counted in seconds since 2001-01-01 00:00:00 UTC (the reference date).
struct Date {
    double sinceReference = 0; ///< seconds; negative before the reference date

    /// Seconds between 1970-01-01 and the reference date.
    static constexpr double unixOffset = 978'307'200.0;

    constexpr double sinceUnixEpoch() const { return sinceReference + unixOffset; }

    // NOLINTNEXTLINE(modernize-use-nullptr): of clang-tidy 14
    friend constexpr auto operator<=>(const Date&, const Date&) = default;
    friend constexpr Date operator+(Date date, double seconds) { return {date.sinceReference + seconds}; }
    friend constexpr double operator-(Date later, Date earlier)
    {
        return later.sinceReference - earlier.sinceReference;
    }
};
