// What the command line makes of its arguments: the action, the runtime server's arguments in
// their fixed order, and where reading stops.
#include "app/CommandLine.h"

#include <QTest>

using pomvar::CmdLine;

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void argumentsGiveActionAndServerArguments()
    {
        using A = CmdLine::Action;
        using Args = std::vector<std::string>;
        const struct
        {
            Args arguments;
            A action;
            Args rtArgs;
        } cases[] = {
            { {}, A::run, {} },
            // In a fixed order, each once; plain words are skipped.
            { { "--welcome", "--refresh", "word", "-", "--clear-recent", "--refresh" },
              A::run,
              { "--clear-recent", "--refresh", "--welcome" } },
            // Reading stops at an unknown long or short flag, and at "---".
            { { "--welcome", "--bogus", "--refresh" }, A::run, { "--welcome" } },
            { { "-v", "--refresh" }, A::run, {} },
            { { "--welcome", "---", "--refresh", "-h" }, A::run, { "--welcome" } },
            // Help wins over version; a group of short names is read up to its fault.
            { { "--version", "-h" }, A::help, {} },
            { { "-hx" }, A::help, {} },
            { { "--refresh", "--version" }, A::version, {} },
        };
        for (std::size_t row = 0; row < std::size(cases); ++row) {
            auto [arguments, action, rtArgs] = cases[row];
            arguments.insert(arguments.begin(), "/usr/bin/pomvar");
            const CmdLine cmdLine = pomvar::readCmdLine(arguments, false);
            QVERIFY2(cmdLine.action == action && cmdLine.rtArgs == rtArgs,
                     ("case " + std::to_string(row)).c_str());
        }
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
