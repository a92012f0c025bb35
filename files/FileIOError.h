#pragma once

#include "foundation/ConstData.h"
#include "foundation/DebuggableException.h"

#include <cstdint>
#include <memory>
#include <string>

/// Base of the file layer's errors: a code of the platform and the names of up to two files.
///
/// The message is put together only when what() asks for it.
class FileIOError : public DebuggableException
{
  public:
    /// Throw std::bad_alloc, as does copying. A code of 0 means none; a name may be empty.
    explicit FileIOError( std::int32_t code = 0 );
    FileIOError( ConstData name, std::int32_t code );
    FileIOError( ConstData name1, ConstData name2, std::int32_t code );

    FileIOError( FileIOError const& other );
    FileIOError& operator=( FileIOError const& other );
    ~FileIOError() override;

    /// The message, made anew; valid until the next call or the end of this object. When it cannot
    /// be made, the encoded name of the most-derived class.
    char const* what() const noexcept override;

    std::int32_t GetCode() const;

    /// `File error "17FileNotFoundError" on "a" and "b": Unknown error: 4294967253`; what is not
    /// set is left out, and the code is written unsigned.
    std::string MakeErrorMessage() const;

  private:
    struct ErrorState
    {
        std::int32_t code;
        std::string name1;
        std::string name2;
        std::string message; // what the last what() returned
    };

    std::unique_ptr<ErrorState> mState;
};

/// The text for a code of the platform: "Unknown error: " and the code in decimal, unsigned.
std::string MakeErrorString( std::uint32_t code );
