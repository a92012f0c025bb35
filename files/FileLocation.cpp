#include "files/FileLocation.h"

FileLocation::FileLocation( FileLocation const& parent, FileName const& name )
    : mPlatform( parent.mPlatform, name )
{
}

FileLocation::FileLocation( FileLocation const& parent, char const* name )
    : FileLocation( parent, FileName( name, kCFStringEncodingUTF8 ) )
{
}

FileLocation::FileLocation( FileLocation const& parent, ConstData name )
    : FileLocation( parent, FileName( name, kCFStringEncodingUTF8 ) )
{
}

FileLocation const& FileLocation::RequireNonEmpty() const
{
    mPlatform.RequireNonEmpty();
    return *this;
}
