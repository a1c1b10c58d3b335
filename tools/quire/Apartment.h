#pragma once

#include <quire/platform/Apartment.h>

namespace Tool {

using Platform::Apartment;

} // namespace Tool
