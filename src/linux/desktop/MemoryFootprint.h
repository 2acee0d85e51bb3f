#pragma once

/// Keeps the allocator from holding on to the memory of covers that are gone. To be called before any thread
/// is started. Covers come and go in pieces of a megabyte: left to itself the allocator raises its thresholds
/// as they do, and keeps what they leave behind in an arena for each thread that has decoded one.
void keepHeapSmall();

/// Gives back the pages of programs and libraries that have been read, most of which only the start needs.
/// What is needed again comes back from the system's file cache, page by page. Main thread, at any time.
void releaseReadOnlyPages();

/// The same, and what the allocator keeps of memory that has been freed. For when much of it has, as with a
/// window.
void releaseFreedMemory();
