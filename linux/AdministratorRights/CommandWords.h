#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Splits a command line into words as a POSIX shell does (Shell Command Language, "Quoting" and
/// "Token Recognition"), but expands nothing and carries nothing out.
///
/// Blanks and tabs separate words. A backslash, single quotes and double quotes quote as in the
/// shell; the quotes themselves are removed. Pattern characters and braces stay as they are.
///
/// Returns no words for a command line that a shell would not take for one simple command made of
/// constant words: one that is empty, has an unclosed quote, a backslash at its end or a NUL
/// character; or has, unquoted, an operator (newline ; & | < > ( )), a comment (# at the start of a
/// word), a home folder (~ at the start of a word) or, unquoted or in double quotes, an expansion
/// ($ or `). What a shell would do with it is not what its writer meant, so it must not run at all.
std::optional<std::vector<std::string>> SplitIntoWords( std::string_view commandLine );
