#pragma once

// The text of URLs: taking it apart, escapes, resolving, one level down or up. Works on bytes
// alone. Internal to linux/.

#include <string>
#include <string_view>

/// A URL taken apart (RFC 3986, appendix B). Every part keeps its delimiters, so that the text is
/// the parts in a row and a part that is missing is empty.
struct URLParts
{
    std::string scheme;    // with ":"
    std::string authority; // with "//" in front
    std::string path;
    std::string query;    // with "?"
    std::string fragment; // with "#"

    std::string Text() const;

    /// Whether the path cannot be walked, as in "mailto:a".
    bool IsOpaque() const;
};

URLParts SplitURL( std::string_view text );

/// Whether every character may stand in a URL and every "%" begins an escape.
bool IsURLText( std::string_view text );

/// A path as it stands in a URL: what is not kept as it is becomes "%XX".
std::string EscapePath( std::string_view bytes );

/// The bytes of an escaped text; a "%" that begins no escape stays.
std::string Unescape( std::string_view text );

/// The path with exactly one "/" added if it does not end in one, or without its trailing ones.
std::string WithDirectoryForm( std::string path, bool isDirectory );

/// Removes trailing slashes, but not the first character.
std::string_view WithoutTrailingSlashes( std::string_view path );

/// Resolves a reference against an absolute URL (RFC 3986, 5.2.2); ".." above the root stays.
URLParts Resolve( URLParts const& reference, URLParts const& base );

/// The escaped path with the escaped component added; see CFURLCreateCopyAppendingPathComponent.
std::string AppendComponent(
    std::string const& path, std::string_view component, bool isDirectory );

/// The escaped path one level up; see CFURLCreateCopyDeletingLastPathComponent.
std::string DeleteLastComponent( std::string_view path );
