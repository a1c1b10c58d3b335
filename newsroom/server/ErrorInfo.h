#pragma once

#include <QString>

#include <quire/platform/Automation.h>

namespace Newsroom {

/// The words that go with a failed call.
namespace ErrorInfo {

/// A short English sentence for a code; "Error 0x........." for one that the server does not answer by itself.
QString text(HRESULT code);

/// Sets this thread's error information: the sentence, the source "Orvex", and the interface that refused.
void set(HRESULT code, REFIID iid) noexcept;

} // namespace ErrorInfo
} // namespace Newsroom
