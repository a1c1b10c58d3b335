#pragma once

/// \file
/// The test kit in a program of Qt Test: including this header is enough to have failed checks fail the test function,
/// which goes on. Qt Test itself wants checks on the thread that runs the test.

#include <QtTest/qtestcase.h>

#include <quire/testkit/TestKit.h>

namespace Quire {
namespace TestKit {

/// Makes the failure one of the running test function.
inline void reportToQtTest(const Failure &failure)
{
    QTest::qFail(failure.text.toUtf8().constData(), failure.place.file, failure.place.line);
}

/// Has failures go to Qt Test from the start of the program.
inline const bool reportsToQtTest = (setFailureHandler(reportToQtTest), true);

} // namespace TestKit
} // namespace Quire
