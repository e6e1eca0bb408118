/// \file
/// Files that are read or written as a whole.
#pragma once

#include <QByteArray>
#include <QString>

/// The content of the file \a path, or its first \a most + 1 bytes when it is larger: who wants to refuse it can see
/// that. Throws a CommandError when there is no such file, when it is none that has an end (a pipe would keep us
/// waiting), and when the reading fails on its way: half a file may mean something else than the whole.
QByteArray readWholeFile(const QString &path, qint64 most);

/// Makes or replaces the file \a path. Throws a CommandError when that fails; the file is then as it was before.
void writeWholeFile(const QString &path, const QByteArray &content);
