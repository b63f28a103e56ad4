// What the command line makes of its arguments: the action, the runtime server's arguments in
// their fixed order, and where reading stops.
#include "app/CommandLine.h"

#include <QTest>

using pomvar::CmdLine;

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void argumentsGiveActionAndServerArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("action");
        QTest::addColumn<QStringList>("rtArgs");
        const int run = int(CmdLine::Action::run);
        QTest::newRow("none") << QStringList{} << run << QStringList{};
        QTest::newRow("reversed, repeated")
            << QStringList{ "--welcome", "--refresh", "--clear-recent", "--refresh" } << run
            << QStringList{ "--clear-recent", "--refresh", "--welcome" };
        QTest::newRow("plain words are skipped")
            << QStringList{ "word", "--welcome", "-" } << run << QStringList{ "--welcome" };
        QTest::newRow("stops at an unknown long flag")
            << QStringList{ "--welcome", "--bogus", "--refresh" } << run
            << QStringList{ "--welcome" };
        QTest::newRow("stops at an empty long name")
            << QStringList{ "--refresh", "--", "--welcome" } << run << QStringList{ "--refresh" };
        QTest::newRow("stops at an unknown short flag")
            << QStringList{ "-v", "--refresh" } << run << QStringList{};
        QTest::newRow("on/off flags take no value")
            << QStringList{ "--refresh=yes", "--welcome" } << run << QStringList{};
        QTest::newRow("--- ends the flags") << QStringList{ "--welcome", "---", "--refresh", "-h" }
                                            << run << QStringList{ "--welcome" };
        QTest::newRow("help wins over version")
            << QStringList{ "--version", "-h" } << int(CmdLine::Action::help) << QStringList{};
        QTest::newRow("help in a group read up to its fault")
            << QStringList{ "-hx" } << int(CmdLine::Action::help) << QStringList{};
        QTest::newRow("version") << QStringList{ "--refresh", "--version" }
                                 << int(CmdLine::Action::version) << QStringList{};
    }
    void argumentsGiveActionAndServerArguments()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, action);
        QFETCH(QStringList, rtArgs);
        std::vector<std::string> all{ "/usr/bin/pomvar" };
        for (const QString& argument : arguments)
            all.push_back(argument.toStdString());
        const CmdLine cmdLine = pomvar::readCmdLine(all, false);
        QCOMPARE(int(cmdLine.action), action);
        QStringList got;
        for (const auto& argument : cmdLine.rtArgs)
            got << QString::fromStdString(argument);
        QCOMPARE(got, rtArgs);
    }

    void boldMarksOnlyTheTwoHeadings()
    {
        const std::string help = pomvar::readCmdLine({ "/opt/x/bin/pomvar", "--help" }, true).text;
        QVERIFY(help.starts_with("Pomvar for Mac: the customizable app launcher for macOS\n\n"
                                 "\x1b[1musage:\x1b[0m pomvar [options]\n"
                                 "\x1b[1moptions:\x1b[0m\n  --clear-recent\n"));
        QCOMPARE(std::count(help.begin(), help.end(), '\x1b'), 4);
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
