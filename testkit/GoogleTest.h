#pragma once

/// \file
/// The test kit in a program of GoogleTest: including this header is enough to have failed checks fail the test.

#include <gtest/gtest.h>

#include <quire/testkit/TestKit.h>

namespace Quire {
namespace TestKit {

/// Makes the failure one of the running test, which goes on.
inline void reportToGoogleTest(const Failure &failure)
{
    ADD_FAILURE_AT(failure.place.file, failure.place.line) << failure.text.toUtf8().constData();
}

/// Has failures go to GoogleTest from the start of the program.
inline const bool reportsToGoogleTest = (setFailureHandler(reportToGoogleTest), true);

} // namespace TestKit
} // namespace Quire
