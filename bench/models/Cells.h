#pragma once

#include "LongQueue.h"
#include <quire/tree/Queue.h>

/// What a cell costs.
namespace Cells {

/// Makes the benchmarks, which read \a model beside \a queue, both of all stories.
void registerAll(Quire::QueueModel &model, Quire::Queue &queue);

} // namespace Cells
