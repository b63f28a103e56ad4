// The flag parser's rules and fault texts, and what the command line makes of them.
#include "app/CommandLine.h"
#include "app/FlagParser.h"

#include <QTest>

using pomvar::CmdLine;
using pomvar::FlagParser;

namespace {

std::vector<std::string> argv(std::initializer_list<const char*> arguments)
{
    std::vector<std::string> all{ "/usr/bin/tool" };
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
}

QString text(const std::optional<std::string>& failure)
{
    return failure ? QString::fromStdString(*failure) : QStringLiteral("<none>");
}

} // namespace

class TestFlagParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toolNameIsTheLastPathComponent()
    {
        QCOMPARE(FlagParser({ "/opt/x/bin/pomvar" }).toolName(), "pomvar");
        QCOMPARE(FlagParser({ "pomvar" }).toolName(), "pomvar");
        QCOMPARE(FlagParser({}).toolName(), "<unknown>");
    }

    void longAndShortNamesSetTheirFlag()
    {
        FlagParser parser(argv({ "--all", "-vq" }));
        const auto& all = parser.define('a', "all", "");
        const auto& verbose = parser.define('v', "verbose", "");
        const auto& quiet = parser.define('q', "quiet", "");
        const auto& other = parser.define('o', "other", "");
        QCOMPARE(text(parser.parsingFailure()), "<none>");
        QVERIFY(all.wasSet);
        QVERIFY(verbose.wasSet);
        QVERIFY(quiet.wasSet);
        QVERIFY(!other.wasSet);
    }

    void plainParametersAndTripleDash()
    {
        FlagParser parser(argv({ "one", "-", "--all", "---", "--all", "-x", "two" }));
        const auto& all = parser.define(std::nullopt, "all", "");
        QCOMPARE(text(parser.parsingFailure()), "<none>");
        QVERIFY(all.wasSet);
        QCOMPARE(parser.parameters(),
                 (std::vector<std::string>{ "one", "-", "--all", "-x", "two" }));
    }

    void faultsStopParsingAndNameTheFlag_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("failure");
        QTest::addColumn<bool>("allSeen");
        QTest::newRow("unknown long")
            << QStringList{ "--bogus", "--all" } << "error parsing flag `bogus`" << false;
        QTest::newRow("unknown short") << QStringList{ "-ax", "--all" } << "error parsing flag `x`"
                                       << true; // the group is read up to the fault
        QTest::newRow("empty long name")
            << QStringList{ "--", "--all" } << "error parsing flag ``" << false;
        QTest::newRow("value for an on/off flag")
            << QStringList{ "--all=yes" } << "malformed value `all`" << false;
        QTest::newRow("missing value")
            << QStringList{ "--all", "--name" } << "malformed value `name`" << true;
        QTest::newRow("missing short value")
            << QStringList{ "-n" } << "malformed value `n`" << false;
        QTest::newRow("value flag inside a group")
            << QStringList{ "-na", "x" } << "illegal flag combination with `n`" << false;
        QTest::newRow("value given twice")
            << QStringList{ "--name=a", "-n", "b" } << "too many values from `n`" << false;
    }

    void faultsStopParsingAndNameTheFlag()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, failure);
        QFETCH(bool, allSeen);
        std::vector<std::string> all{ "tool" };
        for (const QString& argument : arguments)
            all.push_back(argument.toStdString());
        FlagParser parser(all);
        const auto& flag = parser.define('a', "all", "");
        parser.defineWithValue('n', "name", "");
        QCOMPARE(text(parser.parsingFailure()), failure);
        QCOMPARE(flag.wasSet, allSeen);
    }

    void valuesAreReadFromTheArgumentOrTheNextOne()
    {
        FlagParser parser(argv({ "--name=a=b", "-c", "--", "--last", "z" }));
        const auto& name = parser.defineWithValue('n', "name", "");
        const auto& count = parser.defineWithValue('c', "count", "");
        const auto& last = parser.defineWithValue(std::nullopt, "last", "");
        QCOMPARE(text(parser.parsingFailure()), "<none>");
        QCOMPARE(name.value, std::optional<std::string>("a=b"));
        QCOMPARE(count.value, std::optional<std::string>("--"));
        QCOMPARE(last.value, std::optional<std::string>("z"));
        QVERIFY(parser.parameters().empty());
    }

    void usageListsFlagsInDefinitionOrder()
    {
        FlagParser parser({ "/bin/tool" });
        parser.define(std::nullopt, "zeta", "last letter");
        parser.define('a', "alpha", "first letter");
        const FlagParser::Style star = [](std::string_view word) {
            return "*" + std::string(word);
        };
        const FlagParser::Style same = [](std::string_view word) { return std::string(word); };
        QCOMPARE(parser.usageDescription("usage:", "[options]", star, "options:", same, " "),
                 std::string("*usage: tool [options]\n*options:\n --zeta\n   last letter\n"
                             " -a, --alpha\n   first letter\n"));
    }

    void cmdLineHandsOptionsOnInDefinitionOrder_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("rtArgs");
        QTest::newRow("none") << QStringList{} << QStringList{};
        QTest::newRow("all three reversed")
            << QStringList{ "--welcome", "--refresh", "--clear-recent" }
            << QStringList{ "--clear-recent", "--refresh", "--welcome" };
        QTest::newRow("repeated") << QStringList{ "--refresh", "--refresh" }
                                  << QStringList{ "--refresh" };
        QTest::newRow("stops at unknown")
            << QStringList{ "--welcome", "--bogus", "--refresh" } << QStringList{ "--welcome" };
        QTest::newRow("-v is unknown") << QStringList{ "-v", "--refresh" } << QStringList{};
    }

    void cmdLineHandsOptionsOnInDefinitionOrder()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, rtArgs);
        std::vector<std::string> all{ "pomvar" };
        for (const QString& argument : arguments)
            all.push_back(argument.toStdString());
        const CmdLine cmdLine = pomvar::readCmdLine(all, false);
        QCOMPARE(cmdLine.action, CmdLine::Action::run);
        QStringList got;
        for (const auto& argument : cmdLine.rtArgs)
            got << QString::fromStdString(argument);
        QCOMPARE(got, rtArgs);
    }

    void helpWinsOverVersion()
    {
        QCOMPARE(pomvar::readCmdLine(argv({ "--version", "-h" }), false).action,
                 CmdLine::Action::help);
        const CmdLine version = pomvar::readCmdLine(argv({ "--refresh", "--version" }), false);
        QCOMPARE(version.action, CmdLine::Action::version);
        QCOMPARE(version.text, "Pomvar for Mac version 0.1.0\n");
    }

    void boldMarksOnlyTheTwoHeadings()
    {
        const std::string help = pomvar::readCmdLine(argv({ "--help" }), true).text;
        QVERIFY(help.starts_with("Pomvar for Mac: the customizable app launcher for macOS\n\n"
                                 "\x1b[1musage:\x1b[0m tool [options]\n\x1b[1moptions:\x1b[0m\n"
                                 "  --clear-recent\n"));
        QCOMPARE(std::count(help.begin(), help.end(), '\x1b'), 4);
        QVERIFY(help.ends_with("      show version information and exit\n\n"));
    }
};

QTEST_GUILESS_MAIN(TestFlagParser)
#include "tst_flagparser.moc"
