#pragma once

/// The file manager: finding items of the file system again, and their catalog entries.
///
/// References and specifications name one item by the path it was found at. Both are values that
/// own what they hold; nothing is kept behind them. A symbolic link at the end of a path is an
/// item of its own here and is not followed, one in the middle is.
///
/// Volumes and folders go by the kernel's numbers, device and inode, in their full width.
///
/// Every call answers a code of MacErrors.h, 0 for success, and throws nothing; memFullErr when
/// memory runs out.

#include <CoreFoundation/CFBase.h>
#include <CoreServices/UTCUtils.h>

#include <string>

/// A device number.
using FSVolumeRefNum = UInt64;

/// An inode number, which says something together with its volume only.
using FSNodeID = UInt64;

/// What tells an item from another one that took its path later.
struct FSItemIdentity
{
    FSVolumeRefNum volume = 0;
    FSNodeID node = 0;
    SInt64 birthSeconds = 0; ///< when it was created, since inodes are used again; 0 if unknown
    UInt32 birthNanoseconds = 0;

    bool operator==( FSItemIdentity const& ) const = default;
};

/// A reference to an item that existed when the reference was made. One that was never filled
/// refers to nothing. To be handed on, not to be looked into.
struct FSRef
{
    std::string path; ///< absolute
    FSItemIdentity identity;
    UInt8 reserved[80 - sizeof( std::string ) - sizeof( FSItemIdentity )] = {};
};

static_assert( sizeof( FSRef ) == 80 );

/// A place for an item: a folder and a name in it, whether or not there is an item.
struct FSSpec
{
    FSVolumeRefNum vRefNum = 0; ///< of the folder
    FSNodeID parID = 0;         ///< the folder
    std::string name;           ///< a full pathname: numbers alone do not lead to a folder here
};

extern "C"
{

    /// Which fields of an FSCatalogInfo are wanted.
    typedef UInt32 FSCatalogInfoBitmap;

    enum : FSCatalogInfoBitmap
    {
        kFSCatInfoNone = 0,
        kFSCatInfoGettableInfo = 0x3FFFF ///< all of them
    };

    /// Bits of `nodeFlags`.
    enum : UInt16
    {
        kFSNodeLockedMask = 0x1, ///< it has the immutable attribute
        kFSNodeIsDirectoryMask = 0x10
    };

    /// Who may do what with an item.
    typedef struct FSPermissionInfo
    {
        UInt32 userID;
        UInt32 groupID;
        UInt16 mode; ///< with the kind of item, as in struct stat
    } FSPermissionInfo;

    /// The name of an item: its first `length` units, no terminator.
    typedef struct HFSUniStr255
    {
        UInt16 length;
        UniChar unicode[255];
    } HFSUniStr255;

    /// The catalog entry of an item.
    typedef struct FSCatalogInfo
    {
        UInt16 nodeFlags;
        FSVolumeRefNum volume;
        FSNodeID parentDirID;
        FSNodeID nodeID;
        UTCDateTime createDate; ///< 0 where the file system does not know it
        UTCDateTime contentModDate;
        UTCDateTime attributeModDate;
        UTCDateTime accessDate;
        FSPermissionInfo permissions;
        UInt8 finderInfo[16];    ///< zeros: nobody writes any here
        UInt8 extFinderInfo[16]; ///< the same
        UInt64 dataLogicalSize;  ///< bytes; 0 for a folder
        UInt64 dataPhysicalSize; ///< bytes allocated; 0 for a folder
    } FSCatalogInfo;

    /// The classic catalog record of an item. In: `ioNamePtr`, `ioVRefNum`, `ioFDirIndex` and
    /// `ioDirID` (of the folder it lies in). Out: the rest, and `ioDirID`, now of the item itself.
    typedef struct HFileInfo
    {
        OSErr ioResult;
        char const* ioNamePtr; ///< a full pathname; lent
        FSVolumeRefNum ioVRefNum;
        SInt16 ioFDirIndex;
        UInt8 ioFlAttrib; ///< bit 0: locked, bit 4: folder
        FSNodeID ioDirID;
        FSNodeID ioFlParID;
        UInt64 ioFlLgLen;
        UInt64 ioFlPyLen;
    } HFileInfo;

    /// Bits of `ioFlAttrib`.
    enum : UInt8
    {
        kioFlAttribLockedMask = 0x1,
        kioFlAttribDirMask = 0x10
    };

    /// What PBGetCatInfoSync is given and fills; the record serves files and folders.
    typedef union CInfoPBRec
    {
        HFileInfo hFileInfo;
    } CInfoPBRec;

    /// Reads the catalog entry of the item that `ref` refers to, as it is now. fnfErr when it is
    /// gone or another item has taken its path.
    ///
    /// Fills `catalogInfo` whole, also when `whichInfo` names some of its fields only. `spec`
    /// becomes the folder the item lies in and its pathname. Both may be null. The name and a
    /// reference to the folder are not to be had: paramErr unless the pointers for them are null.
    OSErr FSGetCatalogInfo( FSRef const* ref, FSCatalogInfoBitmap whichInfo,
        FSCatalogInfo* catalogInfo, HFSUniStr255* outName, FSSpec* spec, FSRef* parentRef );

    /// Reads the classic record of an item by folder and name, for an `ioFDirIndex` of 0 (paramErr
    /// otherwise, and for a name that is no full pathname).
    ///
    /// Looks at the disk anew: dirNFErr when the folder that the name lies in is gone or is not
    /// the one meant any more, fnfErr when there is no such item in it. The answer is also in
    /// `ioResult`.
    OSErr PBGetCatInfoSync( CInfoPBRec* parameters );

    /// Makes a reference to the item that an FSSpec names; codes as for PBGetCatInfoSync.
    OSErr FSpMakeFSRef( FSSpec const* spec, FSRef* newRef );
}
