#pragma once

/// \file
/// What the server says about the user who is signed on.

#include <QString>

namespace Quire {

/// The answer to QuireCOM::GetUserInfo: four texts and two numbers in the server's order, passed through as they come.
/// A plain value of the host's; what each of them means is the server's business.
struct UserInfo
{
    QString text1;      ///< The first text.
    QString text2;      ///< The second text.
    QString text3;      ///< The third text.
    QString text4;      ///< The fourth text.
    qint32 number1 = 0; ///< The first number.
    qint32 number2 = 0; ///< The second number.
};

} // namespace Quire
