// The gate between the services and the operator: one box for the start-up, a fault once per
// run, nothing while closing.
#include "core/PromptGate.h"

#include <gtest/gtest.h>

TEST(PromptGate, StartUpTextsBecomeOneBoxAndAFaultIsReportedOncePerRun)
{
    RecordingPrompts shown;
    PromptGate gate(shown);
    gate.beginStartup();
    gate.information("A");
    gate.reportOnce("fault");
    gate.information("A"); // the same text twice in one start-up: once
    gate.reportOnce("fault");
    EXPECT_TRUE(shown.shown.isEmpty());
    gate.finishStartup();
    EXPECT_EQ(shown.shown, QStringList { "A\n\nfault" });

    // after the start-up: shown at once; a fault told before stays quiet, a new one is told
    gate.information("A");
    gate.reportOnce("fault");
    gate.reportOnce("other fault");
    EXPECT_EQ(shown.shown, (QStringList { "A\n\nfault", "A", "other fault" }));
    gate.finishStartup(); // nothing gathered, nothing shown
    EXPECT_EQ(shown.shown.size(), 3);
}

TEST(PromptGate, AFaultSilencesWhatFollowsFromItInTheStartUpOnly)
{
    RecordingPrompts shown;
    PromptGate gate(shown);
    gate.beginStartup();
    gate.information("before");
    gate.reportOnce("database", PromptGate::Fault::Cause);
    gate.information("list: no such table");
    gate.reportOnce("beacons: no such table");
    gate.reportOnce("settings file", PromptGate::Fault::Standalone); // still told
    gate.finishStartup();
    EXPECT_EQ(shown.shown, QStringList { "before\n\ndatabase\n\nsettings file" });

    gate.information("list: no such table");
    gate.reportOnce("beacons: no such table"); // counted as told: it followed the fault
    EXPECT_EQ(shown.shown.size(), 2);
    EXPECT_EQ(shown.shown.last(), "list: no such table");
}

TEST(PromptGate, ClosingDismissesTheOpenBoxShowsNothingAndAnswersNo)
{
    RecordingPrompts shown;
    PromptGate gate(shown);
    gate.beginStartup();
    gate.information("gathered, never shown");
    gate.beginClosing();
    EXPECT_EQ(shown.dismissed, 1);
    EXPECT_TRUE(gate.isClosing());
    gate.information("at exit");
    gate.reportOnce("fault at exit");
    EXPECT_FALSE(gate.question("Delete?"));
    gate.finishStartup();
    EXPECT_TRUE(shown.shown.isEmpty());
    EXPECT_TRUE(shown.asked.isEmpty());
}

TEST(PromptGate, ASilencedTextIsOnlyLogged)
{
    RecordingPrompts shown;
    PromptGate gate(shown);
    {
        const PromptGate::Silence quiet(gate);
        gate.information("replaced by a better one");
        EXPECT_FALSE(gate.question("asked?"));
    }
    gate.information("shown");
    EXPECT_TRUE(gate.question("asked?"));
    EXPECT_EQ(shown.shown, QStringList { "shown" });
    EXPECT_EQ(shown.asked, QStringList { "asked?" });
}
