#pragma once

/// Runs the panel's helper script with administrator rights and `argument` as its only argument
/// (zero-terminated UTF-8): the command line is the script's path in the main bundle, one blank,
/// and the argument, with no quoting. Returns when the script has ended; true when it ran without
/// an error. A path with a blank or a quote breaks the command line, which is then an error like
/// any other: a missing script, a refused or cancelled authentication, a script that fails.
bool executeScriptSudo( char const* argument );
