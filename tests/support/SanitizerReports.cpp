// Linked into every test program that ThreadSanitizer watches: a report fails the test during which it came, and so is
// counted with the failed tests. Without this only the program's exit code would tell.

#include <gtest/gtest.h>

#include <atomic>

namespace {

std::atomic<int> reports{0};

class ReportListener : public ::testing::EmptyTestEventListener
{
    void OnTestEnd(const ::testing::TestInfo &) override
    {
        const int count = reports.exchange(0);
        if (count > 0)
            ADD_FAILURE() << "ThreadSanitizer made " << count << " report(s) during this test.";
    }
};

const bool listening = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new ReportListener);
    return true;
}();

} // namespace

/// Called by the sanitizer after each report that no suppression silences, on the thread that it is about.
extern "C" __attribute__((visibility("default"))) void __tsan_on_report(const void *)
{
    ++reports;
}
