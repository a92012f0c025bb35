#pragma once

#include "files/mac/FileLocation.h"
#include "files/mac/FolderStream.h"
#include "foundation/ConstData.h"

#include <dirent.h>
#include <sys/stat.h>

#include <optional>
#include <string>

namespace MacintoshPlatform
{

/// What ::FileLoop says, over the platform's locations.
class FileLoop
{
  public:
    explicit FileLoop( FileLocation const& folder, char const* pattern = nullptr );

    bool Next();
    ConstData Name() const;
    FileLocation Location() const;

    bool IsDirectory() const { return S_ISDIR( mMode ); }

    bool IsLink() const { return S_ISLNK( mMode ); }

  private:
    bool Matches() const;
    bool LookAtEntry();

    std::string mFolderPath;
    std::optional<std::string> mPattern;
    FolderStream mStream;
    dirent const* mEntry = nullptr;
    mode_t mMode = 0;
};

} // namespace MacintoshPlatform
