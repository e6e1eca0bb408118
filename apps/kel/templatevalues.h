/// \file
/// Values and bytes of command templates as people write and read them.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <commandargument.h>
#include <commandtemplate.h>

/// A template with the entries that it was made of. Reading throws a CommandError that names the
/// malformed token and its position.
struct ReadTemplate {
    explicit ReadTemplate(const QString &text);

    QVector<Kv_Designer::CommandArgument> entries;
    Kv_Designer::CommandTemplate compiled;
    QStringList labels; ///< For each value its name, or its number where no name is its own.
};

/// The values for \a words, each "value", "name=value" or "number=value"; the plain ones fill the
/// places that are left, in order. Throws a CommandError for an unknown name, a value that is no
/// number, does not fit its type or is missing.
QVector<QVariant> valuesFromWords(const ReadTemplate &read, const QStringList &words);

/// The values that \a data holds, as "name=value" words that valuesFromWords() takes back; "match"
/// when there is nothing to capture. Throws a CommandError that names the first byte that differs.
QString wordsFromBytes(const ReadTemplate &read, const QByteArray &data);

/// The bytes for hexadecimal \a words of two, four, ... digits. Throws a CommandError otherwise.
QByteArray bytesFromHex(const QStringList &words);

/// \a data as upper-case hexadecimal bytes with spaces between.
QString hexFromBytes(const QByteArray &data);
