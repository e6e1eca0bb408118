#include "commonpalette.h"
#include "testmain.h"

#include <kelbutton.h>

#include <QImage>
#include <QPixmapCache>
#include <QProxyStyle>
#include <QStyleOptionComplex>

#include <functional>
#include <memory>

using Change = std::function<void(KelButton &)>;
Q_DECLARE_METATYPE(Change)

namespace
{

QPalette paletteOf(const QColor &button)
{
    QPalette palette;
    palette.setColor(QPalette::Button, button);
    return palette;
}

std::unique_ptr<KelButton> button(const QColor &color)
{
    auto made = std::make_unique<KelButton>();
    made->setText(QStringLiteral("Go"));
    made->setProperty("h__currentColor", color);
    made->resize(120, 60);
    return made;
}

QImage pictureOf(QWidget &widget)
{
    return widget.grab().toImage();
}

/// Notes the identity of the palette of each button that it paints.
class PaletteStyle : public QProxyStyle
{
public:
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        seen.append(option->palette.cacheKey());
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

    mutable QVector<qint64> seen;
};

} // namespace

/// Palettes that are equal are one for the style, and only those.
class tst_CommonPalette : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalPalettesAreOne();
    void palettesInUseAreKept();
    void stylePaintsButtonsOfOneColourAsOne();
    void neighbourChangesNothing_data();
    void neighbourChangesNothing();
};

void tst_CommonPalette::equalPalettesAreOne()
{
    const QPalette red = paletteOf(Qt::red);
    const qint64 key = commonPalette(red).cacheKey();
    QVERIFY(paletteOf(Qt::red).cacheKey() != red.cacheKey());
    QCOMPARE(commonPalette(paletteOf(Qt::red)).cacheKey(), key);
    QCOMPARE(commonPalette(paletteOf(Qt::red)), red);

    QPalette grey = paletteOf(Qt::red);
    grey.setCurrentColorGroup(QPalette::Disabled); // which a comparison leaves out
    QCOMPARE(commonPalette(grey).currentColorGroup(), QPalette::Disabled);
    QCOMPARE(commonPalette(red).currentColorGroup(), QPalette::Active);
    QCOMPARE(commonPalette(paletteOf(Qt::green)), paletteOf(Qt::green));
}

void tst_CommonPalette::palettesInUseAreKept()
{
    const qint64 key = commonPalette(paletteOf(Qt::red)).cacheKey();
    for (int i = 0; i < 100; ++i) {
        commonPalette(paletteOf(QColor(i, i, i)));
        QCOMPARE(commonPalette(paletteOf(Qt::red)).cacheKey(), key);
    }
    for (int i = 0; i < 100; ++i)
        commonPalette(paletteOf(QColor(i, i, 0)));
    QVERIFY(commonPalette(paletteOf(Qt::red)).cacheKey() != key); // forgotten, so that colours do not pile up
}

void tst_CommonPalette::stylePaintsButtonsOfOneColourAsOne()
{
    PaletteStyle style;
    for (const QColor &color : {QColor(Qt::red), QColor(Qt::red), QColor(Qt::green)}) {
        const auto made = button(color);
        made->setStyle(&style);
        pictureOf(*made);
    }
    QCOMPARE(style.seen.size(), 3);
    QCOMPARE(style.seen.at(1), style.seen.at(0));
    QVERIFY(style.seen.at(2) != style.seen.at(0));
}

void tst_CommonPalette::neighbourChangesNothing_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("same", [](KelButton &) {});
    row("other colour", [](KelButton &made) { made.setProperty("h__currentColor", QColor(Qt::green)); });
    row("pressed", [](KelButton &made) { made.setDown(true); });
    row("disabled", [](KelButton &made) { made.setEnabled(false); });
    row("other size", [](KelButton &made) { made.resize(90, 40); });
}

/// The face of a button is the same, whoever was painted before it.
void tst_CommonPalette::neighbourChangesNothing()
{
    QFETCH(Change, change);
    const auto red = button(Qt::red);
    const auto other = button(Qt::red);
    change(*other);
    const QImage first = pictureOf(*red);
    const QImage second = pictureOf(*other);
    QPixmapCache::clear();
    QCOMPARE(pictureOf(*other), second);
    QCOMPARE(pictureOf(*red), first);
}

KEL_TEST_MAIN(tst_CommonPalette)
#include "tst_commonpalette.moc"
