#include "testmain.h"

#include <propertystorage.h>

class tst_PropertyStorage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unknownNameIsInvalid();
    void valueIsGivenBack();
    void valueIsOverwritten();
    void namesKeepTheirOrder();
    void removed();
};

void tst_PropertyStorage::unknownNameIsInvalid()
{
    const PropertyStorage storage;

    QVERIFY(!storage.propertyValueByName(QStringLiteral("device")).isValid());
    QVERIFY(!storage.hasProperty(QStringLiteral("device")));
}

void tst_PropertyStorage::valueIsGivenBack()
{
    PropertyStorage storage;
    storage.setPropertyValue(QStringLiteral("device"), QStringLiteral("ser:///dev/ttyS0"));
    storage.setPropertyValue(QStringLiteral("Device"), 7);

    QCOMPARE(storage.propertyValueByName(QStringLiteral("device")), QVariant(QStringLiteral("ser:///dev/ttyS0")));
    QCOMPARE(storage.propertyValueByName(QStringLiteral("Device")), QVariant(7));
}

void tst_PropertyStorage::valueIsOverwritten()
{
    PropertyStorage storage;
    storage.setPropertyValue(QStringLiteral("a"), 1);
    storage.setPropertyValue(QStringLiteral("b"), 2);
    storage.setPropertyValue(QStringLiteral("a"), QStringLiteral("x"));

    QCOMPARE(storage.propertyValueByName(QStringLiteral("a")), QVariant(QStringLiteral("x")));
    QCOMPARE(storage.propertyNames(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

void tst_PropertyStorage::namesKeepTheirOrder()
{
    PropertyStorage storage;
    const QStringList names{QStringLiteral("z"), QStringLiteral("a"), QStringLiteral("m")};
    for (const QString &name : names)
        storage.setPropertyValue(name, QVariant());

    QCOMPARE(storage.propertyNames(), names);
    QVERIFY(storage.hasProperty(QStringLiteral("a")));
}

void tst_PropertyStorage::removed()
{
    PropertyStorage storage;
    storage.setPropertyValue(QStringLiteral("a"), 1);
    storage.setPropertyValue(QStringLiteral("b"), 2);

    QVERIFY(storage.removeProperty(QStringLiteral("a")));
    QVERIFY(!storage.removeProperty(QStringLiteral("a")));
    QVERIFY(!storage.propertyValueByName(QStringLiteral("a")).isValid());
    QCOMPARE(storage.propertyValueByName(QStringLiteral("b")), QVariant(2));
}

KEL_TEST_MAIN(tst_PropertyStorage)
#include "tst_propertystorage.moc"
