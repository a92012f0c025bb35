#pragma once

#include "files/FileLocation.h"
#include "files/mac/TreeOperations.h"

/// What files/mac/TreeOperations.h says, over the portable locations.

using MacintoshPlatform::TreeVisitor;

void WalkTree( FileLocation const& location, TreeVisitor& visitor );
void ForceDeleteRecursive( FileLocation const& location );
void ForceDeleteContents( FileLocation const& location );
void CopyTree( FileLocation const& from, FileLocation const& to );
