#pragma once

#include <QString>

/// The copy of this program that runs already in this session.
namespace RunningCopy {

/// Hands it an action, or the wish to see it if that is empty. Waits up to five seconds for one that is only
/// just starting, and as long for its answer. False when there was none. Needs a QCoreApplication.
bool request(const QString& action);

} // namespace RunningCopy
