#include "testmain.h"

#include "../support/mousedrag.h"
#include "../support/plotbench.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QSignalSpy>
#include <QToolButton>

#include <cmath>

/// What hands do to a plot.
class tst_GraphicMouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wheelZoomsAboutThePointer_data();
    void wheelZoomsAboutThePointer();
    void wheelAlongOneAxis_data();
    void wheelAlongOneAxis();
    void dragMovesThePicture();
    void dragByAnotherButton();
    void tremblingClickMovesNothing();
    void releaseEndsTheDrag();
    void doubleClickFits();
    void doubleClickByAnotherButton();
    void pinchZooms();
    void disabledIgnoresTheMouse();
    void toolButtonsSwitch_data();
    void toolButtonsSwitch();
    void zoomButtons();
    void clearButton();
    void legendHidesCurves();
    void legendByKeyboard();
    void inputsShowTheRange();
    void inputsSetTheRange_data();
    void inputsSetTheRange();
    void inputsKeepWhatIsTyped();
    void inputsOfTimes();
    void statusSaysWhatIsThere();
    void cursorReadsValues();
};

using Range = QPair<double, double>;

static QLineEdit *edit(const Graphic &plot, const char *name)
{
    return plot.findChild<QLineEdit *>(QLatin1String(name));
}

static void type(QLineEdit *edit, const QString &text)
{
    edit->selectAll();
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
}

void tst_GraphicMouse::wheelZoomsAboutThePointer_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("turn");
    QTest::addColumn<double>("width");

    QTest::newRow("into the middle") << QPointF(50, 50) << 120 << 80.0;
    QTest::newRow("near a corner") << QPointF(10, 90) << 120 << 80.0;
    QTest::newRow("three notches at once") << QPointF(30, 30) << 360 << 51.2;
    QTest::newRow("half a notch") << QPointF(30, 30) << 60 << 100.0 * std::sqrt(0.8);
    QTest::newRow("out") << QPointF(30, 70) << -120 << 125.0;
}

void tst_GraphicMouse::wheelZoomsAboutThePointer()
{
    QFETCH(QPointF, point);
    QFETCH(int, turn);
    QFETCH(double, width);
    PlotBench bench;
    const QPointF position = bench.at(point.x(), point.y());
    bench.wheel(position, turn);
    QVERIFY(isClose(bench.width(Graphic::XAxis), width));
    QVERIFY(isClose(bench.width(Graphic::YAxis), width));
    bench.plot.grab(); // with other labels at the axes
    const QPointF now = bench.plot.pointAt(position);
    QVERIFY(isClose(now.x(), point.x()) && isClose(now.y(), point.y()));
    QVERIFY(!bench.plot.isFitted());
}

void tst_GraphicMouse::wheelAlongOneAxis_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<double>("xWidth");
    QTest::addColumn<double>("yWidth");

    QTest::newRow("both") << Qt::KeyboardModifiers(Qt::NoModifier) << 80.0 << 80.0;
    QTest::newRow("x with Ctrl") << Qt::KeyboardModifiers(Qt::ControlModifier) << 80.0 << 100.0;
    QTest::newRow("y with Shift") << Qt::KeyboardModifiers(Qt::ShiftModifier) << 100.0 << 80.0;
}

void tst_GraphicMouse::wheelAlongOneAxis()
{
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(double, xWidth);
    QFETCH(double, yWidth);
    const PlotBench bench;
    bench.wheel(bench.at(50, 50), 120, modifiers);
    QVERIFY(isClose(bench.width(Graphic::XAxis), xWidth));
    QVERIFY(isClose(bench.width(Graphic::YAxis), yWidth));
}

void tst_GraphicMouse::dragMovesThePicture()
{
    const PlotBench bench;
    QWidget *canvas = bench.plot.canvas();
    const QPointF start = bench.at(50, 50);
    const QPointF end = bench.at(70, 40);
    QTest::mousePress(canvas, Qt::LeftButton, Qt::NoModifier, start.toPoint());
    dragMouse(canvas, (start + end) / 2.0);
    dragMouse(canvas, end);
    QCOMPARE(canvas->cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseRelease(canvas, Qt::LeftButton, Qt::NoModifier, end.toPoint());
    QCOMPARE(canvas->cursor().shape(), Qt::ArrowCursor);
    // The point that was taken is where the pointer is now, but for the rounding of the press.
    QVERIFY(isClose(bench.plot.visibleRange(Graphic::XAxis).first, -20.0, 0.3));
    QVERIFY(isClose(bench.plot.visibleRange(Graphic::YAxis).first, 10.0, 0.3));
    QVERIFY(isClose(bench.width(Graphic::XAxis), 100.0));
    QVERIFY(isClose(bench.width(Graphic::YAxis), 100.0));
    QVERIFY(!bench.plot.isFitted());
}

void tst_GraphicMouse::dragByAnotherButton()
{
    const PlotBench bench;
    QWidget *canvas = bench.plot.canvas();
    QTest::mousePress(canvas, Qt::RightButton, Qt::NoModifier, QPoint(100, 100));
    dragMouse(canvas, QPointF(200, 150), Qt::RightButton);
    QTest::mouseRelease(canvas, Qt::RightButton, Qt::NoModifier, QPoint(200, 150));
    QCOMPARE(bench.plot.visibleRange(Graphic::XAxis), Range(0, 100));
}

void tst_GraphicMouse::tremblingClickMovesNothing()
{
    PlotBench bench;
    bench.plot.fit();
    QWidget *canvas = bench.plot.canvas();
    QTest::mousePress(canvas, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
    dragMouse(canvas, QPointF(100 + QApplication::startDragDistance() - 1, 100));
    QTest::mouseRelease(canvas, Qt::LeftButton, Qt::NoModifier, QPoint(101, 100));
    QVERIFY(bench.plot.isFitted());
}

void tst_GraphicMouse::releaseEndsTheDrag()
{
    const PlotBench bench;
    QWidget *canvas = bench.plot.canvas();
    QTest::mousePress(canvas, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
    QTest::mouseRelease(canvas, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
    dragMouse(canvas, QPointF(300, 200), Qt::NoButton);
    QCOMPARE(bench.plot.visibleRange(Graphic::XAxis), Range(0, 100));
}

void tst_GraphicMouse::doubleClickFits()
{
    PlotBench bench;
    bench.plot.setVisibleRange(Graphic::XAxis, 3.0, 4.0);
    QVERIFY(!bench.plot.isFitted());
    QTest::mouseDClick(bench.plot.canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    QVERIFY(bench.plot.isFitted());
    QCOMPARE(bench.plot.visibleRange(Graphic::XAxis), Range(0, 100));
    bench.plot.addPoint(500.0, 0.0);
    QCOMPARE(bench.plot.visibleRange(Graphic::XAxis), Range(0, 500));
}

void tst_GraphicMouse::doubleClickByAnotherButton()
{
    const PlotBench bench;
    QTest::mouseDClick(bench.plot.canvas(), Qt::RightButton, Qt::NoModifier, QPoint(50, 50));
    QVERIFY(!bench.plot.isFitted());
}

void tst_GraphicMouse::pinchZooms()
{
    const PlotBench bench;
    QWidget *canvas = bench.plot.canvas();
    QTouchDevice *device = QTest::createTouchDevice();
    const QPoint middle = bench.at(50, 50).toPoint();
    QTest::touchEvent(canvas, device).press(1, middle - QPoint(20, 0), canvas).press(2, middle + QPoint(20, 0), canvas);
    for (int apart = 22; apart <= 80; apart += 2)
        QTest::touchEvent(canvas, device)
            .move(1, middle - QPoint(apart, 0), canvas)
            .move(2, middle + QPoint(apart, 0), canvas);
    QTest::touchEvent(canvas, device)
        .release(1, middle - QPoint(80, 0), canvas)
        .release(2, middle + QPoint(80, 0), canvas);
    QVERIFY2(bench.width(Graphic::XAxis) < 60.0, qPrintable(QString::number(bench.width(Graphic::XAxis))));
    QVERIFY(isClose(bench.plot.pointAt(middle).x(), 50.0, 2.0));
}

void tst_GraphicMouse::disabledIgnoresTheMouse()
{
    PlotBench bench;
    bench.plot.setEnabled(false);
    QWidget *canvas = bench.plot.canvas();
    const auto click = [canvas](QEvent::Type type) {
        QMouseEvent event(type, QPointF(100, 100), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(canvas, &event);
    };
    click(QEvent::MouseButtonPress);
    dragMouse(canvas, QPointF(300, 200));
    bench.wheel(bench.at(50, 50), 120);
    click(QEvent::MouseButtonDblClick);
    QCOMPARE(bench.plot.visibleRange(Graphic::XAxis), Range(0, 100));
    QVERIFY(!bench.plot.isFitted());
}

void tst_GraphicMouse::toolButtonsSwitch_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QByteArray>("property");

    QTest::newRow("fit") << "fit" << QByteArray("fitted");
    QTest::newRow("grid") << "grid" << QByteArray("gridVisible");
    QTest::newRow("cursor") << "cursor" << QByteArray("cursorVisible");
    QTest::newRow("pause") << "pause" << QByteArray("paused");
    QTest::newRow("legend") << "legend" << QByteArray("legendVisible");
    QTest::newRow("borders") << "borders" << QByteArray("borderInputsVisible");
    QTest::newRow("status") << "status" << QByteArray("statusVisible");
}

void tst_GraphicMouse::toolButtonsSwitch()
{
    QFETCH(QString, button);
    QFETCH(QByteArray, property);
    PlotBench bench;
    bench.plot.setButtons(Graphic::AllButtons);
    auto *tool = bench.plot.findChild<QToolButton *>(button);
    QVERIFY(tool && tool->isCheckable());
    for (int i = 0; i < 3; ++i) {
        const bool before = bench.plot.property(property.constData()).toBool();
        QTest::mouseClick(tool, Qt::LeftButton);
        QCOMPARE(bench.plot.property(property.constData()).toBool(), !before);
        QCOMPARE(tool->isChecked(), !before);
    }
}

void tst_GraphicMouse::zoomButtons()
{
    PlotBench bench;
    bench.plot.setButtons(Graphic::AllButtons);
    QTest::mouseClick(bench.plot.findChild<QToolButton *>(QStringLiteral("zoom_in")), Qt::LeftButton);
    QVERIFY(isClose(bench.width(Graphic::XAxis), 50.0));
    QVERIFY(isClose(bench.plot.visibleRange(Graphic::YAxis).first, 25.0, 0.5));
    QTest::mouseClick(bench.plot.findChild<QToolButton *>(QStringLiteral("zoom_out")), Qt::LeftButton);
    QVERIFY(isClose(bench.width(Graphic::XAxis), 100.0));
}

void tst_GraphicMouse::clearButton()
{
    PlotBench bench;
    bench.plot.setButtons(Graphic::ClearButton);
    QTest::mouseClick(bench.plot.findChild<QToolButton *>(QStringLiteral("clear")), Qt::LeftButton);
    QCOMPARE(bench.plot.pointsCount(0), 0);
    QCOMPARE(bench.plot.graphicsCount(), 1);
}

void tst_GraphicMouse::legendHidesCurves()
{
    PlotBench bench;
    bench.plot.setGraphicsCount(2, true);
    bench.plot.graphic(1).name = QStringLiteral("Other");
    bench.plot.updateLegend(true);
    const auto entries = bench.plot.findChild<QWidget *>(QStringLiteral("legend"))->findChildren<QAbstractButton *>();
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries.at(0)->text(), QStringLiteral("Line"));
    QCOMPARE(entries.at(1)->text(), QStringLiteral("Other"));
    QVERIFY(entries.at(0)->geometry().right() < entries.at(1)->geometry().left());

    QTest::mouseClick(entries.at(0), Qt::LeftButton);
    QVERIFY(!bench.plot.graphic(0).isVisible);
    QVERIFY(bench.plot.graphic(1).isVisible);
    QTest::mouseClick(entries.at(0), Qt::LeftButton);
    QVERIFY(bench.plot.graphic(0).isVisible);

    bench.plot.graphic(1).isVisible = false;
    bench.plot.updateLegend(true);
    QVERIFY(!entries.at(1)->isChecked());
    bench.plot.setGraphicsCount(1, true);
    QCOMPARE(bench.plot.findChild<QWidget *>(QStringLiteral("legend"))->findChildren<QAbstractButton *>().size(), 1);
}

void tst_GraphicMouse::legendByKeyboard()
{
    PlotBench bench;
    auto *entry = bench.plot.findChild<QWidget *>(QStringLiteral("legend"))->findChild<QAbstractButton *>();
    QTest::keyClick(entry, Qt::Key_Space);
    QVERIFY(!bench.plot.graphic(0).isVisible);
}

void tst_GraphicMouse::inputsShowTheRange()
{
    PlotBench bench;
    bench.plot.setBorderInputsVisible(true);
    QCOMPARE(edit(bench.plot, "xFrom")->text(), QStringLiteral("0"));
    QCOMPARE(edit(bench.plot, "xTo")->text(), QStringLiteral("100"));
    bench.plot.setVisibleRange(Graphic::YAxis, -2.5, 7.5);
    bench.plot.grab();
    QCOMPARE(edit(bench.plot, "yFrom")->text(), QStringLiteral("-2.5"));
    QCOMPARE(edit(bench.plot, "yTo")->text(), QStringLiteral("7.5"));
}

void tst_GraphicMouse::inputsSetTheRange_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Range>("x");
    QTest::addColumn<Range>("y");
    QTest::addColumn<QString>("shown");

    QTest::newRow("from") << QByteArray("xFrom") << "20" << Range(20, 100) << Range(0, 100) << "20";
    QTest::newRow("to") << QByteArray("xTo") << "2.5e3" << Range(0, 2500) << Range(0, 100) << "2500";
    QTest::newRow("y") << QByteArray("yTo") << " 40 " << Range(0, 100) << Range(0, 40) << "40";
    QTest::newRow("exchanged") << QByteArray("yFrom") << "300" << Range(0, 100) << Range(100, 300) << "100";
    QTest::newRow("no number") << QByteArray("yFrom") << "many" << Range(0, 100) << Range(0, 100) << "0";
    QTest::newRow("nothing") << QByteArray("yTo") << " " << Range(0, 100) << Range(0, 100) << "100";
}

void tst_GraphicMouse::inputsSetTheRange()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    QFETCH(Range, x);
    QFETCH(Range, y);
    QFETCH(QString, shown);
    PlotBench bench;
    bench.plot.setBorderInputsVisible(true);
    type(edit(bench.plot, name.constData()), text);
    QCOMPARE(bench.plot.visibleRange(Graphic::XAxis), x);
    QCOMPARE(bench.plot.visibleRange(Graphic::YAxis), y);
    QCOMPARE(edit(bench.plot, name.constData())->text(), shown);
    QVERIFY(!bench.plot.isFitted());
}

void tst_GraphicMouse::inputsKeepWhatIsTyped()
{
    PlotBench bench;
    bench.plot.fit();
    bench.plot.setBorderInputsVisible(true);
    QLineEdit *from = edit(bench.plot, "xFrom");
    from->selectAll();
    QTest::keyClicks(from, QStringLiteral("4"));
    bench.plot.addPoint(300.0, 1.0);
    bench.plot.grab();
    QCOMPARE(from->text(), QStringLiteral("4"));
    QTest::keyClicks(from, QStringLiteral("2"));
    QTest::keyClick(from, Qt::Key_Return);
    QCOMPARE(bench.plot.visibleRange(Graphic::XAxis), Range(42, 300));

    // Passing through without typing is no wish.
    bench.plot.setVisibleRange(Graphic::XAxis, 1.0 / 3.0, 100.0);
    bench.plot.fit();
    QTest::keyClick(from, Qt::Key_Return);
    QVERIFY(bench.plot.isFitted());
}

void tst_GraphicMouse::inputsOfTimes()
{
    PlotBench bench;
    bench.plot.setTimeAxis(true);
    bench.plot.setBorderInputsVisible(true);
    bench.plot.grab();
    type(edit(bench.plot, "xTo"), QStringLiteral("2026-03-04 07:08:09"));
    const QDateTime time(QDate(2026, 3, 4), QTime(7, 8, 9));
    QCOMPARE(bench.plot.visibleRange(Graphic::XAxis).second, static_cast<double>(time.toSecsSinceEpoch()));
    bench.plot.grab();
    QCOMPARE(edit(bench.plot, "xTo")->text(), QStringLiteral("2026-03-04 07:08:09"));
}

void tst_GraphicMouse::statusSaysWhatIsThere()
{
    PlotBench bench;
    bench.plot.setAxisUnit(Graphic::YAxis, QStringLiteral("bar"));
    bench.plot.setStatusVisible(true);
    bench.plot.grab();
    const auto *status = bench.plot.findChild<QWidget *>(QStringLiteral("status"));
    QCOMPARE(status->accessibleName(), QStringLiteral("2 points"));

    dragMouse(bench.plot.canvas(), bench.at(25, 75), Qt::NoButton);
    const QStringList parts = status->accessibleName().split(QStringLiteral("   "));
    QCOMPARE(parts.size(), 3);
    QVERIFY(isClose(parts.at(0).toDouble(), 25.0, 0.5));
    QVERIFY(isClose(parts.at(1).section(' ', 0, 0).toDouble(), 75.0, 0.5));
    QVERIFY(parts.at(1).endsWith(QStringLiteral(" bar")));

    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(bench.plot.canvas(), &leave);
    QCOMPARE(status->accessibleName(), QStringLiteral("2 points"));
    bench.plot.setPaused(true);
    bench.plot.grab();
    QVERIFY(status->accessibleName().endsWith(QStringLiteral("paused")));
}

void tst_GraphicMouse::cursorReadsValues()
{
    PlotBench bench;
    bench.plot.setGraphicData({{0, 0}, {30, 80}, {100, 100}});
    bench.plot.graphic(0).color = Qt::red;
    dragMouse(bench.plot.canvas(), bench.at(35, 20), Qt::NoButton);
    const QPoint read = bench.at(30, 80).toPoint();
    const auto ringAt = [&bench, read] {
        // The ring left of the point: no line of the curve comes there.
        const QImage image = bench.plot.canvas()->grab().toImage();
        for (int x = read.x() - 6; x <= read.x() - 3; ++x) {
            const QColor color = image.pixelColor(x, read.y());
            if (color.red() > 200 && color.green() < 80)
                return true;
        }
        return false;
    };
    QVERIFY(!ringAt());
    bench.plot.setCursorVisible(true);
    QVERIFY(ringAt());
    bench.plot.graphic(0).isVisible = false;
    bench.plot.update(false);
    QVERIFY(!ringAt());
    bench.plot.graphic(0).isVisible = true;
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(bench.plot.canvas(), &leave);
    bench.plot.update(false);
    QVERIFY(!ringAt());
}

KEL_TEST_MAIN(tst_GraphicMouse)
#include "tst_graphicmouse.moc"
