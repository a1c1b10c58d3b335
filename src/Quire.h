#pragma once

/// \file
/// Everything of namespace Quire: the object model of a newsroom server.

#include <quire/orvex/Orvex.h>
