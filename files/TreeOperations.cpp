#include "files/TreeOperations.h"

void WalkTree( FileLocation const& location, TreeVisitor& visitor )
{
    MacintoshPlatform::WalkTree( location.Platform(), visitor );
}

void ForceDeleteRecursive( FileLocation const& location )
{
    MacintoshPlatform::ForceDeleteRecursive( location.Platform() );
}

void ForceDeleteContents( FileLocation const& location )
{
    MacintoshPlatform::ForceDeleteContents( location.Platform() );
}

void CopyTree( FileLocation const& from, FileLocation const& to )
{
    MacintoshPlatform::CopyTree( from.Platform(), to.Platform() );
}
