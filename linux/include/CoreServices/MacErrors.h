#pragma once

/// The platform's result codes, as far as the file manager's calls answer them.

#include <CoreFoundation/CFBase.h>

enum : OSErr
{
    noErr = 0,
    dskFulErr = -34,        ///< disk full
    ioErr = -36,            ///< input or output error, and whatever has no code of its own
    bdNamErr = -37,         ///< bad file name
    tmfoErr = -42,          ///< too many files open
    fnfErr = -43,           ///< file not found
    wPrErr = -44,           ///< the device is read-only
    fLckdErr = -45,         ///< file locked
    vLckdErr = -46,         ///< the file system is mounted read-only
    fBsyErr = -47,          ///< file busy, folder not empty
    dupFNErr = -48,         ///< duplicate file name
    paramErr = -50,         ///< the caller's arguments make no sense
    memFullErr = -108,      ///< out of memory
    dirNFErr = -120,        ///< folder not found
    afpAccessDenied = -5000 ///< permission denied
};
