#pragma once

#include <QString>

namespace Quire {
class ServerModel;
}

namespace Desk {

/// Why the last load of \a model failed; empty when it did not. Also of codes for which the server has no sentence.
QString reason(const Quire::ServerModel &model);

} // namespace Desk
