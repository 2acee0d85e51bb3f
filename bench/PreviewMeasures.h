#pragma once

class PillWatch;

/// The card that opens under the pill, and the widget.
namespace PreviewMeasures {

/// How soon its first frame is there, and how many are drawn as it opens. Runs the program in this process.
void measureOpening();

/// What they cost while lines of a song run. Starts the program.
void measureFootprint(const PillWatch& pill);

} // namespace PreviewMeasures
