#include <CoreFoundation/CFDate.h>

#include "linux/CoreFoundation/CFDateObject.h"

#include <functional>

bool CFDateObject::Equal( CFObject const& other ) const
{
    return time == static_cast<CFDateObject const&>( other ).time;
}

CFHashCode CFDateObject::Hash() const
{
    return std::hash<double>()( time );
}

CFTypeID CFDateGetTypeID( void )
{
    return static_cast<CFTypeID>( CFKind::kDate );
}

CFAbsoluteTime CFDateGetAbsoluteTime( CFDateRef date )
{
    Require( date != nullptr );
    return date->time;
}
