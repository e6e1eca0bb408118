#include "identity.h"

#include <QCryptographicHash>
#include <picrypt.h>
#include <piqt.h>

#include <cstring>

uint generateID()
{
    uint id = 0;
    const PIByteArray bytes = PICrypt::generateRandomBuff(sizeof(id));
    std::memcpy(&id, bytes.data(), qMin(sizeof(id), size_t(bytes.size())));
    return id;
}

PIByteArray dataHash(const PIByteArray &data)
{
    return Q2PIByteArray(QCryptographicHash::hash(PI2QByteArray(data), QCryptographicHash::Md5));
}
