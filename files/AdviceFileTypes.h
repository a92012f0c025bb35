#pragma once

/// The names of the files that hold content: their extensions, with the point.
extern char const cRESERVED_FILE_EXTENSION_SITE_DEFINITION[];
extern char const cRESERVED_FILE_EXTENSION_ADVICE_POOL[];
extern char const cRESERVED_FILE_EXTENSION_ADVICE_FILE[];
extern char const cRESERVED_EXTENSION[];
extern char const cRESERVED_EXTENSION_LONG[];
extern char const cRESERVED_FILE_EXTENSION_TEXT[];
extern char const cRESERVED_FILE_EXTENSION_SITE_LOG_FILE[];
extern char const cRESERVED_FILE_EXTENSION_SITE_BACKUP_LOG_FILE[];
extern char const cRESERVED_FILE_EXTENSION_DLL[];
extern char const cRESERVED_FILE_EXTENSION_NOTATION[];

/// These kinds have no extension on this platform: the texts are empty.
extern char const cRESERVED_FILE_EXTENSION_SITE_DATA[];
extern char const cRESERVED_FILE_EXTENSION_PREFERENCES[];
extern char const cRESERVED_FILE_EXTENSION_PROFILE[];

/// The kinds of content files. The numbers are fixed.
enum class MorvekFileType
{
    Masthead = 1,
    Pool = 2,
    Advice = 3,
    HTML = 4,
    Text = 5,
    Log = 6,
    BackLog = 7,
    Inspector = 8,
    Notation = 9,
    Site = 10,
    Profile = 11,
    Preferences = 12,
    Miscellany = 13 ///< everything else
};

/// Which extension belongs to which kind of content file.
namespace AdviceFileTypes
{

constexpr MorvekFileType Masthead()
{
    return MorvekFileType::Masthead;
}

constexpr MorvekFileType Pool()
{
    return MorvekFileType::Pool;
}

constexpr MorvekFileType Advice()
{
    return MorvekFileType::Advice;
}

constexpr MorvekFileType HTML()
{
    return MorvekFileType::HTML;
}

constexpr MorvekFileType Text()
{
    return MorvekFileType::Text;
}

constexpr MorvekFileType Log()
{
    return MorvekFileType::Log;
}

constexpr MorvekFileType BackLog()
{
    return MorvekFileType::BackLog;
}

constexpr MorvekFileType Inspector()
{
    return MorvekFileType::Inspector;
}

constexpr MorvekFileType Notation()
{
    return MorvekFileType::Notation;
}

constexpr MorvekFileType Site()
{
    return MorvekFileType::Site;
}

constexpr MorvekFileType Preferences()
{
    return MorvekFileType::Preferences;
}

constexpr MorvekFileType Profile()
{
    return MorvekFileType::Profile;
}

constexpr MorvekFileType Miscellany()
{
    return MorvekFileType::Miscellany;
}

/// The usual extension of a kind, with its point; "" for a kind without one, null for Miscellany
/// and for numbers that are no kind. It is a constant.
char const* ExtensionOfType( MorvekFileType type );

/// The kind of the zero-terminated `extension`, which must not be null and begins with a point, by
/// the C library's `strcasecmp`. "" is a Site; an extension of no kind is Miscellany.
MorvekFileType TypeOfExtension( char const* extension );

} // namespace AdviceFileTypes
