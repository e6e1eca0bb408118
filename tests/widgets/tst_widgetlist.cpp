#include "testmain.h"

#include <widgetlist.h>

#include <QIcon>
#include <QMetaProperty>
#include <QTime>

#include <memory>

class tst_WidgetList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entry_data();
    void entry();
    void properties_data();
    void properties();
};

void tst_WidgetList::entry_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < kelWidgetList().size(); ++i)
        QTest::newRow(qPrintable(kelWidgetList().at(i).className)) << i;
}

void tst_WidgetList::entry()
{
    QFETCH(int, index);
    const KelWidgetInfo &info = kelWidgetList().at(index);

    QWidget parent;
    QWidget *widget = info.create(&parent);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), info.className);
    QCOMPARE(widget->parentWidget(), &parent);
    QCOMPARE(info.group, QStringLiteral("Kel Widgets"));
    QVERIFY(!QIcon(info.icon).pixmap(24).isNull());
    QVERIFY(!info.toolTip.isEmpty());
    QVERIFY(!info.whatsThis.isEmpty());
    QVERIFY(info.firstSize.isValid());
    for (int other = 0; other < index; ++other)
        QVERIFY(kelWidgetList().at(other).className != info.className);
}

void tst_WidgetList::properties_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("name");

    for (int i = 0; i < kelWidgetList().size(); ++i) {
        const std::unique_ptr<QWidget> widget(kelWidgetList().at(i).create(nullptr));
        const QMetaObject *meta = widget->metaObject();
        // Only what the widget's own class adds; the rest is Qt's business.
        for (int p = meta->propertyOffset(); p < meta->propertyCount(); ++p)
            QTest::addRow("%s.%s", meta->className(), meta->property(p).name())
                << i << QByteArray(meta->property(p).name());
    }
}

/// A value of the property's type that differs from \a value.
static QVariant otherValue(const QMetaProperty &property, const QVariant &value)
{
    if (property.isEnumType())
        return value.toInt() == property.enumerator().value(1) ? property.enumerator().value(0)
                                                               : property.enumerator().value(1);
    switch (int(value.type())) {
    case QVariant::Bool:
        return !value.toBool();
    case QVariant::Int:
        return value.toInt() + 17;
    case QVariant::Double:
    case QMetaType::Float:
        return value.toDouble() / 2 + 0.25;
    case QVariant::Size:
        return value.toSize() + QSize(3, 5);
    case QVariant::Color:
        return QColor(12, 34, 56);
    case QVariant::Time:
        return value.toTime().addSecs(14 * 3600 + 35 * 60);
    case QVariant::String:
        return QString(value.toString() + QStringLiteral("lamp.set(1)"));
    case QVariant::StringList:
        return QStringList{QStringLiteral("lamp.0=Level")};
    default:
        return QVariant();
    }
}

void tst_WidgetList::properties()
{
    QFETCH(int, index);
    QFETCH(QByteArray, name);
    QWidget parent;
    QWidget *widget = kelWidgetList().at(index).create(&parent);
    const QMetaObject *meta = widget->metaObject();
    const QMetaProperty property = meta->property(meta->indexOfProperty(name.constData()));
    QVERIFY(property.isReadable());
    QVERIFY(property.isWritable());
    if (name == "buttonVisible") {
        // Shows and hides the widget, so it is only true inside a window that is shown.
        parent.show();
        QVERIFY(property.write(widget, true));
        QVERIFY(property.read(widget).toBool());
        QVERIFY(property.write(widget, false));
        QVERIFY(!property.read(widget).toBool());
        return;
    }

    // A slider rounds its numbers to its step.
    if (meta->indexOfProperty("precision") >= 0)
        widget->setProperty("precision", 0.25);

    const QVariant before = property.read(widget);
    const QVariant other = otherValue(property, before);
    QVERIFY2(other.isValid(), before.typeName());
    QVERIFY(property.write(widget, other));
    if (property.isEnumType())
        QCOMPARE(property.read(widget).toInt(), other.toInt());
    else
        QCOMPARE(property.read(widget), other);
}

KEL_TEST_MAIN(tst_WidgetList)
#include "tst_widgetlist.moc"
