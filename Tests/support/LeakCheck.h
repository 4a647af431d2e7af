// LeakCheck.h: counts what a test can leave behind.
#pragma once

#include <iosfwd>

// Everything of this process that must be as it was when a test ends.
struct ResourceCounts
{
    long gdiObjects = 0;  // pens, bitmaps, device contexts, ...
    long kernelHandles = 0;
    long windows = 0;  // of every thread, message-only ones included, children not
    long windowHooks = 0;  // SetWindowsHookEx by our DLLs
    long blocks = 0;  // made by operator new in any module, reference-counted objects included

    bool operator==(const ResourceCounts&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const ResourceCounts& counts);

// Starts counting blocks and hooks; once, before the first test.
void InstallResourceCounters();
ResourceCounts CountResources();

// A failure of the current test when anything more is held at the end of the scope than at its
// beginning. What the system makes once and keeps must have been made before: run the same steps
// once outside the scope.
class LeakCheck
{
public:
    LeakCheck();
    ~LeakCheck();
    LeakCheck(const LeakCheck&) = delete;
    LeakCheck& operator=(const LeakCheck&) = delete;

private:
    ResourceCounts before;
};
