#pragma once

#include "files/mac/FileLocation.h"

#include <CoreServices/Files.h>

namespace MacintoshPlatform
{

/// What the file system said about one item when this record was made.
class MacFileInfo
{
  public:
    /// Takes the record in two looks. An item that the first one does not find, or cannot reach,
    /// makes a record of an item that does not exist. Once it is found, a failure of the second
    /// look is thrown by ThrowError: the item, its folder or the permission to see it went away in
    /// between.
    explicit MacFileInfo( FileLocation const& location );

    /// Whether the item exists. What follows says something only then.
    bool Exists() const { return mExists; }

    FSRef const& Ref() const { return mRef; }

    FSCatalogInfo const& CatalogInfo() const { return mCatalogInfo; }

    /// The classic record. The name that it was read by is not part of it: its pointer is null.
    CInfoPBRec const& ParameterBlock() const { return mParameterBlock; }

    /// Returns for 0 and throws for every other result of the file manager:
    ///
    /// | code  | error                                   |
    /// |-------|-----------------------------------------|
    /// | -37   | BadFileNameError                        |
    /// | -43   | FileNotFoundError, code 0               |
    /// | -44   | HardwareVolumeLockError, with the code  |
    /// | -45   | FileLockError, code 0                   |
    /// | -46   | SoftwareVolumeLockError, with the code  |
    /// | -120  | DirectoryNotFoundError, code 0          |
    /// | -5000 | FilePermissionError, code 0             |
    /// | other | FileError, with the code                |
    static void ThrowError( long code );

  private:
    bool mExists = false;
    FSRef mRef;
    FSCatalogInfo mCatalogInfo = {};
    CInfoPBRec mParameterBlock = {};
};

/// Whether both are records of one existing item, however it was reached: same volume, same folder,
/// same item. Unequal when either does not exist, even to itself.
bool operator==( MacFileInfo const& a, MacFileInfo const& b );

} // namespace MacintoshPlatform
