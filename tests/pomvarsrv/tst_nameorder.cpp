// All Apps' order in the three kinds of locale users run: C (no collation of its own), English
// and German. Case is ignored, accents sort with their letter, numbers by value.
#include "NameOrder.h"

#include <QTest>

using pomvar::srv::NameOrder;

class TestNameOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readingOrderInEveryLocale()
    {
        const std::vector<QString> names = { "zulu tool", "\u00c9crire", "bravo", "Alpha",
                                             "app 10",    "\u00c4rger",  "app 9", "Zebra",
                                             "echo",      "Stra\u00dfe", "Strasz" };
        const QString expected = "Alpha|app 9|app 10|\u00c4rger|bravo|echo|\u00c9crire|"
                                 "Stra\u00dfe|Strasz|Zebra|zulu tool";
        for (const char* locale : { "C.UTF-8", "en_US.UTF-8", "de_DE.UTF-8" }) {
            QStringList got;
            for (const std::size_t i : NameOrder(QLocale(locale)).sorted(names))
                got << names[i];
            QCOMPARE(got.join(u'|'), expected);
        }
        // Equal names keep their order.
        QCOMPARE(NameOrder(QLocale::c()).sorted({ "b", "A", "a" }),
                 (std::vector<std::size_t>{ 1, 2, 0 }));
    }
};

QTEST_APPLESS_MAIN(TestNameOrder)
#include "tst_nameorder.moc"
