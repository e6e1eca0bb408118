#include "testmain.h"

#include <command.h>
#include <panel/formloader.h>
#include <widgetlist.h>

#include <QMetaProperty>
#include <QTemporaryDir>

class tst_FormLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formIsRefused_data();
    void formIsRefused();
    void remarksAreComplaints();
    void enumerationIsReadByName();
    void everyListedClassLoads_data();
    void everyListedClassLoads();
    void hostileNumbersEnd_data();
    void hostileNumbersEnd();

private:
    QString write(const QByteArray &inside) const;

    QTemporaryDir m_dir;
};

QString tst_FormLoader::write(const QByteArray &inside) const
{
    const QString path = m_dir.filePath(QStringLiteral("x.ui"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s", qPrintable(file.errorString()));
    file.write("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"A\">" + inside + "</widget></ui>");
    return path;
}

void tst_FormLoader::formIsRefused_data()
{
    QTest::addColumn<QByteArray>("inside");
    QTest::addColumn<QString>("line");
    QTest::newRow("a class that nobody knows") << QByteArray("<widget class=\"Thermostat\" name=\"t\"/>")
                                               << QStringLiteral("%1:1: unknown widget class \"Thermostat\"");
    QTest::newRow("a class that a form makes up from one that is known")
        << QByteArray("<widget class=\"Mine\" name=\"m\"/></widget><customwidgets><customwidget><class>Mine</class>"
                      "<extends>KelButton</extends></customwidget></customwidgets><widget class=\"QWidget\">")
        << QStringLiteral("%1:1: unknown widget class \"Mine\"");
    QTest::newRow("a window that no screen can show")
        << QByteArray(
               "<layout class=\"QHBoxLayout\" name=\"l\"><item><widget class=\"QLabel\" name=\"a\"><property "
               "name=\"minimumSize\"><size><width>9000</width><height>9</height></size></property></widget>"
               "</item><item><widget class=\"QLabel\" name=\"b\"><property name=\"minimumSize\"><size><width>9000"
               "</width><height>9</height></size></property></widget></item><property name=\"spacing\"><number>0"
               "</number></property><property name=\"leftMargin\"><number>0</number></property><property "
               "name=\"rightMargin\"><number>0</number></property><property name=\"topMargin\"><number>0</number>"
               "</property><property name=\"bottomMargin\"><number>0</number></property></layout>")
        << QStringLiteral("%1: it would be 18000 by");
}

void tst_FormLoader::formIsRefused()
{
    QFETCH(QByteArray, inside);
    QFETCH(QString, line);
    const QString path = write(inside);
    try {
        loadForm(path);
        QFAIL("it was loaded");
    } catch (const CommandError &error) {
        const QString said = QString::fromUtf8(error.what());
        QVERIFY2(said.startsWith(line.arg(path)), error.what());
        QVERIFY(!said.contains(QLatin1Char('\n')));
    }
}

void tst_FormLoader::remarksAreComplaints()
{
    const QString path = write("<layout class=\"QGridLayout\" name=\"l\"/><layout class=\"QVBoxLayout\" name=\"m\"/>");
    const LoadedForm form = loadForm(path);
    QCOMPARE(form.complaints.size(), 1);
    const QString line = form.complaints.first();
    QVERIFY2(line.startsWith(path + QStringLiteral(": Attempt to add a layout")), qPrintable(line));
    QVERIFY(!line.contains(QLatin1Char('\n')));
}

void tst_FormLoader::enumerationIsReadByName()
{
    const LoadedForm form = loadForm(write("<widget class=\"KelLight\" name=\"l\"><property name=\"iconType\">"
                                           "<enum>KelLight::LED</enum></property></widget>"));
    QCOMPARE(form.complaints, QStringList());
    QCOMPARE(form.window->findChild<QWidget *>(QStringLiteral("l"))->property("iconType").toInt(), 1);
}

void tst_FormLoader::everyListedClassLoads_data()
{
    QTest::addColumn<QString>("className");
    for (const KelWidgetInfo &info : kelWidgetList())
        QTest::newRow(qPrintable(info.className)) << info.className;
}

void tst_FormLoader::everyListedClassLoads()
{
    QFETCH(QString, className);
    const LoadedForm form = loadForm(write("<widget class=\"" + className.toLatin1() + "\" name=\"w\"/>"));
    const auto *widget = form.window->findChild<QWidget *>(QStringLiteral("w"));
    QVERIFY(widget);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
}

void tst_FormLoader::hostileNumbersEnd_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QByteArray>("property");
    for (const KelWidgetInfo &info : kelWidgetList()) {
        const std::unique_ptr<QWidget> widget(info.create(nullptr));
        const QMetaObject *meta = widget->metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const int type = meta->property(i).userType();
            if (!meta->property(i).isDesignable(widget.get()) || meta->property(i).isEnumType())
                continue;
            const QByteArray start = "<property name=\"" + QByteArray(meta->property(i).name()) + "\">";
            QByteArrayList values;
            if (type == QMetaType::Double)
                values = {"<double>1e300</double>", "<double>-1e300</double>", "<double>nan</double>",
                          "<double>1e-300</double>"};
            else if (type == QMetaType::Int)
                values = {"<number>2147483647</number>", "<number>-2147483648</number>"};
            for (const QByteArray &value : qAsConst(values))
                QTest::newRow((info.className.toLatin1() + ' ' + meta->property(i).name() + ' ' + value).constData())
                    << info.className << start + value + "</property>";
        }
    }
}

/// A form may hold any number: it is refused, or the panel is shown with it.
void tst_FormLoader::hostileNumbersEnd()
{
    QFETCH(QString, className);
    QFETCH(QByteArray, property);
    try {
        const LoadedForm form =
            loadForm(write("<layout class=\"QVBoxLayout\" name=\"l\"><item><widget class=\"" + className.toLatin1() +
                           "\" name=\"w\">" + property + "</widget></item></layout>"));
        form.window->show();
        QVERIFY(!form.window->grab().isNull());
    } catch (const CommandError &error) {
        QVERIFY(QByteArray(error.what()).contains("x.ui:"));
    }
}

KEL_TEST_MAIN(tst_FormLoader)
#include "tst_formloader.moc"
