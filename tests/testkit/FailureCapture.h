#pragma once

#include <QStringList>

#include <quire/testkit/Failure.h>

#include "support/Text.h"

/// Catches the failures that checks report while it lives, so that a test can fail checks on purpose. One at a time.
class FailureCapture
{
public:
    FailureCapture()
        : m_before(Quire::TestKit::setFailureHandler(keep))
    {
        lines().clear();
        texts().clear();
    }
    ~FailureCapture() { Quire::TestKit::setFailureHandler(m_before); }

    static QStringList &texts()
    {
        static QStringList all;
        return all;
    }
    static QList<int> &lines()
    {
        static QList<int> all;
        return all;
    }

private:
    Q_DISABLE_COPY(FailureCapture)

    static void keep(const Quire::TestKit::Failure &failure)
    {
        texts().append(failure.text);
        lines().append(failure.place.line);
    }

    Quire::TestKit::FailureHandler m_before;
};
