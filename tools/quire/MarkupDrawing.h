#pragma once

#include <QString>

#include <quire/XML.h>

namespace Tool {

class Output;

/// Prints the tree below \a root: a line for each node, indented by its depth and cut to the output's columns, then a
/// line with the counts. An element stands as its start tag, character data in quotes, all other nodes as in markup.
/// From a certain depth on, where lines would be all blanks, the indentation stays and the depth stands as a number.
void drawMarkup(XML::Tag &root, Output &output);

} // namespace Tool
