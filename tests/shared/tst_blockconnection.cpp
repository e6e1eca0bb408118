#include "testmain.h"

#include <blockconnection.h>
#include <blockitem.h>
#include <connectionedit.h>

class tst_BlockConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blockWithoutPins();
    void devicesComeFromPins();
    void noBlockCountsAsEmpty();
};

namespace
{

void setDevice(BlockItemPin *pin, const QVariant &device)
{
    pin->setPropertyValue(QStringLiteral("device"), device);
}

} // namespace

void tst_BlockConnection::blockWithoutPins()
{
    const BlockItem block;
    ConnectionEdit edit;

    QVERIFY(edit.setModel(Kv_Designer::blockConnectionModel(&block)));
    QCOMPARE(edit.name(), QStringLiteral("conn"));
    QVERIFY(edit.devices().isEmpty());
}

void tst_BlockConnection::devicesComeFromPins()
{
    BlockItem block(QStringLiteral("not the name"));
    block.setPropertyValue(QStringLiteral("device"), QStringLiteral("not a pin's"));
    setDevice(block.addPin(QStringLiteral("Z")), QStringLiteral("ser:///dev/ttyS0"));
    block.addPin(QStringLiteral("no device"));
    setDevice(block.addPin(QStringLiteral("empty")), QString());
    setDevice(block.addPin(QStringLiteral("no text")), QVariantList{1});
    BlockItemPin *renamed = block.addPin(QStringLiteral("old"));
    setDevice(renamed, 17);
    renamed->setText(QStringLiteral("A"));
    setDevice(block.addPin(QString()), QStringLiteral(" "));

    ConnectionEdit edit;
    QVERIFY(edit.setModel(Kv_Designer::blockConnectionModel(&block)));
    QCOMPARE(edit.name(), QStringLiteral("conn"));
    QCOMPARE(edit.devices().size(), 3);
    QCOMPARE(edit.devices().at(0).name, QStringLiteral("Z"));
    QCOMPARE(edit.devices().at(0).device, QStringLiteral("ser:///dev/ttyS0"));
    QCOMPARE(edit.devices().at(1).name, QStringLiteral("A"));
    QCOMPARE(edit.devices().at(1).device, QStringLiteral("17"));
    QCOMPARE(edit.devices().at(2).name, QString());
    QCOMPARE(edit.devices().at(2).device, QStringLiteral(" "));

    // byte for byte what an editor makes of the same devices
    ConnectionEdit own;
    own.setName(QStringLiteral("conn"));
    own.addDevice(QStringLiteral("Z"), QStringLiteral("ser:///dev/ttyS0"));
    own.addDevice(QStringLiteral("A"), QStringLiteral("17"));
    own.addDevice(QString(), QStringLiteral(" "));
    QCOMPARE(Kv_Designer::blockConnectionModel(&block), own.model());
}

void tst_BlockConnection::noBlockCountsAsEmpty()
{
    const BlockItem block;

    QCOMPARE(Kv_Designer::blockConnectionModel(nullptr), Kv_Designer::blockConnectionModel(&block));
}

KEL_TEST_MAIN(tst_BlockConnection)
#include "tst_blockconnection.moc"
