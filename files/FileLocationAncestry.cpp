#include "files/FileLocationAncestry.h"

bool EqualOrDescendant( FileLocation const& ancestor, FileLocation const& item )
{
    ancestor.RequireNonEmpty();
    FileLocation current = item.RequireNonEmpty();
    while ( !current.Equal( ancestor ) )
    {
        if ( current.IsRoot() )
        {
            return false;
        }
        // The step up from "/a/.." is "/a/../..", and so on without end.
        FileLocation const parent = current.Parent();
        if ( parent.POSIXPath().size() >= current.POSIXPath().size() )
        {
            return false;
        }
        current = parent;
    }
    return true;
}

bool IsDescendant( FileLocation const& ancestor, FileLocation const& item )
{
    bool const isEmpty = ancestor.Platform().URL() == nullptr;
    return ( isEmpty || !ancestor.Equal( item ) ) && EqualOrDescendant( ancestor, item );
}
