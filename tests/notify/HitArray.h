#pragma once

#include <QPair>
#include <QString>
#include <QVector>

#include <quire/orvex/Orvex.h>

/// A search hit as a test writes it; null texts become null BSTRs.
struct Hit
{
    QString name;
    QString queue;
    Orvex::StoryIdentifier id{0, 0, 0};
    QVector<QPair<QString, QString>> fields;
};

/// Hits as a server sends them: an array of Orvex::SearchHit records as plain memory, without a description of them.
/// Owns everything in it.
class HitArray
{
public:
    explicit HitArray(const QVector<Hit> &hits);
    ~HitArray();

    operator SAFEARRAY *() const { return m_array; }
    SAFEARRAY *operator->() const { return m_array; }
    Orvex::SearchHit &operator[](int index);

private:
    Q_DISABLE_COPY(HitArray)
    SAFEARRAY *m_array;
};

/// An array of \a count elements of that size in one dimension, zeroed, that does not say what it holds.
SAFEARRAY *makePlainArray(ULONG elementSize, ULONG count, LONG lowerBound = 0);
