#include "tempcatalogue.h"
#include "testmain.h"

#include <QLoggingCategory>
#include <kelbutton.h>
#include <kelglobals.h>

/// The bound command: its text, and the look into the catalogue.
class tst_KelButtonCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void parse_data();
    void parse();
    void parseAppends();
    void parseTakesNullPointers();
    void connects_data();
    void connects();
    void closedCatalogueConnectsNothing();
    void objectMustBeADevice();
    void recheckedBy_data();
    void recheckedBy();
    void checkRepaints();
    void emptyCommandChecksNothing();

private:
    TempCatalogue m_catalogue;
};

void tst_KelButtonCommand::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    m_catalogue.addDevice(1, QStringLiteral("Relay"));
    m_catalogue.addObject(10, 1, QStringLiteral("lamp"));
    m_catalogue.addObject(11, 1, QStringLiteral("bare"));
    m_catalogue.addPacket(100, 10, QStringLiteral("get"), QStringLiteral("01"));
    m_catalogue.addPacket(101, 10, QStringLiteral("set"), QStringLiteral("02 %0"));
}

void tst_KelButtonCommand::init()
{
    Kel::commandsDB.setDatabase(m_catalogue.path());
    QVERIFY(Kel::commandsDB.database.isOpen());
}

void tst_KelButtonCommand::parse_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QStringList>("arguments");

    const auto row = [](const char *name, const char *command, const char *object, const char *method,
                        const QStringList &arguments) {
        QTest::newRow(name) << QString::fromUtf8(command) << QString::fromUtf8(object) << QString::fromUtf8(method)
                            << arguments;
    };
    const auto list = [](const char *text) { return QString::fromUtf8(text).split(QLatin1Char('|')); };
    const QStringList none;
    row("arguments keep their blanks", "lamp.set(1, 2)", "lamp", "set", list("1| 2"));
    row("without arguments", "a.b", "a", "b", none);
    row("empty brackets are one empty argument", "a.b()", "a", "b", list(""));
    row("empty arguments stay", "a.b(,,)", "a", "b", list("||"));
    row("without full stop only the arguments", "set(1)", "kept", "kept", list("1"));
    row("further parts are ignored", "a.b.c.d", "a", "b", none);
    row("empty parts stay", ".b", "", "b", none);
    row("a full stop alone", ".", "", "", none);
    row("bracket at the beginning opens no list", "(1).x", "(1)", "x", none);
    row("blank before the bracket makes it second", " (1)", "kept", "kept", list("1"));
    row("trimmed when there are brackets", "  a.b  (1)  ", "a", "b", list("1"));
    row("not trimmed without", " a.b ", " a", "b ", none);
    row("last character goes, bracket or not", "a.b(12", "a", "b", list("1"));
    row("opening bracket alone", "a.b(", "a", "b", list(""));
    row("text after the closing bracket loses its end", "a.b(1)xy", "a", "b", list("1)x"));
    row("inner brackets stay", "a.b(f(1),2)", "a", "b", list("f(1)|2"));
    row("full stop inside the arguments", "ab(1.5)", "kept", "kept", list("1.5"));
    row("blanks around the list", "a.b( 1 )", "a", "b", list(" 1 "));
    row("empty", "", "kept", "kept", none);
}

void tst_KelButtonCommand::parse()
{
    QFETCH(QString, command);
    QFETCH(QString, object);
    QFETCH(QString, method);
    QFETCH(QStringList, arguments);

    QString parsedObject = QStringLiteral("kept");
    QString parsedMethod = QStringLiteral("kept");
    QVector<QVariant> parsed;
    KelButton::parseCommand(command, &parsedObject, &parsedMethod, &parsed);
    QCOMPARE(parsedObject, object);
    QCOMPARE(parsedMethod, method);

    QStringList texts;
    for (const QVariant &argument : parsed) {
        QCOMPARE(argument.type(), QVariant::String);
        texts << argument.toString();
    }
    QCOMPARE(texts, arguments);
}

void tst_KelButtonCommand::parseAppends()
{
    QVector<QVariant> arguments{1.5};
    KelButton::parseCommand(QStringLiteral("a.b(2)"), nullptr, nullptr, &arguments);
    QCOMPARE(arguments, QVector<QVariant>({1.5, QStringLiteral("2")}));
    KelButton::parseCommand(QStringLiteral("a.b"), nullptr, nullptr, &arguments);
    QCOMPARE(arguments.size(), 2);
}

void tst_KelButtonCommand::parseTakesNullPointers()
{
    QString object;
    QString method;
    KelButton::parseCommand(QStringLiteral("a.b(1)"), nullptr, nullptr, nullptr);
    KelButton::parseCommand(QStringLiteral("a.b(1)"), &object, nullptr, nullptr);
    KelButton::parseCommand(QStringLiteral("a.b(1)"), nullptr, &method, nullptr);
    QCOMPARE(object, QStringLiteral("a"));
    QCOMPARE(method, QStringLiteral("b"));
}

/// Whether the mark that a designer sees says that the command is known.
static bool showsConnected(KelButton &button)
{
    const QImage yes(QStringLiteral(":/icons/connected.png"));
    const QImage no(QStringLiteral(":/icons/disconnected.png"));
    const QPoint probe(8, 2); // Beside the sign, where the marks are opaque.

    button.designMode = true;
    button.resize(200, 40);
    QImage image(button.size(), QImage::Format_ARGB32);
    button.render(&image);
    const QColor shown = image.pixelColor(QPoint(4, 4) + probe);
    if (shown != yes.pixelColor(probe) && shown != no.pixelColor(probe))
        qWarning("neither mark is shown");
    return shown == yes.pixelColor(probe);
}

void tst_KelButtonCommand::connects_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<bool>("connected");
    QTest::newRow("known") << QStringLiteral("lamp.get") << true;
    QTest::newRow("known, not the first") << QStringLiteral("lamp.set") << true;
    QTest::newRow("with arguments") << QStringLiteral("lamp.set(1, 2)") << true;
    QTest::newRow("unknown method") << QStringLiteral("lamp.put") << false;
    QTest::newRow("unknown object") << QStringLiteral("pump.set") << false;
    QTest::newRow("device name is no object") << QStringLiteral("Relay.set") << false;
    QTest::newRow("other case") << QStringLiteral("Lamp.set") << false;
    QTest::newRow("object without packets") << QStringLiteral("bare.set") << false;
    QTest::newRow("no full stop") << QStringLiteral("set") << false;
    QTest::newRow("blanks are kept") << QStringLiteral("lamp.set ") << false;
}

void tst_KelButtonCommand::connects()
{
    QFETCH(QString, command);
    QFETCH(bool, connected);
    KelButton button;
    button.setCommand(command);
    QCOMPARE(button.command(), command);
    QCOMPARE(showsConnected(button), connected);
}

void tst_KelButtonCommand::closedCatalogueConnectsNothing()
{
    KelButton button;
    button.setCommand(QStringLiteral("lamp.set"));
    QVERIFY(showsConnected(button));
    Kel::commandsDB.closeDatabase();
    QVERIFY(!Kel::commandsDB.packets.isEmpty());
    QVERIFY(showsConnected(button));
    button.checkConnected();
    QVERIFY(!showsConnected(button));
}

void tst_KelButtonCommand::objectMustBeADevice()
{
    Kel::commandsDB.devices.clear();
    KelButton button;
    button.setCommand(QStringLiteral("lamp.set"));
    QVERIFY(!showsConnected(button));
}

void tst_KelButtonCommand::recheckedBy_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<bool>("checks");
    QTest::newRow("clickID") << QByteArray("clickID") << true;
    QTest::newRow("command") << QByteArray("command") << true;
    QTest::newRow("yesID") << QByteArray("yesID") << false;
    QTest::newRow("noID") << QByteArray("noID") << false;
    QTest::newRow("timer of the host") << QByteArray() << true;
    QTest::newRow("another timer") << QByteArray("timer") << false;
}

void tst_KelButtonCommand::recheckedBy()
{
    QFETCH(QByteArray, property);
    QFETCH(bool, checks);

    KelButton button;
    button.setCommand(QStringLiteral("lamp.set"));
    Kel::commandsDB.closeDatabase();
    button.connectCheckTimer = 4711;
    if (property.isEmpty() || property == "timer") {
        QTimerEvent event(property.isEmpty() ? 4711 : 4712);
        QCoreApplication::sendEvent(&button, &event);
    } else {
        const QVariant value = property == "command" ? QVariant(QStringLiteral("lamp.set")) : QVariant(3);
        QVERIFY(button.setProperty(property.constData(), value));
    }
    QCOMPARE(showsConnected(button), !checks);
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

void tst_KelButtonCommand::checkRepaints()
{
    KelButton button;
    PaintCounter counter;
    button.setCommand(QStringLiteral("lamp.set"));
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QCoreApplication::processEvents();
    button.installEventFilter(&counter);
    button.checkConnected();
    QTRY_COMPARE(counter.paints, 1);
}

void tst_KelButtonCommand::emptyCommandChecksNothing()
{
    KelButton button;
    PaintCounter counter;
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QCoreApplication::processEvents();
    button.installEventFilter(&counter);
    button.checkConnected();
    QCoreApplication::processEvents();
    QCOMPARE(counter.paints, 0);
}

KEL_TEST_MAIN(tst_KelButtonCommand)
#include "tst_kelbuttoncommand.moc"
