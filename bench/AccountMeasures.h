#pragma once

class PillWatch;

namespace AccountMeasures {

/// What connecting an account leaves in memory.
void measureSignIn(const PillWatch& pill);

} // namespace AccountMeasures
