#pragma once

/// How fast lyrics are read and the line that is sung is found.
namespace LyricsMeasures {

void measureParsers();
void measureActiveLine();

} // namespace LyricsMeasures
