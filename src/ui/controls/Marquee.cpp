#include "ui/controls/Marquee.h"

#include <algorithm>
#include <cmath>

double Marquee::offset(double sinceStart, double textWidth)
{
    const double moving = std::max(0.0, sinceStart - pause);
    return -std::fmod(moving * speed, textWidth + gap);
}
