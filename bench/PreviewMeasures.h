#pragma once

class PillWatch;

/// The card that opens under the pill.
namespace PreviewMeasures {

/// How soon its first frame is there, and how many are drawn as it opens. Runs the program in this process.
void measureOpening();

} // namespace PreviewMeasures
