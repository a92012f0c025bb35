#include "foundation/DebuggableException.h"

#include <typeinfo>

static_assert( sizeof( DebuggableException ) == sizeof( std::exception ) );

DebuggableException::~DebuggableException() = default;

char const* DebuggableException::what() const noexcept
{
    return typeid( *this ).name();
}
