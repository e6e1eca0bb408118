#include "testmain.h"

#include <QSignalSpy>
#include <chunkstream.h>
#include <connectionedit.h>

class tst_ConnectionEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst();
    void modelIsReadBack();
    void modelIsLaidOut();
    void malformedModelChangesNothing_data();
    void malformedModelChangesNothing();
    void unknownChunkIsSkipped();
    void devicesAreRemoved();
    void changesAreAnnounced();
};

namespace
{

void fill(ConnectionEdit &edit)
{
    edit.setName(QStringLiteral("conn"));
    edit.addDevice(QStringLiteral("A"), QStringLiteral("x"));
}

QByteArray fromHex(const char *text)
{
    return QByteArray::fromHex(QByteArray(text).replace(' ', ""));
}

} // namespace

void tst_ConnectionEdit::isEmptyAtFirst()
{
    const ConnectionEdit edit;

    QVERIFY(edit.name().isEmpty());
    QVERIFY(edit.devices().isEmpty());
    QVERIFY(edit.parent() == nullptr);
}

void tst_ConnectionEdit::modelIsReadBack()
{
    ConnectionEdit edit;
    fill(edit);
    edit.addDevice(QStringLiteral("A"), QStringLiteral("gser:///dev/ttyS1"));
    edit.addDevice(QString(), QString());

    ConnectionEdit copy;
    copy.addDevice(QStringLiteral("old"), QStringLiteral("old"));
    QVERIFY(copy.setModel(edit.model()));
    QCOMPARE(copy.name(), QStringLiteral("conn"));
    QCOMPARE(copy.devices().size(), 3);
    QCOMPARE(copy.devices().at(0).name, QStringLiteral("A"));
    QCOMPARE(copy.devices().at(0).device, QStringLiteral("x"));
    QCOMPARE(copy.devices().at(1).name, QStringLiteral("A"));
    QCOMPARE(copy.devices().at(1).device, QStringLiteral("gser:///dev/ttyS1"));
    QCOMPARE(copy.devices().at(2).name, QString());
    QCOMPARE(copy.model(), edit.model());
}

void tst_ConnectionEdit::modelIsLaidOut()
{
    ConnectionEdit edit;
    fill(edit);

    QCOMPARE(edit.model(), fromHex("82 01 0C 00 00 00 08 00 63 00 6F 00 6E 00 6E"
                                   "02 0A 00 00 00 01 00 00 00 02 00 41"
                                   "03 0A 00 00 00 01 00 00 00 02 00 78"));
}

void tst_ConnectionEdit::malformedModelChangesNothing_data()
{
    QTest::addColumn<QByteArray>("model");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("conn");
    QTest::newRow("name only") << fromHex("82 01 04 00 00 00 00");
    QTest::newRow("no devices") << fromHex("82 01 04 00 00 00 00 02 04 00 00 00 00");
    QTest::newRow("no name") << fromHex("82 02 04 00 00 00 00 03 04 00 00 00 00");
    QTest::newRow("one label, no device") << fromHex("82 01 04 FF FF FF FF"
                                                     "02 08 00 00 00 01 FF FF FF FF 03 04 00 00 00 00");
    QTest::newRow("count beyond the payload") << fromHex("82 01 04 FF FF FF FF"
                                                         "02 04 7F FF FF FF 03 04 7F FF FF FF");
    QTest::newRow("truncated") << fromHex("82 01 04 FF FF FF FF 02 04 00 00 00 00 03 04 00 00");
}

void tst_ConnectionEdit::malformedModelChangesNothing()
{
    QFETCH(QByteArray, model);
    ConnectionEdit edit;
    fill(edit);
    const QByteArray before = edit.model();

    QVERIFY(!edit.setModel(model));
    QCOMPARE(edit.model(), before);
}

void tst_ConnectionEdit::unknownChunkIsSkipped()
{
    ConnectionEdit edit;

    QVERIFY(edit.setModel(fromHex("82 09 01 AA 01 04 00 00 00 00 02 04 00 00 00 00 03 04 00 00 00 00")));
    QVERIFY(edit.devices().isEmpty());
}

void tst_ConnectionEdit::devicesAreRemoved()
{
    ConnectionEdit edit;
    fill(edit);
    edit.addDevice(QStringLiteral("B"), QStringLiteral("y"));

    QVERIFY(!edit.removeDevice(-1));
    QVERIFY(!edit.removeDevice(2));
    QVERIFY(edit.removeDevice(0));
    QCOMPARE(edit.devices().size(), 1);
    QCOMPARE(edit.devices().at(0).name, QStringLiteral("B"));

    edit.clear();
    QVERIFY(edit.devices().isEmpty());
    QVERIFY(edit.name().isEmpty());
}

void tst_ConnectionEdit::changesAreAnnounced()
{
    ConnectionEdit edit;
    QSignalSpy spy(&edit, &ConnectionEdit::changed);

    edit.clear();
    edit.setName(QString());
    QCOMPARE(spy.count(), 0);
    fill(edit);
    QCOMPARE(spy.count(), 2);
    QVERIFY(edit.setModel(edit.model()));
    QVERIFY(edit.removeDevice(0));
    edit.clear();
    QCOMPARE(spy.count(), 5);
}

KEL_TEST_MAIN(tst_ConnectionEdit)
#include "tst_connectionedit.moc"
