// The search window in a server run in-process against real desktop entries, driven by keys and
// clicks: it opens on "app-search" from the wire, launches through the same path as "launch"
// (Recent and its flag, read back over the wire), lists and launches an app's desktop actions,
// keeps one window for every request and closes when it loses the focus; rows draw the icon file
// for the display's scale, and the highlighted one both its lines readable on the highlight
// under a light and a dark palette; an expression's answer comes first and Enter copies it.
#include "IconFiles.h"
#include "InProcessServer.h"
#include "Palettes.h"
#include "TestDesktop.h"
#include "pomvarsrv/ui/SearchResultDelegate.h"
#include "pomvarsrv/ui/SearchResults.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

using namespace pomvar::srv;
using namespace pomvar::test;
namespace rq = pomvar::request;

class TestSearchWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_marker = m_desktop.root() + "/bin/marker";
        // Notes its first argument in a file of that name beside it.
        QVERIFY(TestDesktop::write(m_marker, "#!/bin/sh\ntouch \"$0.$1\"\n", true));
        const std::pair<const char*, QByteArray> entries[] = {
            { "marker", "Name=Marker\nComment=Leaves a mark\nExec=" + m_marker.toUtf8() + " app" },
            { "browser",
              "Name=Browser\nGenericName=Web Browser\nExec=" + m_marker.toUtf8() +
                  " browser\nActions=new-window;\n[Desktop Action new-window]\nName=New Window\n"
                  "Exec=" +
                  m_marker.toUtf8() + " window" },
            { "marble", "Name=Marble\nExec=" + m_marker.toUtf8() + " marble" },
        };
        for (const auto& [id, lines] : entries)
            QVERIFY(TestDesktop::writeEntry(
                m_desktop.systemData(), QString::fromLatin1(id) + ".desktop", lines));
        InProcessServer::useDesktop(m_desktop);
        QVERIFY(m_server.start());
    }

    void keysSearchLaunchAndShowActions()
    {
        QLineEdit* field = openWindow();
        QVERIFY(field);
        auto* window = field->window();
        auto* list = window->findChild<QListView*>();
        QTest::keyClicks(field, "mar");
        // Name prefixes, in catalogue order, then the program that all three run.
        QCOMPARE(rowNames(list), (QStringList{ "Marble", "Marker", "Browser" }));
        // End, Page Up, Home and Page Down move through the results.
        for (const auto& [key, row] : { std::pair(Qt::Key_End, 2),
                                        { Qt::Key_PageUp, 0 },
                                        { Qt::Key_PageDown, 2 },
                                        { Qt::Key_Home, 0 } }) {
            QTest::keyClick(field, key);
            QCOMPARE(list->currentIndex().row(), row);
        }
        // Down, Enter: the second launches, through the wire's "launch" path.
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY(QFile::exists(m_marker + ".app"));
        QVERIFY(!window->isVisible());
        const nlohmann::json recent = m_server.ask(rq::plain(rq::getRecentAppsMenuData));
        QCOMPARE(recent[0]["appkey"], "marker.desktop");

        // A second request shows the same window, its text selected; the empty query lists Recent.
        QCOMPARE(openWindow(), field);
        QCOMPARE(field->selectedText(), "mar");
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(field->text().isEmpty() && window->isVisible());
        QCOMPARE(rowNames(list), QStringList{ "Marker" });
        // Right at the end of the text lists the actions; Left goes back; Enter launches one.
        QTest::keyClicks(field, "web");
        QTest::keyClick(field, Qt::Key_Right);
        QCOMPARE(rowNames(list), QStringList{ "New Window" });
        QTest::keyClick(field, Qt::Key_Left);
        QCOMPARE(rowNames(list), QStringList{ "Browser" });
        QTest::keyClick(field, Qt::Key_Return, Qt::AltModifier);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY(QFile::exists(m_marker + ".window"));
        // Ctrl+1 and Ctrl+2 launch the first and the second result: Marker, used now, before
        // Marble. Escape on an empty field closes.
        for (const auto& [key, mark] : { std::pair(Qt::Key_1, ".app"), { Qt::Key_2, ".marble" } }) {
            QVERIFY(QFile::remove(m_marker + mark) || !QFile::exists(m_marker + mark));
            openWindow();
            QTest::keyClicks(field, "mar");
            QTest::keyClick(field, key, Qt::ControlModifier);
            QTRY_VERIFY(QFile::exists(m_marker + mark));
        }
        // An expression: the calculator's answer comes first, selected; Enter copies it.
        openWindow();
        QTest::keyClicks(field, "2*(3+4)");
        QTRY_COMPARE(rowNames(list).value(0), "14");
        QCOMPARE(list->currentIndex().row(), 0);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(QGuiApplication::clipboard()->text(), "14");
        openWindow();
        field->clear();
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(!window->isVisible());
    }

    void clicksAndFocusLoss()
    {
        QLineEdit* field = openWindow();
        QVERIFY(field);
        auto* list = field->window()->findChild<QListView*>();
        QTest::keyClicks(field, "browser");
        // A right-click shows the actions, as the window system delivers it.
        const QPoint row = list->visualRect(list->model()->index(0, 0)).center();
        QTest::mouseClick(field->window()->windowHandle(),
                          Qt::RightButton,
                          {},
                          list->viewport()->mapTo(field->window(), row));
        QTRY_COMPARE(rowNames(list), QStringList{ "New Window" });
        // Another window taking the focus closes it.
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!field->window()->isVisible());
        // A click launches.
        QVERIFY(QFile::remove(m_marker + ".app") || !QFile::exists(m_marker + ".app"));
        QCOMPARE(openWindow(), field);
        QTest::keyClicks(field, "marker");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row);
        QTRY_VERIFY(QFile::exists(m_marker + ".app"));
    }

    void resultsReadOnTheHighlight()
    {
        QLineEdit* field = openWindow();
        QVERIFY(field);
        auto* list = field->window()->findChild<QListView*>();
        QTest::keyClicks(field, "marker");
        for (const QPalette& palette : { lightPalette(), darkPalette() }) {
            list->setPalette(palette);
            const QImage row =
                list->viewport()->grab(list->visualRect(list->currentIndex())).toImage();
            const QColor highlight = palette.color(QPalette::Highlight);
            QCOMPARE(row.pixelColor(row.width() - 4, 2), highlight);
            // "Marker", then "Leaves a mark", right of the icon.
            const int left = int(44 * row.devicePixelRatio()), half = row.height() / 2;
            for (const int top : { 0, half })
                QVERIFY(textContrast(row, QRect(left, top, row.width() - left, half), highlight) >=
                        4.5);
        }
        field->window()->close();
    }

    void rowsDrawTheIconFileForTheScale()
    {
        QTemporaryDir dir;
        const QString small = dir.filePath("24.png"), large = dir.filePath("48.png");
        QVERIFY(IconFiles::writePng(small, 24, 24, Qt::red) &&
                IconFiles::writePng(large, 48, 48, Qt::blue));
        SearchResults model;
        model.setRows({ { "k", "Name", "Detail", small, large } });
        SearchResultDelegate delegate;
        for (const auto& [ratio, colour] : { std::pair(1.0, QColor(Qt::red)), { 2.0, Qt::blue } }) {
            QImage image(QSize(600, 44) * ratio, QImage::Format_ARGB32);
            image.setDevicePixelRatio(ratio);
            image.fill(Qt::white);
            QPainter painter(&image);
            QStyleOptionViewItem option;
            option.rect = QRect(0, 0, 600, 44);
            option.state = QStyle::State_Enabled;
            delegate.paint(&painter, option, model.index(0));
            painter.end();
            QCOMPARE(image.pixelColor(QPoint(22, 22) * ratio), colour);
        }
    }

private:
    // Sends "app-search" over the wire; the window's field once it is shown and focused.
    QLineEdit* openWindow()
    {
        if (!m_server.send(rq::plain(rq::appSearch)))
            return nullptr;
        QWidget* window = InProcessServer::waitForWindow("searchWindow");
        auto* field = window ? window->findChild<QLineEdit*>() : nullptr;
        return field && QTest::qWaitFor([&] { return field->hasFocus(); }) ? field : nullptr;
    }

    static QStringList rowNames(QListView* list)
    {
        QStringList names;
        for (int row = 0; row < list->model()->rowCount(); ++row)
            names << list->model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
        return names;
    }

    TestDesktop m_desktop;
    QString m_marker;
    InProcessServer m_server;
};

QTEST_MAIN(TestSearchWindow)
#include "tst_searchwindow.moc"
