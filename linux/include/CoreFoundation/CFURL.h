#pragma once

/// URLs, and how they stand for paths of the file system.
///
/// A URL is its text and, for a relative one, its base. Equality compares the two: "/a" and "/a/"
/// differ, "/a/../b" and "/b" differ, a relative URL differs from its absolute form. The disk is
/// never asked. Paths are bytes: what is no valid UTF-8 travels as "%XX" and comes back as it was.
///
/// A null argument, a path with a zero byte, and lack of memory answer null or false.

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

extern "C"
{

    /// How a path is written. There is one way here; the functions below answer null for others.
    typedef CFIndex CFURLPathStyle;

    enum : CFURLPathStyle
    {
        kCFURLPOSIXPathStyle = 0
    };

    /// The URL of a text, relative to `baseURL` (which may be null) when the text has no scheme.
    /// Null for a character that no URL may hold: blanks, controls, anything beyond ASCII, one of
    /// " < > \ ^ ` { | }, a "%" without two hexadecimal digits, a second "#". An empty text is an
    /// empty URL.
    CFURLRef CFURLCreateWithString(
        CFAllocatorRef allocator, CFStringRef URLString, CFURLRef baseURL );

    /// The file URL of a path. With `isDirectory` the path gets one trailing "/" if it has none,
    /// otherwise it loses all of them; "/" stays as it is, and so do inner "//", "." and "..".
    ///
    /// A relative path makes a relative URL whose base is the directory current at this moment;
    /// the empty path means that directory. Null for a string with an unpaired surrogate, and for
    /// a relative path while the current directory does not exist.
    CFURLRef CFURLCreateWithFileSystemPath( CFAllocatorRef allocator, CFStringRef filePath,
        CFURLPathStyle pathStyle, Boolean isDirectory );

    /// The same, relative to `baseURL` unless that is null. An absolute path ignores the base.
    CFURLRef CFURLCreateWithFileSystemPathRelativeToBase( CFAllocatorRef allocator,
        CFStringRef filePath, CFURLPathStyle pathStyle, Boolean isDirectory, CFURLRef baseURL );

    /// The same as CFURLCreateWithFileSystemPath for the `bufLen` bytes of a path as the file
    /// system has it, whatever their encoding. Null for a null buffer, a negative length and a zero
    /// byte.
    CFURLRef CFURLCreateFromFileSystemRepresentation(
        CFAllocatorRef allocator, UInt8 const* buffer, CFIndex bufLen, Boolean isDirectory );

    /// The text, without the base. Lives as long as the URL.
    CFStringRef CFURLGetString( CFURLRef url );

    /// The path, escapes undone and without one trailing "/" (the root keeps it). Host, query and
    /// fragment are left out; a relative URL gives a relative path. Null when the bytes are no
    /// UTF-8 or hold a zero, and for a URL without a hierarchy, such as "mailto:a".
    CFStringRef CFURLCopyFileSystemPath( CFURLRef url, CFURLPathStyle pathStyle );

    /// Writes the bytes of that path, zero-terminated, resolved against the base if asked for
    /// (RFC 3986, 5.2, except that a ".." above the root stays).
    /// False, and nothing written, when they do not fit into `maxBufLen` bytes.
    Boolean CFURLGetFileSystemRepresentation(
        CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer, CFIndex maxBufLen );

    /// The path's last component, escapes undone, trailing slashes ignored; "/" for the root.
    CFStringRef CFURLCopyLastPathComponent( CFURLRef url );

    /// The URL with a component added to its path, and a "/" before it if there is none. Trailing
    /// slashes of the component count for nothing: `isDirectory` alone adds one. "." and ".." are
    /// added as they are.
    CFURLRef CFURLCreateCopyAppendingPathComponent(
        CFAllocatorRef allocator, CFURLRef url, CFStringRef pathComponent, Boolean isDirectory );

    /// The URL one level up, by text alone; its path ends in "/". Goes on for ever: "/" becomes
    /// "/../", so whoever walks upward has to look for the root.
    CFURLRef CFURLCreateCopyDeletingLastPathComponent( CFAllocatorRef allocator, CFURLRef url );
}
