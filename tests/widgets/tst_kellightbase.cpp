#include "drawnpictures.h"
#include "testmain.h"

#include <kellight.h>

/// Ring and unlit lamp, which lights that look alike share.
class tst_KelLightBase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void alikeLightsShareTheirBase();
    void anotherColorIsAnotherBase();
    void fadeLeavesOthersAsTheyAre();
    void lightsThatDifferShareNothing_data();
    void lightsThatDifferShareNothing();
};

namespace
{

constexpr QSize Size(128, 130);

/// The picture that \a light draws first at \a level, at which it has not been drawn before.
qint64 basePicture(KelLight &light, double level)
{
    light.setProperty("h__anim", level);
    DrawnPictures base(light.size());
    light.render(&base, QPoint(), QRegion(), QWidget::RenderFlags());
    return base.keys(false).value(0);
}

QImage render(KelLight &light, double level)
{
    light.setProperty("h__anim", level);
    QImage image(light.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    light.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// Large lights take the place of all bases that were kept.
void forgetBases()
{
    for (const int side : {600, 601, 602}) {
        KelLight light;
        light.resize(side, side);
        render(light, 10.0);
    }
}

} // namespace

void tst_KelLightBase::alikeLightsShareTheirBase()
{
    KelLight one;
    KelLight two;
    one.resize(Size);
    two.resize(Size);
    const qint64 base = basePicture(one, 40.0);
    QVERIFY(base != 0);
    QCOMPARE(basePicture(two, 40.0), base);
}

void tst_KelLightBase::anotherColorIsAnotherBase()
{
    KelLight one;
    KelLight two;
    one.resize(Size);
    two.resize(Size);
    two.setFillColor(Qt::red);
    const qint64 base = basePicture(one, 40.0);
    QVERIFY(basePicture(two, 40.0) != base);
}

void tst_KelLightBase::fadeLeavesOthersAsTheyAre()
{
    forgetBases();
    KelLight one;
    KelLight two;
    one.resize(Size);
    two.resize(Size);
    const QImage dark = render(one, 0.0);
    QCOMPARE(render(two, 0.0), dark);
    const QImage half = render(one, 50.0);
    QVERIFY(half != dark);
    QCOMPARE(render(two, 0.0), dark);
    QCOMPARE(render(two, 50.0), half);

    KelLight three;
    three.resize(Size);
    QCOMPARE(render(three, 0.0), dark);
}

void tst_KelLightBase::lightsThatDifferShareNothing_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("fill colour") << QByteArray("fillColor") << QVariant(QColor(Qt::green));
    QTest::newRow("back colour") << QByteArray("backColor") << QVariant(QColor(Qt::green));
    QTest::newRow("angle shift") << QByteArray("angleShift") << QVariant(60.0);
    QTest::newRow("bar size") << QByteArray("barSize") << QVariant(60.0);
    QTest::newRow("binary") << QByteArray("binary") << QVariant(true);
    QTest::newRow("icon") << QByteArray("iconType") << QVariant(2);
    QTest::newRow("width") << QByteArray("geometry") << QVariant(QRect(0, 0, 131, 130));
    QTest::newRow("height") << QByteArray("geometry") << QVariant(QRect(0, 0, 128, 131));
}

// A light beside one that differs from it in one thing looks as it does alone.
void tst_KelLightBase::lightsThatDifferShareNothing()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);

    const auto painted = [&](bool isChanged) {
        KelLight light;
        light.resize(Size);
        if (isChanged)
            light.setProperty(property.constData(), value);
        return render(light, 30.0);
    };
    forgetBases();
    const QImage alone = painted(true);
    forgetBases();
    const QImage other = painted(false);
    QCOMPARE(painted(true), alone);
    QVERIFY(other != alone);
}

KEL_TEST_MAIN(tst_KelLightBase)
#include "tst_kellightbase.moc"
