#include "Reason.h"

#include <QCoreApplication>

#include <quire/models/ServerModel.h>

namespace Desk {

QString reason(const Quire::ServerModel &model)
{
    if (model.error() == 0 || !model.errorText().isEmpty())
        return model.errorText();
    return QCoreApplication::translate("Desk", "The server refuses this (0x%1).")
        .arg(static_cast<quint32>(model.error()), 8, 16, QLatin1Char('0'));
}

} // namespace Desk
