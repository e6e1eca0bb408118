#include "testmain.h"

#include <kelbutton.h>
#include <kelclock.h>
#include <kelgraphic.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>
#include <keltabwidget.h>
#include <kelthermometer.h>
#include <localdevice.h>
#include <qtimerwidget.h>

#include <QColor>
#include <QFile>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QSize>
#include <QTime>

/// What forms, panels and hosts know of a class by name, line by line: tests/data/metaobjects.txt is what they were
/// promised. A line that changes there breaks panels that exist.
class tst_MetaObjects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void promiseIsKept_data();
    void promiseIsKept();
};

using Create = QWidget *(*)();
Q_DECLARE_METATYPE(Create)

namespace
{

template <typename Widget>
QWidget *create()
{
    return new Widget(nullptr);
}

/// The value that a new widget has; "-" for colours that the style gives.
QString defaultText(const QMetaProperty &property, const QWidget &widget)
{
    static const QStringList OfTheStyle = {QStringLiteral("upColor"), QStringLiteral("grayColor"),
                                           QStringLiteral("h__currentColor")};
    if (OfTheStyle.contains(QLatin1String(property.name())))
        return QStringLiteral("-");
    const QVariant value = property.read(&widget);
    if (value.userType() == QMetaType::QColor)
        return value.value<QColor>().name(QColor::HexArgb);
    if (value.userType() == QMetaType::QSize)
        return QStringLiteral("%1x%2").arg(value.toSize().width()).arg(value.toSize().height());
    if (value.userType() == QMetaType::QStringList)
        return QLatin1Char('[') + value.toStringList().join(QLatin1Char(',')) + QLatin1Char(']');
    return value.userType() == QMetaType::QString ? QLatin1Char('"') + value.toString() + QLatin1Char('"')
                                                  : value.toString();
}

QString propertyLine(const QMetaProperty &property, const QWidget &widget)
{
    QString flags;
    flags += QLatin1String(property.isReadable() ? "" : " unreadable");
    flags += QLatin1String(property.isWritable() ? "" : " read-only");
    flags += QLatin1String(property.isDesignable(&widget) ? "" : " hidden");
    flags += QLatin1String(property.isStored(&widget) ? "" : " not-stored");
    return QStringLiteral("property %1 %2 = %3%4")
        .arg(QLatin1String(property.typeName()), QLatin1String(property.name()), defaultText(property, widget), flags);
}

QString methodLine(const QMetaMethod &method)
{
    const QString kind = method.methodType() == QMetaMethod::Signal ? QStringLiteral("signal")
                         : method.access() == QMetaMethod::Public   ? QStringLiteral("slot")
                                                                    : QStringLiteral("private slot");
    QByteArrayList words;
    for (int i = 0; i < method.parameterCount(); ++i)
        words << method.parameterTypes().at(i) + ' ' + method.parameterNames().at(i);
    return kind + QLatin1Char(' ') + QString::fromLatin1(method.name() + '(' + words.join(", ") + ')');
}

QString enumLine(const QMetaEnum &enumeration)
{
    QString line = QStringLiteral("enum ") + QLatin1String(enumeration.name());
    for (int i = 0; i < enumeration.keyCount(); ++i)
        line += QStringLiteral(" %1=%2").arg(QLatin1String(enumeration.key(i))).arg(enumeration.value(i));
    return line + QLatin1String(enumeration.isScoped() ? " scoped" : "");
}

/// What the class adds to its base, in the order of its meta-object.
QStringList linesOf(const QWidget &widget)
{
    const QMetaObject &meta = *widget.metaObject();
    QStringList lines{QStringLiteral("class %1 : %2")
                          .arg(QLatin1String(meta.className()), QLatin1String(meta.superClass()->className()))};
    for (int i = meta.enumeratorOffset(); i < meta.enumeratorCount(); ++i)
        lines << enumLine(meta.enumerator(i));
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        lines << propertyLine(meta.property(i), widget);
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        lines << methodLine(meta.method(i));
    return lines;
}

/// The lines of the promise that begin with \a first, up to the next empty one.
QStringList promised(const QString &first)
{
    QFile file(QStringLiteral(KEL_SOURCE_DIR "/tests/data/metaobjects.txt"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no promise");
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    const int begin = lines.indexOf(first);
    return begin < 0 ? QStringList() : lines.mid(begin, lines.indexOf(QString(), begin) - begin);
}

} // namespace

void tst_MetaObjects::promiseIsKept_data()
{
    QTest::addColumn<Create>("make");

    QTest::newRow("KelButton") << Create(create<KelButton>);
    QTest::newRow("KelClock") << Create(create<KelClock>);
    QTest::newRow("KelGraphic") << Create(create<KelGraphic>);
    QTest::newRow("KelLight") << Create(create<KelLight>);
    QTest::newRow("KelSlider") << Create(create<KelSlider>);
    QTest::newRow("KelSwitch") << Create(create<KelSwitch>);
    QTest::newRow("KelTabBar") << Create(create<KelTabBar>);
    QTest::newRow("KelTabWidget") << Create(create<KelTabWidget>);
    QTest::newRow("KelThermometer") << Create(create<KelThermometer>);
    QTest::newRow("LocalDevice") << Create(create<LocalDevice>);
    QTest::newRow("QTimerWidget") << Create(create<QTimerWidget>);
}

void tst_MetaObjects::promiseIsKept()
{
    QFETCH(Create, make);
    const std::unique_ptr<QWidget> widget(make());
    const QStringList lines = linesOf(*widget);
    const QStringList expected = promised(lines.first());
    for (int i = 0; i < std::min(lines.size(), expected.size()); ++i)
        QCOMPARE(lines.at(i), expected.at(i));
    QVERIFY2(lines.size() == expected.size(), qPrintable(lines.join(QLatin1Char('\n'))));
}

KEL_TEST_MAIN(tst_MetaObjects)
#include "tst_metaobjects.moc"
