#include "linux/AdministratorRights/CommandWords.h"

namespace
{
constexpr auto npos = std::string_view::npos;

class WordSplitter
{
  public:
    explicit WordSplitter( std::string_view text ) : mText( text ) {}

    std::optional<std::vector<std::string>> Split()
    {
        bool sound = mText.find( '\0' ) == npos;
        while ( sound && mNext < mText.size() )
            sound = Take( mText[mNext++] );
        if ( !sound )
            return std::nullopt;
        EndWord();
        if ( mWords.empty() )
            return std::nullopt;
        return std::move( mWords );
    }

  private:
    bool Take( char c )
    {
        switch ( c )
        {
        case ' ':
        case '\t':
            EndWord();
            return true;
        case '\\':
            return TakeEscaped();
        case '\'':
            return TakeSingleQuoted();
        case '"':
            return TakeDoubleQuoted();
        default:
            return TakeUnquoted( c );
        }
    }

    bool TakeUnquoted( char c )
    {
        bool const atStart = !mInWord;
        if ( std::string_view( "\n;&|<>()$`" ).find( c ) != npos )
            return false;
        if ( atStart && ( c == '#' || c == '~' ) )
            return false;
        Add( c );
        return true;
    }

    // A backslash and a newline join two lines and leave nothing.
    bool TakeEscaped()
    {
        if ( mNext == mText.size() )
            return false;
        char const c = mText[mNext++];
        if ( c != '\n' )
            Add( c );
        return true;
    }

    bool TakeSingleQuoted()
    {
        size_t const end = mText.find( '\'', mNext );
        if ( end == npos )
            return false;
        mInWord = true;
        mWord += mText.substr( mNext, end - mNext );
        mNext = end + 1;
        return true;
    }

    bool TakeDoubleQuoted()
    {
        mInWord = true;
        while ( mNext < mText.size() )
        {
            char const c = mText[mNext++];
            if ( c == '"' )
                return true;
            if ( c == '$' || c == '`' )
                return false;
            bool const escapes = c == '\\' && mNext < mText.size() &&
                                 std::string_view( "$`\"\\\n" ).find( mText[mNext] ) != npos;
            if ( !escapes )
                Add( c );
            else if ( !TakeEscaped() )
                return false;
        }
        return false;
    }

    void Add( char c )
    {
        mInWord = true;
        mWord += c;
    }

    void EndWord()
    {
        if ( mInWord )
            mWords.push_back( std::move( mWord ) );
        mWord.clear();
        mInWord = false;
    }

    std::string_view mText;
    size_t mNext = 0;
    bool mInWord = false; // an empty quotation makes an empty word
    std::string mWord;
    std::vector<std::string> mWords;
};
} // namespace

std::optional<std::vector<std::string>> SplitIntoWords( std::string_view commandLine )
{
    return WordSplitter( commandLine ).Split();
}
