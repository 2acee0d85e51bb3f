#pragma once

/// Counts what the calling thread allocates, by whatever way, while it lives. One at a time.
class AllocationCount
{
public:
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    /// How many since the last call.
    int take();
};
