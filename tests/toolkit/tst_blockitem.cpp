#include "testmain.h"

#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPointer>
#include <blockitem.h>

class tst_BlockItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pinsStandInOrder();
    void pinLabel();
    void pinsCarryProperties();
    void blockCarriesProperties();
    void pinIsRemoved();
    void boxHoldsTitleAndLabels();
    void boxAndPinsArePainted();
    void selectionIsPainted();
    void isMovedByTheMouse();
};

namespace
{

constexpr int Border = 10; ///< Around the block, in the picture.

QImage pictureOf(BlockItem *block)
{
    QGraphicsScene scene;
    scene.addItem(block);
    const QRectF area = block->boundingRect().adjusted(-Border, -Border, Border, Border);
    QImage image(area.size().toSize(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    scene.render(&painter, image.rect(), area);
    painter.end();
    scene.removeItem(block);
    return image;
}

QPoint inPicture(const BlockItem &block, const QPointF &point)
{
    return (point - block.boundingRect().topLeft() + QPointF(Border, Border)).toPoint();
}

int pixelsOf(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

} // namespace

void tst_BlockItem::pinsStandInOrder()
{
    BlockItem block;
    QVERIFY(block.pins().isEmpty());
    BlockItemPin *first = block.addPin(QStringLiteral("A"));
    BlockItemPin *second = block.addPin(QStringLiteral("B"));

    QCOMPARE(block.pins(), QList<BlockItemPin *>({first, second}));
    QVERIFY(first->parentItem() == &block);
    QVERIFY(first->pos().y() < second->pos().y());
    QVERIFY(block.boundingRect().contains(second->pos()));
}

void tst_BlockItem::pinLabel()
{
    BlockItem block;
    BlockItemPin *pin = block.addPin(QStringLiteral("A"));
    QCOMPARE(pin->text(), QStringLiteral("A"));

    const QRectF before = pin->boundingRect();
    pin->setText(QStringLiteral("a much longer label than before"));
    QCOMPARE(pin->text(), QStringLiteral("a much longer label than before"));
    QVERIFY(pin->boundingRect().width() > before.width());
}

void tst_BlockItem::pinsCarryProperties()
{
    BlockItem block;
    BlockItemPin *first = block.addPin(QStringLiteral("A"));
    BlockItemPin *second = block.addPin(QStringLiteral("A"));
    first->setPropertyValue(QStringLiteral("device"), QStringLiteral("x"));

    QCOMPARE(first->propertyValueByName(QStringLiteral("device")), QVariant(QStringLiteral("x")));
    QVERIFY(!second->propertyValueByName(QStringLiteral("device")).isValid());
}

void tst_BlockItem::blockCarriesProperties()
{
    BlockItem block;
    block.setPropertyValue(QStringLiteral("n"), 5);

    QCOMPARE(block.propertyValueByName(QStringLiteral("n")), QVariant(5));
}

void tst_BlockItem::pinIsRemoved()
{
    BlockItem block;
    BlockItem other;
    QPointer<BlockItemPin> first = block.addPin(QStringLiteral("A"));
    BlockItemPin *second = block.addPin(QStringLiteral("B"));
    const QPointF place = first->pos();

    QVERIFY(!other.removePin(first));
    QVERIFY(block.removePin(first));
    QVERIFY(first.isNull());
    QCOMPARE(block.pins(), QList<BlockItemPin *>({second}));
    QCOMPARE(second->pos(), place);
}

void tst_BlockItem::boxHoldsTitleAndLabels()
{
    BlockItem block(QStringLiteral("B"));
    QCOMPARE(block.title(), QStringLiteral("B"));
    const qreal narrow = block.boundingRect().width();

    block.setTitle(QStringLiteral("a title that needs much more room than the box had"));
    QCOMPARE(block.title(), QStringLiteral("a title that needs much more room than the box had"));
    QVERIFY(block.boundingRect().width() > narrow);

    block.setTitle(QString());
    QCOMPARE(block.boundingRect().width(), narrow);
    const BlockItemPin *pin = block.addPin(QStringLiteral("a label that needs much more room than the box had"));
    QVERIFY(block.boundingRect().right() >= pin->pos().x() + pin->boundingRect().right());
}

void tst_BlockItem::boxAndPinsArePainted()
{
    BlockItem block(QStringLiteral("Pump"));
    const QImage before = pictureOf(&block);
    BlockItemPin *pin = block.addPin(QStringLiteral("In"));
    const QPalette palette;

    const QImage image = pictureOf(&block);
    QVERIFY(image.height() > before.height());
    QCOMPARE(image.pixelColor(inPicture(block, pin->pos())), palette.color(QPalette::Highlight));
    QCOMPARE(image.pixelColor(inPicture(block, {50.0, pin->pos().y()})), palette.color(QPalette::Base));
    QCOMPARE(image.pixelColor(inPicture(block, {4.0, 10.0})), palette.color(QPalette::Button));
    QCOMPARE(image.pixelColor(1, 1).alpha(), 0);

    block.setTitle(QString());
    pin->setText(QString());
    QVERIFY(pictureOf(&block) != image);
}

void tst_BlockItem::selectionIsPainted()
{
    const QColor highlight = QPalette().color(QPalette::Highlight);
    BlockItem block(QStringLiteral("Pump"));
    QGraphicsScene scene;
    scene.addItem(&block);
    const auto picture = [&scene, &block] {
        QImage image(block.boundingRect().size().toSize(), QImage::Format_ARGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        scene.render(&painter, image.rect(), block.boundingRect());
        return image;
    };

    const int before = pixelsOf(picture(), highlight);
    block.setSelected(true);
    QVERIFY(block.isSelected());
    QVERIFY(pixelsOf(picture(), highlight) > before + 20);
    scene.removeItem(&block);
}

void tst_BlockItem::isMovedByTheMouse()
{
    QGraphicsScene scene(0, 0, 400, 400);
    QGraphicsView view(&scene);
    auto *block = new BlockItem(QStringLiteral("Pump"));
    scene.addItem(block);
    block->setPos(100, 100);
    view.resize(450, 450);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    const QPoint from = view.mapFromScene(QPointF(120, 110));
    QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, from);
    QTest::mouseMove(view.viewport(), from + QPoint(40, 25));
    QMouseEvent move(QEvent::MouseMove, from + QPoint(40, 25), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &move);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, from + QPoint(40, 25));

    QCOMPARE(block->pos(), QPointF(140, 125));
    QVERIFY(block->isSelected());
}

KEL_TEST_MAIN(tst_BlockItem)
#include "tst_blockitem.moc"
