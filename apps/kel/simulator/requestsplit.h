/// \file
/// Requests that reached a busy simulator in one piece.
#pragma once

#include <answerpattern.h>

#include <QByteArray>
#include <QVector>

/// The requests that \a bytes are made of. A request ends with silence on the line, but who reads late finds
/// several without the silence between them. When \a bytes match no pattern as a whole and can be cut, without
/// a rest, into pieces that each match one, these are the pieces, with the earlier patterns preferred;
/// otherwise it is \a bytes alone.
QVector<QByteArray> requestsIn(const QByteArray &bytes, const QVector<AnswerPattern> &patterns);
