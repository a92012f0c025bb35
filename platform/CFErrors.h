#pragma once

#include <cstdint>

/// What the wrappers of Core Foundation throw: one class for each call that can fail, named after
/// it. They have no common base; whoever wants them all catches everything.

class CFDataCreateError
{
};

class DictionaryCreateFromXMLDataFailed
{
};

class CFBundleGetInfoDictionaryFailed
{
};

class CFDictionaryGetValueIfPresentFailed
{
};

class CFStringCreateError
{
};

class CFURLCopyLastPathComponentFailed
{
};

class CFURLCopyFileSystemPathFailed
{
};

class CFURLGetFSRefFailed
{
};

class CFURLCreateWithStringFailed
{
};

class CFURLCreateFromFSRefFailed
{
};

class CFURLCreateCopyAppendingPathComponentFailed
{
};

class CFURLCreateCopyDeletingLastPathComponentFailed
{
};

class CFURLCreateWithFileSystemPathRelativeToBaseFailed
{
};

class CFURLCreateWithFileSystemPathFailed
{
};

/// Carries the code that reading a URL's resource reported (see CFURLAccess.h).
class CFURLErrorCode
{
  public:
    explicit CFURLErrorCode( std::int32_t code ) : mCode( code ) {}

    std::int32_t GetCode() const { return mCode; }

  private:
    std::int32_t mCode;
};
