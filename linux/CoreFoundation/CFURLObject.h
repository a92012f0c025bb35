#pragma once

// The object behind a CFURLRef. Internal to linux/.

#include <CoreFoundation/CFURL.h>

#include "linux/CoreFoundation/CFObject.h"
#include "linux/CoreFoundation/CFStringObject.h"
#include "linux/CoreFoundation/URLText.h"

#include <optional>
#include <string>

struct CFURLObject final : CFObject
{
    CFURLObject( URLParts itsParts, Owned<CFURLObject const> itsBase );

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    /// The parts of the text. They are kept because a relative path such as "a:b" cannot be told
    /// from a scheme once it is a text.
    URLParts const parts;
    Owned<CFURLObject const> const base; // absolute or null
    Owned<CFStringObject const> const text;
};

/// The parts of the URL resolved against its base.
URLParts AbsoluteParts( CFURLObject const& url );

/// The path of a file URL, resolved, without any trailing slash: what system calls take. Nothing
/// for a null URL, another scheme or a path with a zero byte.
std::optional<std::string> AbsoluteFilePath( CFURLRef url );

/// The bytes of a string in UTF-8. Nothing for a null string, an unpaired surrogate or a zero.
std::optional<std::string> PathBytes( CFStringRef string );

/// The file URL of a path; `base` may be null.
CFURLRef CreateFileURL( std::string path, bool isDirectory, CFURLRef base = nullptr );
