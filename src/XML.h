#pragma once

/// \file
/// Everything of namespace XML: the markup toolkit, usable on its own.

#include <quire/markup/Entities.h>
#include <quire/markup/ExtraTag.h>
#include <quire/markup/NamedTag.h>
#include <quire/markup/Parser.h>
#include <quire/markup/Tag.h>
#include <quire/markup/TextTag.h>
