#pragma once

class PillWatch;

/// What the program costs while it captures what the computer plays.
namespace CaptureMeasures {

/// Starts the program anew for each row, with its own settings, and leaves none of those behind.
void measureCapture(const PillWatch& pill);

} // namespace CaptureMeasures
