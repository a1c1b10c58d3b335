#pragma once

/// What cannot be said as a ratio of medians: each prints its figures with their bounds and tells whether these hold.
namespace Latency {

/// How long after its making a queue shows its first story, and its first chunk, on a server of 200 microseconds a
/// call.
bool firstChunk();

/// How long a host that reads the list waits while a worker loads it.
bool reader();

/// Heap for a loaded story beside the bytes of its texts.
bool heap();

} // namespace Latency
