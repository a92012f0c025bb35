#pragma once

// Where a user's special folders are. Internal to linux/.

#include <optional>
#include <string>
#include <string_view>

/// A path in the environment; nothing when it is missing or relative, or when this program runs
/// with more rights than its caller.
std::optional<std::string> PathInEnvironment( char const* name );

/// The path in `variable` of the environment, or `fallback` in the home folder; nothing when there
/// is no home folder either.
std::optional<std::string> UserFolder( char const* variable, std::string_view fallback );

/// The path that user-dirs.dirs in the user's configuration gives for `key`, or `fallback` in the
/// home folder; nothing when there is no home folder.
std::optional<std::string> UserDirectory( std::string_view key, std::string_view fallback );

/// What the text of a user-dirs.dirs file gives for `key`, by the rules of xdg-user-dirs: lines
/// KEY="$HOME/path" or KEY="/path" in which a backslash takes the next character's meaning away;
/// the last one counts, lines of any other form do not.
std::optional<std::string> FindUserDirectory(
    std::string_view text, std::string_view key, std::string const& home );
