#include "testmain.h"

#include <QPainter>
#include <cmath>
#include <colorarithmetic.h>
#include <kelswitch.h>

/// What a switch paints, probed in pixels.
class tst_KelSwitchPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void colours_data();
    void colours();
    void handleIsWhereItBelongs_data();
    void handleIsWhereItBelongs();
    void rockerIsSymmetric_data();
    void rockerIsSymmetric();
    void trackFillsItsPlace_data();
    void trackFillsItsPlace();
    void tooSmallPaintsNothing_data();
    void tooSmallPaintsNothing();
    void changesRepaint_data();
    void changesRepaint();
};

static QImage rendered(KelSwitch &button)
{
    QImage image(button.size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    button.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

static void put(KelSwitch &button, float position)
{
    button.setProperty("h__anim", position);
    button.setProperty("h__anim_s", position);
}

static QColor trackColor(const KelSwitch &button)
{
    const double t = 0.4 * button.h__anim_s() + 0.6;
    return button.fillColor() * (1 - t) + button.backColor() * t;
}

static QColor handleColor(const KelSwitch &button)
{
    const double root = std::sqrt(button.h__anim());
    return button.fillColor() * (1 - root) + button.backColor().darker(120) * root;
}

// Colours that lose a little alpha on the way are blended with what is below.
static bool near(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) <= 2 && qAbs(a.green() - b.green()) <= 2 && qAbs(a.blue() - b.blue()) <= 2;
}

static void compare(const QColor &shown, const QColor &expected)
{
    QVERIFY2(near(shown, expected), qPrintable(shown.name() + QStringLiteral(" is not ") + expected.name()));
}

void tst_KelSwitchPaint::colours_data()
{
    QTest::addColumn<float>("position");
    QTest::addColumn<bool>("inverted");
    for (const bool inverted : {false, true}) {
        for (const float position : {0.0f, 0.3f, 1.0f})
            QTest::addRow("%g%s", double(position), inverted ? ", inverted" : "") << position << inverted;
    }
}

void tst_KelSwitchPaint::colours()
{
    QFETCH(float, position);
    QFETCH(bool, inverted);

    KelSwitch button;
    button.resize(300, 100);
    button.setFillColor(QColor(250, 20, 30));
    button.setBackColor(QColor(20, 30, 200));
    button.setInvertedAppearance(inverted);
    put(button, position);
    const QImage image = rendered(button);

    // The handle's middle is left when the place is "off", and the track is free at the other end.
    const float place = inverted ? 1.0f - position : position;
    const int handle = qRound(150.0 + (0.5 - double(place)) * 2.0 * 97.5 * 2.0 / 3.0);
    compare(image.pixelColor(handle, 50), handleColor(button));
    compare(image.pixelColor(place > 0.5f ? 280 : 20, 50), trackColor(button));
}

void tst_KelSwitchPaint::handleIsWhereItBelongs_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("on");
    QTest::addColumn<bool>("inverted");
    QTest::addColumn<bool>("enabled");
    for (const QSize size :
         {QSize(60, 20), QSize(150, 60), QSize(400, 90), QSize(20, 60), QSize(60, 150), QSize(90, 400)}) {
        for (const bool on : {false, true}) {
            for (const bool inverted : {false, true}) {
                for (const bool enabled : {true, false})
                    QTest::addRow("%dx%d %s%s%s", size.width(), size.height(), on ? "on" : "off",
                                  inverted ? ", inverted" : "", enabled ? "" : ", disabled")
                        << size << on << inverted << enabled;
            }
        }
    }
}

void tst_KelSwitchPaint::handleIsWhereItBelongs()
{
    QFETCH(QSize, size);
    QFETCH(bool, on);
    QFETCH(bool, inverted);
    QFETCH(bool, enabled);

    const bool flat = size.width() > size.height();
    KelSwitch button;
    button.resize(size);
    button.setOrientation(flat ? Qt::Horizontal : Qt::Vertical);
    button.setInvertedAppearance(inverted);
    button.setEnabled(enabled);
    button.setFillColor(Qt::red);
    button.setBackColor(Qt::blue);
    put(button, on ? 0.0f : 1.0f);
    const QImage image = rendered(button);

    const int length = qMin(flat ? size.width() : size.height(), 3 * (flat ? size.height() : size.width()));
    const int third = length / 3;
    const QPoint middle(size.width() / 2, size.height() / 2);
    const QPoint toOn = flat ? QPoint(third, 0) : QPoint(0, -third);
    const QPoint handle = on != inverted ? middle + toOn : middle - toOn;
    const QPoint free = on != inverted ? middle - toOn : middle + toOn;
    compare(image.pixelColor(handle), handleColor(button));
    compare(image.pixelColor(free), trackColor(button));
}

void tst_KelSwitchPaint::rockerIsSymmetric_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<float>("position");
    for (const QSize size : {QSize(90, 30), QSize(300, 100), QSize(30, 90), QSize(100, 300)}) {
        for (const float position : {0.0f, 0.5f, 1.0f})
            QTest::addRow("%dx%d at %g", size.width(), size.height(), double(position)) << size << position;
    }
}

void tst_KelSwitchPaint::rockerIsSymmetric()
{
    QFETCH(QSize, size);
    QFETCH(float, position);

    const bool flat = size.width() > size.height();
    KelSwitch button;
    button.resize(size);
    button.setOrientation(flat ? Qt::Horizontal : Qt::Vertical);
    button.setSwitchStyle(KelSwitch::Center);
    button.setFillColor(Qt::red);
    button.setBackColor(Qt::blue);
    put(button, position);
    const QImage image = rendered(button);

    // Antialiasing may round the two halves differently by a shade.
    const QImage turned = image.mirrored(true, true);
    int different = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            different += near(image.pixelColor(x, y), turned.pixelColor(x, y)) ? 0 : 1;
    }
    QVERIFY2(different <= image.width() * image.height() / 20, qPrintable(QString::number(different)));

    const QPoint middle(size.width() / 2, size.height() / 2);
    const QPoint end = flat ? QPoint(size.width() / 9, middle.y()) : QPoint(middle.x(), size.height() / 9);
    if (position == 1.0f) {
        compare(image.pixelColor(middle), trackColor(button));
        compare(image.pixelColor(end), handleColor(button));
    } else if (position == 0.0f) {
        const QPoint beside = flat ? QPoint(size.width() / 10, 0) : QPoint(0, size.height() / 10);
        compare(image.pixelColor(middle + beside), handleColor(button));
        compare(image.pixelColor(middle - beside), handleColor(button));
        compare(image.pixelColor(end), trackColor(button));
    }
}

void tst_KelSwitchPaint::trackFillsItsPlace_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRectF>("outer"); // Of the pen around the track.
    // Half length 150: pen 3.75, so the track ends at 146.25 and its line at 148.125.
    QTest::newRow("three to one") << QSize(300, 100) << QRectF(1.875, 0, 296.25, 0);
    QTest::newRow("wider") << QSize(500, 100) << QRectF(101.875, 0, 296.25, 0);
}

void tst_KelSwitchPaint::trackFillsItsPlace()
{
    QFETCH(QSize, size);
    QFETCH(QRectF, outer);
    KelSwitch button;
    button.resize(size);
    const QImage image = rendered(button);
    const int y = size.height() / 2;
    QCOMPARE(image.pixelColor(int(outer.left()) - 1, y), QColor(Qt::white));
    QCOMPARE(image.pixelColor(int(outer.left()) + 1, y), QColor(Qt::darkGray));
    QCOMPARE(image.pixelColor(int(outer.right()) - 1, y), QColor(Qt::darkGray));
    QCOMPARE(image.pixelColor(int(outer.right()) + 1, y), QColor(Qt::white));
    QVERIFY(image.pixelColor(int(outer.left()) + 4, y) != QColor(Qt::darkGray));
}

void tst_KelSwitchPaint::tooSmallPaintsNothing_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("narrow") << QSize(1, 50);
    QTest::newRow("flat") << QSize(50, 1);
    QTest::newRow("tiny") << QSize(1, 1);
}

void tst_KelSwitchPaint::tooSmallPaintsNothing()
{
    QFETCH(QSize, size);
    KelSwitch button;
    button.resize(size);
    QImage untouched(size, QImage::Format_ARGB32);
    untouched.fill(Qt::white);
    QCOMPARE(rendered(button), untouched);
}

class PaintCounter : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

void tst_KelSwitchPaint::changesRepaint_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("invertedAppearance") << QVariant(true);
    QTest::newRow("orientation") << QVariant(int(Qt::Vertical));
    QTest::newRow("switchStyle") << QVariant(1);
    QTest::newRow("fillColor") << QVariant(QColor(Qt::blue));
    QTest::newRow("backColor") << QVariant(QColor(Qt::blue));
    QTest::newRow("h__anim") << QVariant(0.5f);
    QTest::newRow("h__anim_s") << QVariant(0.5f);
}

void tst_KelSwitchPaint::changesRepaint()
{
    QFETCH(QVariant, value);
    KelSwitch button;
    button.resize(90, 30);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QCoreApplication::processEvents();
    PaintCounter counter;
    button.installEventFilter(&counter);
    QVERIFY(button.setProperty(QTest::currentDataTag(), value));
    QTRY_VERIFY(counter.paints >= 1);
}

KEL_TEST_MAIN(tst_KelSwitchPaint)
#include "tst_kelswitchpaint.moc"
