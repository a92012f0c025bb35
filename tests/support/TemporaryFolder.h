#pragma once

#include <string>

/// A fresh, empty folder under the system's temporary folder, removed with all it holds when this
/// object is destroyed.
class TemporaryFolder
{
  public:
    /// Throws std::system_error if the folder cannot be made.
    TemporaryFolder();

    TemporaryFolder( TemporaryFolder const& ) = delete;
    TemporaryFolder& operator=( TemporaryFolder const& ) = delete;

    /// Folders below that their owner may not write to are made writable first.
    ~TemporaryFolder();

    /// Absolute, without links and without a slash at its end.
    std::string const& Path() const { return mPath; }

    /// The path of the item `name` in the folder, whether it exists or not.
    std::string Path( std::string const& name ) const { return mPath + "/" + name; }

  private:
    std::string mPath;
};

/// What a shell's commands in the folder write. Throws
/// std::runtime_error if they fail.
std::string Shell( std::string const& folder, std::string const& commands );
