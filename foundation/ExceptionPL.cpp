#include "foundation/ExceptionPL.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

ExceptionPL::ExceptionPL( char const* text )
{
    Construct( std::string_view( text ) );
}

ExceptionPL::ExceptionPL( ConstData text )
{
    Construct( text );
}

ExceptionPL::ExceptionPL( ExceptionPL const& other ) : DebuggableException( other )
{
    Construct( std::string_view( other.what() ) );
}

ExceptionPL::~ExceptionPL() = default;

ExceptionPL& ExceptionPL::operator=( ExceptionPL const& other )
{
    if ( this != &other )
        Construct( std::string_view( other.what() ) );
    return *this;
}

char const* ExceptionPL::what() const noexcept
{
    return mMessage.get();
}

char const* ExceptionPL::Construct( ConstData text )
{
    std::size_t const length = text.Length();
    auto message = std::make_unique_for_overwrite<char[]>( length + 1 );
    *std::copy( text.begin(), text.end(), message.get() ) = '\0';
    mMessage = std::move( message );
    return mMessage.get();
}
