#pragma once

#include <QImage>
#include <QRect>

#include <functional>

/// The pill of the program under measurement, as it is on the screen.
class PillWatch
{
public:
    PillWatch();

    /// Whether the pill is drawn where a fresh installation puts it.
    bool isDrawn() const;

    /// The part of the screen that shows the title.
    QImage title() const;

    /// Runs the event loop until the condition holds; the milliseconds that took, negative after 10 s.
    static double millisecondsUntil(const std::function<bool()>& condition);

private:
    QRect _pill;
};
