#pragma once

#include <cstdint>

// One change of a file in the recorded folder, as the recorder appends it to its log: these
// members, then `size` bytes, which are the path (Open, Unlink) or the data (Write).
struct Event
{
    enum Kind : std::int32_t { Open, Write, Truncate, Sync, Unlink };

    Kind kind;
    std::int32_t descriptor; // of the file; -1 for Unlink
    std::int64_t offset; // in bytes: of a Write, or the new length of a Truncate
    std::int64_t size; // of what follows, in bytes
};
