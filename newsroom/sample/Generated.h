#pragma once

/// \file
/// A newsroom as large as one likes.

#include <memory>

namespace Newsroom {

class Model;

/// How large a generated newsroom is.
struct GeneratedSize
{
    int stories = 1000; ///< Shared out among the queues, the first ones getting one more where it does not come out.
    int queues = 1;     ///< At least 1.
};

/// A newsroom of wire reports made up by rule, to try out how things behave when there is much of it: a directory WIRES
/// with the queues W1, W2, ..., each story with a title, an urgency, a source, a date and a few paragraphs. The same
/// for the same size, whenever and wherever it is made. A fresh model at each call; call it from any thread.
std::shared_ptr<Model> generatedModel(const GeneratedSize &size);

} // namespace Newsroom
