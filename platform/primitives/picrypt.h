/// \file
/// Random bytes.
#pragma once

#include <kelprimitivesexport.h>
#include <pibytearray.h>
#include <pistring.h>

/// What the cryptographic library gives. May be used from any thread.
class KEL_PRIMITIVES_EXPORT PICrypt
{
public:
    /// \a size bytes that nobody can foresee; none for a size not above 0.
    static PIByteArray generateRandomBuff(int size);

    static PIString version(); ///< Of the cryptographic library that is loaded, for example "1.0.18".
};
