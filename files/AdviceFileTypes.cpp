#include "files/AdviceFileTypes.h"

#include <algorithm>
#include <iterator>
#include <strings.h>

char const cRESERVED_FILE_EXTENSION_SITE_DEFINITION[] = ".qzm";
char const cRESERVED_FILE_EXTENSION_ADVICE_POOL[] = ".qzg";
char const cRESERVED_FILE_EXTENSION_ADVICE_FILE[] = ".qzf";
char const cRESERVED_EXTENSION[] = ".htm";
char const cRESERVED_EXTENSION_LONG[] = ".html";
char const cRESERVED_FILE_EXTENSION_TEXT[] = ".txt";
char const cRESERVED_FILE_EXTENSION_SITE_LOG_FILE[] = ".log";
char const cRESERVED_FILE_EXTENSION_SITE_BACKUP_LOG_FILE[] = ".bkg";
char const cRESERVED_FILE_EXTENSION_DLL[] = ".dylib";
char const cRESERVED_FILE_EXTENSION_NOTATION[] = ".dat";
char const cRESERVED_FILE_EXTENSION_SITE_DATA[] = "";
char const cRESERVED_FILE_EXTENSION_PREFERENCES[] = "";
char const cRESERVED_FILE_EXTENSION_PROFILE[] = "";

namespace
{

struct Row
{
    char const* extension;
    MorvekFileType type;
};

// The first row that fits counts: HTML is ".htm", and "" is a Site.
constexpr Row kRows[] = {
    { cRESERVED_FILE_EXTENSION_SITE_DEFINITION, MorvekFileType::Masthead },
    { cRESERVED_FILE_EXTENSION_ADVICE_POOL, MorvekFileType::Pool },
    { cRESERVED_FILE_EXTENSION_ADVICE_FILE, MorvekFileType::Advice },
    { cRESERVED_EXTENSION, MorvekFileType::HTML },
    { cRESERVED_EXTENSION_LONG, MorvekFileType::HTML },
    { cRESERVED_FILE_EXTENSION_TEXT, MorvekFileType::Text },
    { cRESERVED_FILE_EXTENSION_SITE_LOG_FILE, MorvekFileType::Log },
    { cRESERVED_FILE_EXTENSION_SITE_BACKUP_LOG_FILE, MorvekFileType::BackLog },
    { cRESERVED_FILE_EXTENSION_DLL, MorvekFileType::Inspector },
    { cRESERVED_FILE_EXTENSION_NOTATION, MorvekFileType::Notation },
    { cRESERVED_FILE_EXTENSION_SITE_DATA, MorvekFileType::Site },
    { cRESERVED_FILE_EXTENSION_PREFERENCES, MorvekFileType::Preferences },
    { cRESERVED_FILE_EXTENSION_PROFILE, MorvekFileType::Profile },
};

} // namespace

char const* AdviceFileTypes::ExtensionOfType( MorvekFileType type )
{
    auto const row = std::ranges::find( kRows, type, &Row::type );
    return row == std::end( kRows ) ? nullptr : row->extension;
}

MorvekFileType AdviceFileTypes::TypeOfExtension( char const* extension )
{
    auto const row = std::ranges::find_if( kRows, [extension]( Row const& candidate )
        { return strcasecmp( candidate.extension, extension ) == 0; } );
    return row == std::end( kRows ) ? MorvekFileType::Miscellany : row->type;
}
