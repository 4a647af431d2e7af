// Main of every test program: crashes give a backtrace, leaks fail the test that left them.
#include "support/CrashTrace.h"
#include "support/Input.h"
#include "support/LeakCheck.h"

#include <afxwin.h>
#include <gtest/gtest.h>

#include <string>

namespace {

// The first run of a test also makes what the system and the run time make once and keep. So a test
// after which more is held than before is only suspected, and run again: what grows twice leaks.
class LeakListener : public testing::EmptyTestEventListener
{
public:
    bool HasSuspects() const { return !suspects.empty(); }

    // The filter for the second run, in which growth is a failure.
    std::string BeginSecondRun()
    {
        secondRun = true;
        return std::move(suspects);
    }

private:
    void OnTestStart(const testing::TestInfo&) override
    {
        DeleteTemporaryObjects();
        before = CountResources();
    }

    void OnTestEnd(const testing::TestInfo& test) override
    {
        DeleteTemporaryObjects();
        const ResourceCounts after = CountResources();
        if (after == before || test.result()->Failed() || test.result()->Skipped()) {
            return;
        }
        if (secondRun) {
            // What the system lends for a moment it takes back.
            if (!PumpUntil([&] { return CountResources() == before; }, 1'000)) {
                ADD_FAILURE() << "held before: " << before << "\nheld after:  " << after;
            }
            return;
        }
        suspects +=
            std::string(suspects.empty() ? "" : ":") + test.test_suite_name() + "." + test.name();
    }

    // What the framework does in idle time: the objects that it made for handles of others go.
    static void DeleteTemporaryObjects() { CWinThread().OnIdle(1); }

    ResourceCounts before;
    std::string suspects;
    bool secondRun = false;
};

}  // namespace

int main(int argc, char** argv)
{
    InstallCrashTrace();
    testing::InitGoogleTest(&argc, argv);
    if (!AfxWinInit(::GetModuleHandleW(nullptr), nullptr, ::GetCommandLineW(), SW_SHOWNORMAL)) {
        return 2;
    }
    InstallResourceCounters();
    // Two clicks of two tests are never one double click.
    ::SetDoubleClickTime(1);

    auto* const leaks = new LeakListener;  // owned by GoogleTest
    testing::UnitTest::GetInstance()->listeners().Append(leaks);
    int status = RUN_ALL_TESTS();
    if (leaks->HasSuspects()) {
        testing::GTEST_FLAG(filter) = leaks->BeginSecondRun();
        const int second = RUN_ALL_TESTS();
        status = status != 0 ? status : second;
    }
    return status;
}
