// The search's calculator through the real module, as the server asks it: one table of texts,
// the expressions and conversions with their answers, the words and names with none; the library
// is mapped only once the first expression is asked.
#include "pomvarsrv/search/Calculator.h"
#include "pomvarsrv/search/ExpressionGuess.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace pomvar::srv;

class TestCalculator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersExpressionsAndNothingElse()
    {
        const auto libraryMapped = [] {
            QFile maps(QStringLiteral("/proc/self/maps"));
            return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libqalculate");
        };
        QMap<QString, QString> answers;
        Calculator calculator(QStringLiteral(POMVAR_CALCULATOR_MODULE),
                              [&](const QString& question, const QString& answer, const QString&) {
                                  answers[question] = answer;
                              });
        // The text, and its answer; none for a text that stays an app search.
        const std::pair<QString, QString> cases[] = {
            { "2*(3+4)", "14" },
            { "sqrt(16)+1", "5" },
            { "2^10", "1024" },
            { "10 km to mi", "6.2137119 mi" },
            { "1/3", "0.33333333" },
            { "Firefox", "" },
            { "2048", "" },
            { "7-Zip", "" },
            { "-5", "" },
            { "pi", "" },
            { "10 EUR to USD", "" },
            { "1 + x", "" },
            { "command(\"echo 5\")+1", "" },
        };
        QVERIFY(!libraryMapped());
        for (const auto& [text, answer] : cases) {
            if (!ExpressionGuess::looksLikeExpression(text)) {
                QVERIFY2(answer.isEmpty(), qPrintable(text));
                continue;
            }
            calculator.ask(text);
            // The first answer waits for the library's definitions: long on a busy machine.
            QTRY_VERIFY2_WITH_TIMEOUT(answers.contains(text), qPrintable(text), 60000);
            QCOMPARE(answers[text], answer);
        }
        QVERIFY(libraryMapped());
    }

public:
    static int threadsNamed(const QByteArray& name)
    {
        int count = 0;
        for (const QString& task : QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs)) {
            QFile comm(QStringLiteral("/proc/self/task/%1/comm").arg(task));
            count += comm.open(QIODevice::ReadOnly) && comm.readAll().trimmed() == name;
        }
        return count;
    }
};

// Qt's threads are detached: QtTest's watchdog ends its last steps after the tests have waited
// for it, and a process leaving meanwhile leaks the thread's data. So it leaves once the
// watchdog is gone.
int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    TestCalculator test;
    const int failed = QTest::qExec(&test, argc, argv);
    QDeadlineTimer deadline(20000);
    while (TestCalculator::threadsNamed("QtTest Watchdog") > 0 && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    return failed;
}
#include "tst_calculator.moc"
