#pragma once

#include <cstdlib>
#include <memory>

struct FreedByCaller {
    void operator()(void* reply) const { std::free(reply); } // NOLINT(cppcoreguidelines-no-malloc)
};

/// A reply of the X server; null when it answered with an error or is gone.
template<typename Reply>
using X11Reply = std::unique_ptr<Reply, FreedByCaller>;
