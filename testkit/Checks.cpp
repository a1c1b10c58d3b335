#include <quire/testkit/Checks.h>

#include <quire/session/ErrorString.h>

namespace Quire {
namespace TestKit {

namespace {

QString described(const Outcome &outcome)
{
    if (outcome.raised)
        return QStringLiteral("raised ") + inWords(outcome.result);
    if (FAILED(outcome.result))
        return QStringLiteral("failed: ") + inWords(outcome.result);
    return outcome.refused ? QStringLiteral("answered false") : QStringLiteral("succeeded");
}

bool hasFailed(const Outcome &outcome)
{
    return outcome.raised || outcome.refused || FAILED(outcome.result);
}

void reportOutcome(const Place &place, const char *call, const QString &what)
{
    report(place, QString::fromUtf8(call) + QStringLiteral("\n  ") + what);
}

} // namespace

QString inWords(HRESULT code)
{
    const QString digits = QString::number(static_cast<quint32>(code), 16).rightJustified(8, QLatin1Char('0'));
    QString words = getErrorString(code, false);
    if (!words.contains(QStringLiteral("(x%1)").arg(digits), Qt::CaseInsensitive))
        words += (words.isEmpty() ? QStringLiteral("0x%1") : QStringLiteral(" (0x%1)")).arg(digits);
    const QString whenSigningOn = getErrorString(code, true);
    if (whenSigningOn != getErrorString(code, false))
        words += QStringLiteral("; when signing on: ") + whenSigningOn;
    return words;
}

bool succeeded(const Place &place, const char *call, const Outcome &outcome)
{
    if (!hasFailed(outcome))
        return true;
    reportOutcome(place, call, described(outcome));
    return false;
}

bool failedWith(const Place &place, const char *call, HRESULT code, const Outcome &outcome)
{
    if (hasFailed(outcome) && outcome.result == code)
        return true;
    reportOutcome(place, call, described(outcome) + QStringLiteral("\n  expected: ") + inWords(code));
    return false;
}

Outcome withErrorOf(const Story &story, Outcome outcome)
{
    if (!outcome.raised)
        outcome.result = static_cast<HRESULT>(story.GetError());
    return outcome;
}

} // namespace TestKit
} // namespace Quire
