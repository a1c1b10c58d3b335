#include "models/SignalLog.h"

#include <algorithm>
#include <utility>

#ifdef QUIRE_MODEL_TESTER
#include <QAbstractItemModelTester>
#endif

using Quire::ServerModel;

namespace {

QString range(int first, int last)
{
    return QStringLiteral("%1-%2").arg(first).arg(last);
}

QString nameOf(const QModelIndex &index)
{
    return index.isValid() ? index.data(Quire::PathRole).toString() : QStringLiteral(".");
}

} // namespace

SignalLog::SignalLog(ServerModel &model)
{
    connectRows(model);
    connectLoading(model);
}

void SignalLog::connectRows(ServerModel &model)
{
    connect(&model, &ServerModel::rowsInserted, this,
            [this](const QModelIndex &parent, int first, int last) { add("inserted", parent, first, last); });
    connect(&model, &ServerModel::rowsRemoved, this,
            [this](const QModelIndex &parent, int first, int last) { add("removed", parent, first, last); });
    connect(&model, &ServerModel::rowsMoved, this,
            [this](const QModelIndex &parent, int first, int last, const QModelIndex &, int to) {
                add("moved", parent, first, last);
                m_lines.last() += QStringLiteral(" to %1").arg(to);
            });
    connect(&model, &ServerModel::dataChanged, this, [this](const QModelIndex &first, const QModelIndex &last) {
        add("changed", first.parent(), first.row(), last.row());
    });
    connect(&model, &ServerModel::columnsInserted, this, [this](const QModelIndex &, int first, int last) {
        m_lines.append(QStringLiteral("columns ") + range(first, last));
    });
    connect(&model, &ServerModel::modelReset, this, [this] { m_lines.append(QStringLiteral("reset")); });
    connect(&model, &ServerModel::layoutChanged, this, [this] { m_lines.append(QStringLiteral("layout")); });
}

void SignalLog::connectLoading(ServerModel &model)
{
    connect(&model, &ServerModel::loadingStarted, this, [this] { m_lines.append(QStringLiteral("loading")); });
    connect(&model, &ServerModel::progress, this,
            [this](int rows) { m_lines.append(QStringLiteral("progress %1").arg(rows)); });
    connect(&model, &ServerModel::finished, this, [this] { m_lines.append(QStringLiteral("finished")); });
    connect(&model, &ServerModel::failed, this,
            [this](const QString &text) { m_lines.append(QStringLiteral("failed ") + text); });
}

void SignalLog::add(const char *what, const QModelIndex &parent, int first, int last)
{
    m_lines.append(QStringLiteral("%1 %2 %3").arg(QLatin1String(what), nameOf(parent), range(first, last)));
}

QStringList SignalLog::take()
{
    return std::exchange(m_lines, {});
}

QStringList SignalLog::takeRows()
{
    QStringList lines = take();
    const auto isOfLoading = [](const QString &line) {
        return line == QLatin1String("loading") || line == QLatin1String("finished") ||
               line.startsWith(QLatin1String("progress")) || line.startsWith(QLatin1String("failed"));
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), isOfLoading), lines.end());
    return joined(lines);
}

QStringList SignalLog::joined(const QStringList &lines)
{
    QStringList all;
    for (const QString &line : lines) {
        const QString place = line.section(QLatin1Char(' '), 0, 1);
        const QString last = line.section(QLatin1Char('-'), -1);
        const QString before = all.isEmpty() ? QString() : all.last();
        const int next = before.section(QLatin1Char('-'), -1).toInt() + 1;
        if (place.startsWith(QLatin1String("inserted")) && before.startsWith(place) &&
            line == QStringLiteral("%1 %2-%3").arg(place).arg(next).arg(last))
            all.last() = before.section(QLatin1Char('-'), 0, -2) + QLatin1Char('-') + last;
        else
            all.append(line);
    }
    return all;
}

ModelCheck::ModelCheck(ServerModel &model)
{
#ifdef QUIRE_MODEL_TESTER
    new QAbstractItemModelTester(&model, QAbstractItemModelTester::FailureReportingMode::Warning, this);
#else
    Q_UNUSED(model)
#endif
}
