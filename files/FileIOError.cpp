#include "files/FileIOError.h"

#include "foundation/MakeAsciiNumeral.h"
#include "foundation/MakeString.h"

#include <typeinfo>

FileIOError::FileIOError( std::int32_t code ) : FileIOError( ConstData(), ConstData(), code ) {}

FileIOError::FileIOError( ConstData name, std::int32_t code )
    : FileIOError( name, ConstData(), code )
{
}

FileIOError::FileIOError( ConstData name1, ConstData name2, std::int32_t code )
    : mState( new ErrorState{ code, MakeString( name1 ), MakeString( name2 ), {} } )
{
}

FileIOError::FileIOError( FileIOError const& other )
    : DebuggableException( other ),
      mState( new ErrorState{ other.mState->code, other.mState->name1, other.mState->name2, {} } )
{
}

FileIOError& FileIOError::operator=( FileIOError const& other )
{
    std::string name1 = other.mState->name1;
    std::string name2 = other.mState->name2;
    mState->code = other.mState->code;
    mState->name1.swap( name1 );
    mState->name2.swap( name2 );
    return *this;
}

FileIOError::~FileIOError() = default;

char const* FileIOError::what() const noexcept
{
    try
    {
        mState->message = MakeErrorMessage();
        return mState->message.c_str();
    }
    catch ( ... )
    {
        return typeid( *this ).name();
    }
}

std::int32_t FileIOError::GetCode() const
{
    return mState->code;
}

std::string FileIOError::MakeErrorMessage() const
{
    std::string message = "File error \"";
    message.append( typeid( *this ).name() ).append( "\"" );
    if ( !mState->name1.empty() )
    {
        message.append( " on \"" ).append( mState->name1 ).append( "\"" );
    }
    if ( !mState->name2.empty() )
    {
        message.append( " and \"" ).append( mState->name2 ).append( "\"" );
    }
    if ( mState->code != 0 )
    {
        message.append( ": " ).append(
            MakeErrorString( static_cast<std::uint32_t>( mState->code ) ) );
    }
    return message;
}

std::string MakeErrorString( std::uint32_t code )
{
    return "Unknown error: " + MakeString( MakeAsciiDecimalNumeral( code ) );
}
