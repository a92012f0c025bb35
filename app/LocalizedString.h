#pragma once

#include <QString>

/// The translation of `key` in the panel's one table of strings, or `key` itself when the table has
/// none. `key` is an English literal, marked for the translation tools with
/// QT_TRANSLATE_NOOP( "ControlPanel", ... ) or as the text of a widget in the form.
QString LocalizedString( char const* key );
