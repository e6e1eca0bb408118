#include "catalogue/cataloguedatabase.h"
#include "command.h"
#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <QFile>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtEndian>

namespace
{

const char Form[] =
    "<ui version='4.0'><widget class='QWidget' name='P'/><connections><connection><sender>nobody</sender>"
    "<signal>a()</signal><receiver>P</receiver><slot>close()</slot></connection></connections></ui>";
constexpr int Rows = 1000; // far more than a page holds

/// Bytes that are put into the file of a good catalogue.
struct Damage {
    qint64 at;
    QByteArray bytes;
};

int numberOf(const QString &path, const QString &query)
{
    CatalogueConnection connection(path, CatalogueConnection::Access::Read);
    QSqlQuery number(connection.database());
    if (!number.exec(query) || !number.next())
        qFatal("no answer to %s", qPrintable(query));
    return number.value(0).toInt();
}

/// Where the page begins at which a table or an index begins.
qint64 rootOf(const QString &path, const char *name)
{
    return qint64(numberOf(path, QStringLiteral("PRAGMA page_size"))) *
           (numberOf(path,
                     QStringLiteral("SELECT rootpage FROM sqlite_master WHERE name='%1'").arg(QLatin1String(name))) -
            1);
}

/// Where the last page of a table begins, whose number stands in the page at which the table begins.
qint64 lastPageOf(const QString &path, const char *name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(rootOf(path, name) + 8))
        qFatal("cannot read %s", qPrintable(path));
    return qint64(numberOf(path, QStringLiteral("PRAGMA page_size"))) *
           (qFromBigEndian<quint32>(file.read(4).constData()) - 1);
}

void apply(const QString &path, const Damage &damage)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(damage.bytes.isEmpty() ? file.resize(damage.at)
                                   : file.seek(damage.at) && file.write(damage.bytes) == damage.bytes.size());
}

} // namespace

/// A panel that is given a catalogue that is damaged, a little or a lot.
class tst_PanelCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void damageIsTold_data();
    void damageIsTold();
    void noPictureOfDamage_data() { damageIsTold_data(); }
    void noPictureOfDamage();
    void damageIsToldWithoutDisplay_data() { damageIsTold_data(); }
    void damageIsToldWithoutDisplay();
    void unusualTablesAreNoDamage();
    void freePagesAreNoDamage();

private:
    KelRun run(const QStringList &more = {}, bool isSeen = true) const;
    QString picture() const { return m_catalogue->filePath(QStringLiteral("p.png")); }

    std::unique_ptr<TempCatalogue> m_catalogue;
};

void tst_PanelCatalogue::init()
{
    m_catalogue = std::make_unique<TempCatalogue>();
    m_catalogue->run(QStringLiteral("BEGIN"));
    for (int i = 0; i < Rows; ++i)
        m_catalogue->addPacket(i, 1, QStringLiteral("packet"), QStringLiteral("01 02 03"));
    m_catalogue->run(QStringLiteral("COMMIT"));
    m_catalogue->run(QStringLiteral("CREATE UNIQUE INDEX numbers ON packets(id)"));
    m_catalogue->writeFile(QStringLiteral("x.ui"), Form);
}

KelRun tst_PanelCatalogue::run(const QStringList &more, bool isSeen) const
{
    const QStringList words{QStringLiteral("panel"), m_catalogue->filePath(QStringLiteral("x.ui")),
                            QStringLiteral("--db"), m_catalogue->path()};
    return runKel(words + more, {},
                  {isSeen ? QStringLiteral("QT_QPA_PLATFORM=offscreen") : QStringLiteral("QT_QPA_PLATFORM="),
                   QStringLiteral("DISPLAY="), QStringLiteral("WAYLAND_DISPLAY=")});
}

void tst_PanelCatalogue::damageIsTold_data()
{
    QTest::addColumn<QByteArray>("where");
    QTest::addColumn<bool>("isSeenAtOnce"); // else as soon as the panel is shown

    QTest::newRow("page of a table") << QByteArray("packets") << true;
    QTest::newRow("row of a table") << QByteArray("row") << true;
    QTest::newRow("first page of a table") << QByteArray("current") << true;
    QTest::newRow("free pages that are none") << QByteArray("free") << true;
    QTest::newRow("cut short") << QByteArray("cut") << true;
    QTest::newRow("page of an index") << QByteArray("numbers") << false;
}

static Damage damageOf(const QByteArray &where, const QString &path)
{
    if (where == "free")
        return {32, QByteArray::fromHex("0000000000000007")};
    if (where == "cut")
        return {QFile(path).size() / 2 / 4096 * 4096, {}};
    if (where == "row") // which begins past the end of its page
        return {lastPageOf(path, "packets") + 8, QByteArray(2, '\xFF')};
    const qint64 page = where == "packets" ? lastPageOf(path, where.constData()) : rootOf(path, where.constData());
    return {page, QByteArray(8, '\xEE')};
}

void tst_PanelCatalogue::damageIsTold()
{
    QFETCH(QByteArray, where);
    QFETCH(bool, isSeenAtOnce);
    apply(m_catalogue->path(), damageOf(where, m_catalogue->path()));
    const KelRun panel = run();

    QCOMPARE(panel.exitCode, 1);
    QCOMPARE(panel.errors.contains("nobody"), !isSeenAtOnce); // of the form, which is read after the catalogue
    const QByteArray told = panel.errorLines().last();
    QVERIFY2(told.startsWith("kel: " + m_catalogue->path().toUtf8() + ": "), panel.errors.constData());
    QVERIFY2(told.contains(": the catalogue is damaged (") || (where == "cut" && told.contains(": not a readable cat")),
             panel.errors.constData());
}

void tst_PanelCatalogue::noPictureOfDamage()
{
    QFETCH(QByteArray, where);
    apply(m_catalogue->path(), damageOf(where, m_catalogue->path()));
    const KelRun panel = run({QStringLiteral("--after=0"), QStringLiteral("--screenshot"), picture()});
    QCOMPARE(panel.exitCode, 1);
    QCOMPARE(panel.errorLines().size(), 1);
    QVERIFY(!QFile::exists(picture()));
}

/// That there is no display is said when nothing else is wrong.
void tst_PanelCatalogue::damageIsToldWithoutDisplay()
{
    QFETCH(QByteArray, where);
    apply(m_catalogue->path(), damageOf(where, m_catalogue->path()));
    const KelRun panel = run({}, false);
    QCOMPARE(panel.exitCode, 1);
    QCOMPARE(panel.errorLines().size(), 1);
    QVERIFY2(panel.errors.contains(": the catalogue is damaged (") || where == "cut", panel.errors.constData());
}

void tst_PanelCatalogue::unusualTablesAreNoDamage()
{
    m_catalogue->run(QStringLiteral("CREATE TABLE \"a \"\"b\"\" (c\" (x TEXT PRIMARY KEY, y) WITHOUT ROWID"));
    m_catalogue->run(QStringLiteral("CREATE TABLE number_maker (n INTEGER PRIMARY KEY AUTOINCREMENT)"));
    m_catalogue->run(QStringLiteral("CREATE VIEW v AS SELECT * FROM missing"));
    m_catalogue->run(QStringLiteral("ANALYZE"));
    checkCatalogueFile(m_catalogue->path(), CatalogueCheck::Pages);
    // Were they not counted, the whole check would come, which finds this.
    apply(m_catalogue->path(), damageOf("numbers", m_catalogue->path()));
    checkCatalogueFile(m_catalogue->path(), CatalogueCheck::Pages);
    QVERIFY_EXCEPTION_THROWN(checkCatalogueFile(m_catalogue->path(), CatalogueCheck::Whole), CommandError);
}

void tst_PanelCatalogue::freePagesAreNoDamage()
{
    m_catalogue->run(QStringLiteral("DELETE FROM packets"));
    QVERIFY(numberOf(m_catalogue->path(), QStringLiteral("PRAGMA freelist_count")) > 0);
    checkCatalogueFile(m_catalogue->path(), CatalogueCheck::Pages);
}

KEL_TEST_MAIN(tst_PanelCatalogue)
#include "tst_panelcatalogue.moc"
