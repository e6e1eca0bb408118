/// \file
/// Conversions between the primitives' values and Qt's.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <pibytearray.h>
#include <picout.h>
#include <pistring.h>

inline PIString Q2PIString(const QString &text)
{
    return PIString::fromUtf16(text);
}

inline QString PI2QString(const PIString &text)
{
    return text.toUtf16();
}

inline PIByteArray Q2PIByteArray(const QByteArray &bytes)
{
    return PIByteArray(bytes.constData(), int(bytes.size()));
}

inline QByteArray PI2QByteArray(const PIByteArray &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), bytes.size());
}

inline PICout &operator<<(PICout &out, const QString &text)
{
    return out << Q2PIString(text);
}

inline PICout &operator<<(PICout &&out, const QString &text)
{
    return out << text;
}
