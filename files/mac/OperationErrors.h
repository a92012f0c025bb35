#pragma once

#include "files/FileIOError.h"

#include <cstdint>
#include <string>

namespace MacintoshPlatform
{

/// Throws the error of the file layer that a value of errno stands for, with the file manager's
/// code for it (FSResultOfError, asked about the first name) and the names; returns when only the
/// operation's own class fits:
///
/// | code  | errno                | error                                              |
/// |-------|----------------------|----------------------------------------------------|
/// | -34   | ENOSPC, EDQUOT       | DiskFullError                                      |
/// | -43   | ENOENT               | FileNotFoundError                                  |
/// | -45   | EPERM, immutable     | FileLockError                                      |
/// | -47   | ENOTEMPTY            | DirectoryNotEmpty                                  |
/// | -47   | EBUSY, ETXTBSY       | FileBusyError                                      |
/// | -48   | EEXIST               | DirectoryExists for a folder, FileExists otherwise |
/// | -120  | ENOTDIR, no folder   | DirectoryNotFoundError                             |
/// | -5000 | EACCES, EPERM        | FilePermissionError                                |
///
/// `name1` is the item that the failing call was about, `name2` the other end of a copy or move.
void ThrowCommonFileError( int error, std::string const& name1, std::string const& name2 );

/// The code that those errors carry for an item of that name.
std::int32_t FileErrorCode( int error, std::string const& name );

/// Throws as above, and `Failed` with the code and the names for everything else.
template<class Failed>
[[noreturn]] void ThrowFileError(
    int error, std::string const& name1, std::string const& name2 = {} )
{
    ThrowCommonFileError( error, name1, name2 );
    throw Failed( ConstData( name1 ), ConstData( name2 ), FileErrorCode( error, name1 ) );
}

} // namespace MacintoshPlatform
