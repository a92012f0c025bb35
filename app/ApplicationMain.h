#pragma once

/// Runs the application: takes the toolkit's options out of the arguments, loads the translations
/// and the panel's form, shows its window, and handles events until the end. Returns the process's
/// exit status, though the panel's own ways of closing end the process without a return.
int ApplicationMain( int argc, char** argv );
