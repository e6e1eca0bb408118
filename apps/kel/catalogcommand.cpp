// kel catalog: make, print, export and check command catalogues.
#include "catalogue/catalogue.h"
#include "catalogue/cataloguedatabase.h"
#include "catalogue/cataloguefiles.h"
#include "catalogue/cataloguesource.h"
#include "command.h"
#include "commands.h"
#include "printable.h"
#include "wholefile.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace
{

struct CatalogOptions {
    std::string file;
    std::string output;
    bool isAnyway = false;
};

void print(const QByteArray &text)
{
    const auto size = std::size_t(text.size());
    if (std::fwrite(text.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        throw CommandError(QStringLiteral("cannot write to standard output"));
}

int make(const CatalogOptions &options)
{
    makeCatalogue(QString::fromStdString(options.file), QString::fromStdString(options.output));
    return 0;
}

QString shownText(const CatalogueCell &cell)
{
    if (const auto *text = std::get_if<QString>(&cell))
        return printable(*text);
    if (const auto *number = std::get_if<qint64>(&cell))
        return QString::number(*number);
    return QStringLiteral("-");
}

/// The rows of a section with their columns under each other, below a line of keys.
QString sectionText(CatalogueSection section, const QVector<CatalogueRow> &rows)
{
    const CatalogueTable &table = catalogueTable(section);
    QVector<QStringList> lines(1);
    for (const CatalogueColumn &column : table.columns)
        lines[0] << QLatin1String(column.key);
    for (const CatalogueRow &row : rows) {
        QStringList line;
        for (const CatalogueCell &cell : row.cells)
            line << shownText(cell);
        lines << line;
    }
    QVector<int> widths(table.columns.size(), 0);
    for (const QStringList &line : lines) {
        for (int column = 0; column < line.size(); ++column)
            widths[column] = std::max(widths.at(column), line.at(column).size());
    }
    QString text = QLatin1String(table.section) + QLatin1Char('\n');
    for (const QStringList &line : lines) {
        QString written;
        for (int column = 0; column < line.size(); ++column)
            written += QStringLiteral("  ") + line.at(column).leftJustified(widths.at(column));
        while (written.endsWith(QLatin1Char(' ')))
            written.chop(1);
        text += written + QLatin1Char('\n');
    }
    return text;
}

int show(const CatalogOptions &options)
{
    const AnyCatalogue catalogue = AnyCatalogue::read(QString::fromStdString(options.file));
    QStringList sections;
    forEachCatalogueSection([&](CatalogueSection section) {
        if (!catalogue.data.rows(section).isEmpty())
            sections << sectionText(section, catalogue.data.rows(section));
    });
    print(sections.join(QLatin1Char('\n')).toUtf8());
    if (!catalogue.mistakes.isEmpty())
        std::fprintf(stderr, "kel: %s (kel catalog check tells all)\n", qPrintable(catalogue.mistakes.first()));
    return catalogue.mistakes.isEmpty() ? 0 : 1;
}

/// Why \a file cannot be written as a source without losing something; nothing when it can.
QString exportObstacle(const CatalogueFile &file, bool isAnyway)
{
    if (!file.problems.isEmpty())
        return file.problems.first();
    if (!file.foreignParts.isEmpty() && !isAnyway)
        return QStringLiteral("%1 is no part of a catalogue (--anyway leaves such parts out)")
            .arg(file.foreignParts.first());
    QString obstacle;
    forEachCatalogueSection([&](CatalogueSection section) {
        const CatalogueTable &table = catalogueTable(section);
        for (const CatalogueRow &row : file.data.rows(section)) {
            for (int column = 0; column < table.columns.size() && obstacle.isEmpty(); ++column) {
                if (table.columns.at(column).isNumber() && row.text(column))
                    obstacle = QStringLiteral("%1: %2 is a text, not a number")
                                   .arg(catalogueRowTitle(section, row), QLatin1String(table.columns.at(column).key));
            }
        }
    });
    return obstacle;
}

int exportSource(const CatalogOptions &options)
{
    const QString path = QString::fromStdString(options.file);
    const CatalogueFile file = CatalogueFile::read(path);
    const QString obstacle = exportObstacle(file, options.isAnyway);
    if (!obstacle.isEmpty())
        throw CommandError(QStringLiteral("%1: %2").arg(path, obstacle));
    const QByteArray text = catalogueSourceText(file.data);
    if (options.output.empty()) {
        print(text);
        return 0;
    }
    const QString output = QString::fromStdString(options.output);
    if (QFileInfo::exists(output))
        throw CommandError(QStringLiteral("%1: is there already").arg(output));
    writeWholeFile(output, text);
    return 0;
}

int check(const CatalogOptions &options)
{
    const AnyCatalogue catalogue = AnyCatalogue::read(QString::fromStdString(options.file));
    QByteArray lines;
    for (const QString &mistake : catalogue.mistakes)
        lines += mistake.toUtf8() + '\n';
    print(lines);
    return catalogue.mistakes.isEmpty() ? 0 : 1;
}

using Job = int (*)(const CatalogOptions &);

CLI::App *addJob(Program &program, CLI::App &group, const char *name, const char *help, Job job,
                 CatalogOptions *&options)
{
    CLI::App *line = group.add_subcommand(name, help);
    const auto kept = std::make_shared<CatalogOptions>();
    line->callback([&program, kept, job] {
        program.chosen = [&program, kept, job] {
            const QCoreApplication application(program.argc, program.argv); // the database driver is a plugin
            return job(*kept);
        };
    });
    options = kept.get();
    return line;
}

} // namespace

void addCatalogCommand(Program &program)
{
    CLI::App *group = program.line.add_subcommand("catalog", "Make, print, export and check command catalogues");
    group->require_subcommand(1);
    CatalogOptions *options = nullptr;

    CLI::App *line = addJob(program, *group, "make", "Make a catalogue from its source", make, options);
    line->add_option("source", options->file, "The source (docs/formats/catalogue-source.md)")->required();
    line->add_option("catalogue", options->output, "The catalogue to make or replace (SQLite)")->required();

    line = addJob(program, *group, "show", "Print a catalogue or a source as tables", show, options);
    line->add_option("file", options->file, "A catalogue (SQLite) or a source (TOML)")->required();

    line = addJob(program, *group, "export", "Write the source that makes a catalogue again", exportSource, options);
    line->add_option("catalogue", options->file, "The catalogue (SQLite)")->required();
    line->add_option("source", options->output, "The new source; standard output without it");
    line->add_flag("--anyway", options->isAnyway, "Leave out tables and columns that are none of a catalogue's");

    line = addJob(program, *group, "check", "Tell every mistake in a catalogue or a source", check, options);
    line->add_option("file", options->file, "A catalogue (SQLite) or a source (TOML)")->required();
}
