// kel template: encode, decode and explain typed command templates.
#include "command.h"
#include "commands.h"
#include "templatevalues.h"

#include <argumenttype.h>

#include <QFile>

#include <cstdio>
#include <memory>

using Kv_Designer::ArgumentType;
using Kv_Designer::CommandArgument;

namespace
{

/// What stands on the command line behind `kel template encode` and its siblings.
struct Input {
    std::string text;               ///< The template.
    std::vector<std::string> words; ///< Values or hexadecimal bytes.
    std::string file;               ///< Lines to read instead, "-" for standard input.
    bool isRaw = false;
};

QStringList toTexts(const std::vector<std::string> &words)
{
    QStringList texts;
    for (const std::string &word : words)
        texts += QString::fromStdString(word);
    return texts;
}

/// The words of \a text between blanks.
QStringList wordsOf(const QString &text)
{
    const QString simple = text.simplified();
    return simple.isEmpty() ? QStringList() : simple.split(QLatin1Char(' '));
}

QByteArray readAll(const std::string &name)
{
    QFile file(QString::fromStdString(name));
    const bool isOpen = name == "-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    const QByteArray content = isOpen ? file.readAll() : QByteArray();
    if (!isOpen || file.error() != QFileDevice::NoError)
        throw CommandError(QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
    return content;
}

using LineJob = std::function<QByteArray(const QString &)>;

/// Runs \a job for every line of the file that is neither blank nor a "#" remark. A failure carries
/// the number of its line.
QByteArray forEachLine(const std::string &name, const LineJob &job)
{
    const QString source = name == "-" ? QStringLiteral("standard input") : QString::fromStdString(name);
    QByteArray output;
    int number = 0;
    const QList<QByteArray> lines = readAll(name).split('\n');
    for (const QByteArray &line : lines) {
        ++number;
        QString text = QString::fromUtf8(line);
        if (text.endsWith(QLatin1Char('\r')))
            text.chop(1);
        if (text.trimmed().isEmpty() || text.startsWith(QLatin1Char('#')))
            continue;
        try {
            output += job(text);
        } catch (const CommandError &error) {
            throw CommandError(
                QStringLiteral("%1:%2: %3").arg(source, QString::number(number), QString::fromUtf8(error.what())));
        }
    }
    return output;
}

/// Prints only when all of the work is done, so that a failure leaves no half of an output.
int print(const QByteArray &output)
{
    const auto size = static_cast<std::size_t>(output.size());
    if (std::fwrite(output.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        throw CommandError(QStringLiteral("cannot write to standard output"));
    return 0;
}

int encode(const Input &input)
{
    const ReadTemplate read(QString::fromStdString(input.text));
    const auto encodeWords = [&](const QStringList &words) {
        QByteArray bytes;
        read.compiled.encode(valuesFromWords(read, words), bytes);
        return input.isRaw ? bytes : hexFromBytes(bytes).toLatin1() + '\n';
    };
    if (!input.file.empty())
        return print(forEachLine(input.file, [&](const QString &line) { return encodeWords(wordsOf(line)); }));
    return print(encodeWords(toTexts(input.words)));
}

int decode(const Input &input)
{
    const ReadTemplate read(QString::fromStdString(input.text));
    const auto decodeLine = [&](const QString &line) {
        return wordsFromBytes(read, bytesFromHex(wordsOf(line))).toUtf8() + '\n';
    };
    if (!input.file.empty())
        return print(forEachLine(input.file, decodeLine));
    return print(decodeLine(toTexts(input.words).join(QLatin1Char(' '))));
}

QString contentOf(const CommandArgument &entry, const QByteArray &sent)
{
    if (entry.any)
        return QStringLiteral("any");
    if (entry.value < 0)
        return QStringLiteral("value %1").arg(~entry.value);

    const QString constant = QStringLiteral("constant ") + hexFromBytes(sent);
    if (entry.value > 255)
        return constant + QStringLiteral(", never found in an answer");
    const QByteArray found(entry.size, char(entry.value));
    return found == sent ? constant : constant + QStringLiteral(", in an answer ") + hexFromBytes(found);
}

QByteArray tableLine(const QStringList &cells)
{
    static constexpr int Widths[] = {8, 7, 8, 8, 16};
    QString line;
    for (int i = 0; i < cells.size(); ++i)
        line += i < 5 ? cells.at(i).leftJustified(Widths[i] - 1) + QLatin1Char(' ') : cells.at(i);
    return line.trimmed().toUtf8() + '\n';
}

QByteArray explainText(const QString &text)
{
    const ReadTemplate read(text);
    const auto dash = [](const QString &cell) { return cell.isEmpty() ? QStringLiteral("-") : cell; };

    QByteArray table = tableLine({"offset", "bytes", "type", "order", "name", "content"});
    for (int i = 0; i < read.entries.size(); i += read.entries.at(i).size) {
        const CommandArgument &entry = read.entries.at(i);
        const QString order = entry.size == 1 ? QString() : QLatin1String(entry.swapBytes ? "big" : "little");
        const QString type = Kv_Designer::typeWord(static_cast<ArgumentType>(entry.type));
        const QByteArray sent = entry.value < 0 ? QByteArray() : argumentToByteArray(entry, entry.value);
        table += tableLine({QString::number(i), QString::number(entry.size), type, dash(order), dash(entry.name),
                            contentOf(entry, sent)});
    }
    return table;
}

int explain(const Input &input)
{
    if (!input.file.empty())
        return print(forEachLine(input.file, explainText));
    return print(explainText(QString::fromStdString(input.text)));
}

using Job = int (*)(const Input &);

CLI::App *addJob(Program &program, CLI::App &group, const char *name, const char *help, Job job, Input *&input)
{
    CLI::App *line = group.add_subcommand(name, help);
    const auto kept = std::make_shared<Input>();
    line->callback([&program, kept, job] { program.chosen = [kept, job] { return job(*kept); }; });
    input = kept.get();
    return line;
}

} // namespace

void addTemplateCommand(Program &program)
{
    CLI::App *group = program.line.add_subcommand("template", "Encode, decode and explain typed command templates");
    group->require_subcommand(1);
    Input *input = nullptr;

    CLI::App *line = addJob(program, *group, "encode", "Print the bytes of a message", encode, input);
    line->add_option("template", input->text, "For example 'AA %(word~)[speed]0'")->required();
    CLI::Option *words = line->add_option("values", input->words, "Values in order, or name=value");
    line->add_option("--file", input->file, "Take the values from the lines of a file, - for standard input")
        ->excludes(words);
    line->add_flag("--raw", input->isRaw, "Write the bytes themselves instead of hexadecimal lines");

    line = addJob(program, *group, "decode", "Print the values that a message holds", decode, input);
    line->add_option("template", input->text, "For example 'AA %(word~)[speed]0'")->required();
    words = line->add_option("bytes", input->words, "Hexadecimal bytes, with or without spaces");
    line->add_option("--file", input->file, "Take messages from the lines of a file, - for standard input")
        ->excludes(words);

    line = addJob(program, *group, "explain", "Print what each byte of a template is", explain, input);
    CLI::Option *text = line->add_option("template", input->text, "For example 'AA %(word~)[speed]0'");
    line->add_option("--file", input->file, "Take templates from the lines of a file, - for standard input")
        ->excludes(text);
    line->require_option(1);
}
