#pragma once

/// Special folders, found by what they are for.

#include <CoreFoundation/CFBase.h>
#include <CoreServices/Files.h>

extern "C"
{

    /// A four-character code.
    typedef UInt32 OSType;

    /// Whose folder is meant.
    enum : SInt16
    {
        kOnSystemDisk = -32768,      ///< the user's
        kOnAppropriateDisk = -32767, ///< the user's
        kSystemDomain = -32766,      ///< what the distribution installs
        kLocalDomain = -32765,       ///< what the administrator installs
        kNetworkDomain = -32764,     ///< has no folders here
        kUserDomain = -32763
    };

    /// What the folder is for.
    enum : OSType
    {
        kTemporaryFolderType = 0x74656D70,          // temp
        kPreferencesFolderType = 0x70726566,        // pref
        kApplicationSupportFolderType = 0x61737570, // asup
        kDocumentsFolderType = 0x646F6373,          // docs
        kDesktopFolderType = 0x6465736B             // desk
    };

    /// Makes a reference to a special folder, by its path without any link:
    ///
    /// | type | user                               | local            | system       |
    /// |------|------------------------------------|------------------|--------------|
    /// | temp | $TMPDIR, or /tmp                   | /tmp             | /tmp         |
    /// | pref | $XDG_CONFIG_HOME, or ~/.config     | /etc/xdg         | /etc/xdg     |
    /// | asup | $XDG_DATA_HOME, or ~/.local/share  | /usr/local/share | /usr/share   |
    /// | docs | XDG_DOCUMENTS_DIR, or ~/Documents  | none             | none         |
    /// | desk | XDG_DESKTOP_DIR, or ~/Desktop      | none             | none         |
    ///
    /// by the rules of the XDG base directories: a relative value counts as none. $TMPDIR has to
    /// be a folder that exists. The last two are looked up in user-dirs.dirs in the user's folder
    /// of preferences. The home folder is $HOME, or else the one in the user database. A program
    /// that runs with more rights than its caller reads nothing from the environment.
    ///
    /// With `createFolder` a missing folder is made, and those above it: for the user alone (mode
    /// 0700) in the user's domain, readable for all (0755) elsewhere. fnfErr when it is missing
    /// otherwise and when there is none for that type and domain; dirNFErr when there is something
    /// else in its place, bdNamErr when its path is too long; `foundRef` is then as it was.
    OSErr FSFindFolder( SInt16 vRefNum, OSType folderType, Boolean createFolder, FSRef* foundRef );
}
