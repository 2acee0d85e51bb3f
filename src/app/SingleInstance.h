#pragma once

#include <QLockFile>

/// Keeps a second copy of the program from running in the same session.
class SingleInstance
{
public:
    SingleInstance();

    /// Whether this is the only one. A copy that has crashed does not count.
    bool isFirst() const { return _isFirst; }

private:
    QLockFile _lock;
    bool _isFirst;
};
