// kestrel-sim against Hamlib's own FT-847 client: rigctl must find the rig it expects.
#include "tests/support/SimProcess.h"

#include <QStandardPaths>
#include <gtest/gtest.h>

namespace {
struct Rigctl {
    int exitCode = -1;
    QStringList out;
    QString err;
};

Rigctl rigctl(const QString& port, const QStringList& commands)
{
    QProcess p;
    p.start(QStringLiteral("rigctl"), QStringList { "-m", "1001", "-r", port } + commands);
    Rigctl r;
    if (!p.waitForFinished(20000)) {
        p.kill();
        p.waitForFinished();
    }
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromLocal8Bit(p.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}
} // namespace

TEST(SimHamlib, RigctlForTheFt847SetsAndReadsFrequencyModeAndPtt)
{
    if (QStandardPaths::findExecutable("rigctl").isEmpty())
        GTEST_SKIP() << "rigctl (libhamlib-utils) is not installed; scripts/install-deps installs it";
    SimProcess sim;
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();
    const QString port = sim.place("rig");

    // Each rigctl run opens with CAT ON and closes with CAT OFF, as on the real rig. A read the
    // rig leaves unanswered fails rigctl after its one-second timeout (no retries for this rig).
    const struct {
        QStringList commands;
        QStringList expected;
    } runs[] = {
        { { "F", "144200000", "f" }, { "144200000" } },
        { { "M", "CW", "0", "m" }, { "CW", "*" } },
        { { "M", "USB", "0", "m" }, { "USB", "*" } },
        { { "T", "1", "t" }, { "1" } },
        { { "T", "0", "t" }, { "0" } },
        { { "F", "432100000", "M", "FM", "0", "f", "m", "t" }, { "432100000", "FM", "*", "0" } },
    };
    for (const auto& run : runs) {
        const Rigctl r = rigctl(port, run.commands);
        const std::string what = run.commands.join(' ').toStdString();
        EXPECT_EQ(r.exitCode, 0) << what << "\n" << r.err.toStdString();
        // "*": the passband, which Hamlib works out itself from the mode
        QStringList out = r.out;
        for (int i = 0; i < out.size() && i < run.expected.size(); ++i)
            if (run.expected[i] == "*" && out[i].toInt() > 0)
                out[i] = "*";
        EXPECT_EQ(out, run.expected) << what << "\n" << r.err.toStdString();
        EXPECT_FALSE(r.err.contains("timed out", Qt::CaseInsensitive)) << what << "\n" << r.err.toStdString();
    }
    const QString state = sim.waitFor("rig", "frequency=432100000 mode=FM tx=0");
    EXPECT_TRUE(state.contains("frequency=432100000 mode=FM tx=0")) << state.toStdString();
    EXPECT_TRUE(state.contains("refused=0")) << state.toStdString();
}
