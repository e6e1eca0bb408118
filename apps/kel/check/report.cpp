#include "check/report.h"

#include "printable.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

namespace
{

QString nameOf(Severity severity)
{
    return severity == Severity::Error ? QStringLiteral("error") : QStringLiteral("warning");
}

/// The file as a reference that every reader understands: absolute, or relative to where the check ran.
QString uriOf(const QString &file)
{
    if (QFileInfo(file).isAbsolute())
        return QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded(QUrl::FullyEncoded));
    return QString::fromLatin1(QUrl::toPercentEncoding(QDir::fromNativeSeparators(file), "/"));
}

QJsonObject messageOf(const QString &text)
{
    return {{QStringLiteral("text"), text}};
}

QJsonArray sarifRules()
{
    QJsonArray rules;
    for (const RuleInfo &rule : checkRules())
        rules.append(QJsonObject{{QStringLiteral("id"), rule.name},
                                 {QStringLiteral("shortDescription"), messageOf(rule.summary)}});
    return rules;
}

QJsonObject sarifResult(const Finding &finding)
{
    const QJsonObject place{
        {QStringLiteral("artifactLocation"), QJsonObject{{QStringLiteral("uri"), uriOf(finding.file)}}},
        {QStringLiteral("region"), QJsonObject{{QStringLiteral("startLine"), finding.line}}}};
    return {{QStringLiteral("ruleId"), nameOf(finding.rule)},
            {QStringLiteral("ruleIndex"), int(finding.rule)},
            {QStringLiteral("level"), nameOf(finding.severity)},
            {QStringLiteral("message"), messageOf(finding.message)},
            {QStringLiteral("locations"), QJsonArray{QJsonObject{{QStringLiteral("physicalLocation"), place}}}}};
}

} // namespace

QByteArray textReport(const QVector<Finding> &findings)
{
    QByteArray text;
    for (const Finding &finding : findings)
        text += QStringLiteral("%1:%2: %3: %4 [%5]\n")
                    .arg(printable(finding.file), QString::number(finding.line), nameOf(finding.severity),
                         printable(finding.message), nameOf(finding.rule))
                    .toUtf8();
    return text;
}

QByteArray jsonReport(const QVector<Finding> &findings, const QString &file)
{
    QJsonArray list;
    for (const Finding &finding : findings)
        list.append(QJsonObject{{QStringLiteral("file"), finding.file},
                                {QStringLiteral("line"), finding.line},
                                {QStringLiteral("severity"), nameOf(finding.severity)},
                                {QStringLiteral("rule"), nameOf(finding.rule)},
                                {QStringLiteral("message"), finding.message}});
    return QJsonDocument(QJsonObject{{QStringLiteral("panel"), file}, {QStringLiteral("findings"), list}}).toJson();
}

QByteArray sarifReport(const QVector<Finding> &findings)
{
    QJsonArray results;
    for (const Finding &finding : findings)
        results.append(sarifResult(finding));
    const QJsonObject driver{{QStringLiteral("name"), QStringLiteral("kel check")},
                             {QStringLiteral("rules"), sarifRules()}};
    const QJsonObject run{{QStringLiteral("tool"), QJsonObject{{QStringLiteral("driver"), driver}}},
                          {QStringLiteral("results"), results}};
    return QJsonDocument(
               QJsonObject{{QStringLiteral("$schema"), QStringLiteral("https://json.schemastore.org/sarif-2.1.0.json")},
                           {QStringLiteral("version"), QStringLiteral("2.1.0")},
                           {QStringLiteral("runs"), QJsonArray{run}}})
        .toJson();
}
