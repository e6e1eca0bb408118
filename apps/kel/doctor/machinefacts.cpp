#include "doctor/machinefacts.h"

#include "catalogue/catalogue.h"
#include "command.h"

#include <kelglobals.h>
#include <widgetlist.h>

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QPluginLoader>
#include <QProcess>
#include <QRawFont>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <cstdio>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace
{

constexpr int ProbeTimeoutMs = 20000;
constexpr const char *PluginFile = "libkel_designer.so";

/// The display variables, as they are named in the environment.
constexpr const char *DisplayVariables[] = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};

/// What another program says and whether it ended well.
struct Answer {
    bool isGood = false;
    QString output;
    QString errors;
};

Answer ask(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Answer answer;
    if (!process.waitForFinished(ProbeTimeoutMs)) {
        answer.errors =
            process.error() == QProcess::Timedout ? QStringLiteral("it does not answer") : process.errorString();
        process.kill();
        process.waitForFinished();
        return answer;
    }
    answer.isGood = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    answer.output = QString::fromLocal8Bit(process.readAllStandardOutput());
    answer.errors = QString::fromLocal8Bit(process.readAllStandardError());
    return answer;
}

/// The folders in which Qt Designer, not this program, looks for plugins.
QStringList designerFolders()
{
    QStringList folders;
    for (const QString &path : QCoreApplication::libraryPaths()) {
        if (QDir(path) != QDir(QCoreApplication::applicationDirPath()))
            folders << path + QStringLiteral("/designer");
    }
    return folders;
}

/// The plugin of the tree that this program belongs to, built or installed; empty when it is not there.
QString pluginOfThisTree()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    for (const char *folder : {"../plugins/designer", "../" KEL_DESIGNER_PLUGIN_DIR}) {
        const QFileInfo file(programs.filePath(QLatin1String(folder) + QLatin1Char('/') + QLatin1String(PluginFile)));
        if (file.exists())
            return QDir::cleanPath(file.filePath());
    }
    return QString();
}

/// What is missing beside our library of a line "libKel_toolkit.so.0 => /path/libKel_toolkit.so.0 (0x…)": what draws
/// plots is loaded with the first plot, so the loader does not know of it.
QString missingModule(const QString &line)
{
    const QLatin1String module("libKel_plot.so");
    if (!line.contains(QLatin1String("libKel_toolkit.so")))
        return QString();
    const QDir folder = QFileInfo(line.section(QLatin1String(" => "), 1).section(QLatin1String(" ("), 0, 0)).dir();
    return folder.exists(module) ? QString() : QStringLiteral("%1 => not in %2").arg(module, folder.path());
}

/// Libraries that the loader would not find for \a path in a program that has not loaded ours already;
/// empty too when nobody can tell.
QString missingLibraries(const QString &path)
{
    QStringList missing;
    const Answer answer = ask(QStringLiteral("ldd"), {path}, QProcessEnvironment::systemEnvironment());
    for (const QString &line : answer.output.split(QLatin1Char('\n'))) {
        if (line.contains(QLatin1String("not found")))
            missing << line.simplified();
        else if (const QString module = missingModule(line); !module.isEmpty())
            missing << module;
    }
    return missing.join(QStringLiteral("; "));
}

void loadPlugin(MachineFacts &facts)
{
    facts.pluginError = missingLibraries(facts.pluginPath);
    if (!facts.pluginError.isEmpty()) {
        facts.pluginError.prepend(facts.pluginPath + QStringLiteral(": "));
        return;
    }
    QPluginLoader loader(facts.pluginPath);
    const auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
    if (!collection) {
        facts.pluginError = loader.isLoaded() ? facts.pluginPath + QStringLiteral(": it has no widgets in it")
                                              : loader.errorString().simplified();
        return;
    }
    QStringList offered;
    for (const QDesignerCustomWidgetInterface *widget : collection->customWidgets())
        offered << widget->name();
    for (const KelWidgetInfo &info : kelWidgetList()) {
        if (!offered.contains(info.className))
            facts.pluginMissing << info.className;
    }
}

void findPlugin(MachineFacts &facts, const QStringList &folders)
{
    facts.pluginFolders = folders.isEmpty() ? designerFolders() : folders;
    for (const QString &folder : qAsConst(facts.pluginFolders)) {
        const QString path = folder + QLatin1Char('/') + QLatin1String(PluginFile);
        if (!QFileInfo::exists(path))
            continue;
        facts.pluginPath = path;
        loadPlugin(facts);
        return;
    }
    facts.pluginElsewhere = pluginOfThisTree();
}

QString designerProgram()
{
    const QString beside =
        QStandardPaths::findExecutable(QStringLiteral("designer"), {QStringLiteral(KEL_QT_PROGRAMS)});
    return beside.isEmpty() ? QStandardPaths::findExecutable(QStringLiteral("designer")) : beside;
}

void trySql(MachineFacts &facts)
{
    const QString name = QStringLiteral("kel doctor");
    facts.hasSqlDriver = QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE"));
    if (!facts.hasSqlDriver)
        return;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(QStringLiteral(":memory:"));
        if (!database.open())
            facts.sqlError = database.lastError().text().simplified();
    }
    QSqlDatabase::removeDatabase(name);
}

/// The line that says most: Qt's last words tell only that the program ends.
QString firstLine(const QString &errors)
{
    for (const QString &line : errors.split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1String("QStandardPaths")))
            return line.simplified();
    }
    return QStringLiteral("Qt does not start");
}

void tryDisplay(MachineFacts &facts)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_LOGGING_RULES")); // They may hide the very words that tell why.
    for (const char *variable : DisplayVariables)
        facts.isDisplayNamed = facts.isDisplayNamed || !qEnvironmentVariableIsEmpty(variable);

    const QStringList probe{QStringLiteral("doctor"), QStringLiteral("--probe-display")};
    const QString program = QCoreApplication::applicationFilePath();
    Answer answer;
    if (facts.isDisplayNamed) {
        answer = ask(program, probe, environment);
        if (answer.isGood)
            facts.platform = answer.output.section(QLatin1Char(' '), 0, 0);
        else
            facts.displayError = firstLine(answer.errors);
    }
    if (!answer.isGood) {
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        answer = ask(program, probe, environment);
        if (!answer.isGood && facts.displayError.isEmpty())
            facts.displayError = firstLine(answer.errors);
    }
    facts.fontFamilies = answer.isGood ? answer.output.section(QLatin1Char(' '), 1, 1).toInt() : -1;
}

/// Whether the user database puts this user into \a group.
bool isMember(const QString &group)
{
    const passwd *user = getpwuid(geteuid());
    const struct group *entry = getgrnam(group.toLocal8Bit().constData());
    if (!user || !entry)
        return false;
    for (char **member = entry->gr_mem; *member; ++member) {
        if (qstrcmp(*member, user->pw_name) == 0)
            return true;
    }
    return user->pw_gid == entry->gr_gid;
}

DeviceFile describeFile(const QFileInfo &file)
{
    DeviceFile described;
    described.path = file.filePath();
    described.group = file.group();
    described.isUsable = access(described.path.toLocal8Bit().constData(), R_OK | W_OK) == 0;
    described.isMemberOnPaper = isMember(described.group);
    return described;
}

void findPorts(MachineFacts &facts)
{
    const QStringList names{QStringLiteral("ttyS*"), QStringLiteral("ttyUSB*"), QStringLiteral("ttyACM*"),
                            QStringLiteral("ttyAMA*")};
    for (const QFileInfo &file : QDir(QStringLiteral("/dev")).entryInfoList(names, QDir::System, QDir::Name))
        facts.ports << describeFile(file);
}

void findGpio(MachineFacts &facts)
{
    const QString configured = qEnvironmentVariable("KEL_GPIO_CHIP");
    facts.isGpioConfigured = !configured.isEmpty();
    facts.gpioChip = facts.isGpioConfigured ? configured : QStringLiteral("gpiochip0");

    // A chip is named by its path, its number, its file or its label.
    bool isNumber = false;
    facts.gpioChip.toUInt(&isNumber);
    const QString name = isNumber ? QStringLiteral("gpiochip") + facts.gpioChip : facts.gpioChip;
    QFileInfo file(QDir(QStringLiteral("/dev")), name);
    for (const QFileInfo &chip :
         QDir(QStringLiteral("/sys/class/gpio")).entryInfoList({QStringLiteral("gpiochip*")}, QDir::AllEntries)) {
        QFile label(chip.filePath() + QStringLiteral("/label"));
        if (!file.exists() && label.open(QIODevice::ReadOnly) && QString::fromUtf8(label.readAll()).trimmed() == name)
            file = chip;
    }
    if (file.exists())
        facts.gpio << describeFile(file);
}

void readCatalogue(MachineFacts &facts, const QString &path)
{
    facts.cataloguePath = path;
    try {
        openCatalogue(path);
        QSqlQuery query(Kel::commandsDB.database);
        if (query.exec(QStringLiteral("SELECT COUNT(*) FROM current;")) && query.next())
            facts.catalogueDevices = query.value(0).toInt();
    } catch (const CommandError &error) {
        facts.catalogueError = QString::fromUtf8(error.what());
    }
}

} // namespace

MachineFacts lookAround(const DoctorQuestions &questions)
{
    MachineFacts facts;
    facts.builtQt = QStringLiteral(QT_VERSION_STR);
    facts.runningQt = QString::fromLatin1(qVersion());
    facts.isForDesigner = questions.isForDesigner;
    if (facts.isForDesigner) {
        facts.designerProgram = designerProgram();
        findPlugin(facts, questions.pluginFolders);
    }
    trySql(facts);
    tryDisplay(facts);
    findPorts(facts);
    findGpio(facts);
    if (!questions.catalogue.isEmpty() && facts.hasSqlDriver)
        readCatalogue(facts, questions.catalogue);
    return facts;
}

int probeDisplay(int argc, char **argv)
{
    const QApplication application(argc, argv);
    // Names like "Serif" are there without any font.
    const bool hasFont = !QRawFont::fromFont(QApplication::font()).familyName().isEmpty();
    std::printf("%s %d\n", qPrintable(QGuiApplication::platformName()),
                hasFont ? QFontDatabase().families().size() : 0);
    return 0;
}
