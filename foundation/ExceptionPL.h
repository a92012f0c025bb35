#pragma once

#include "foundation/ConstData.h"
#include "foundation/DebuggableException.h"

#include <memory>

/// An exception that carries a message.
///
/// Each object owns its own copy of the message; copies share nothing. The constructors and the
/// assignment pass on std::bad_alloc and leak nothing.
class ExceptionPL : public DebuggableException
{
  public:
    /// Copies the zero-terminated `text`, which must not be null. Throws std::length_error if it is
    /// longer than a ConstData can be.
    explicit ExceptionPL( char const* text );

    /// Copies the bytes of `text`. Zero bytes are copied as they are, so what() and copies of this
    /// object see the text only up to the first of them.
    explicit ExceptionPL( ConstData text );

    ExceptionPL( ExceptionPL const& other );

    ~ExceptionPL() override;

    /// Takes a copy of the other message. The old one stays if there is no memory for it.
    ExceptionPL& operator=( ExceptionPL const& other );

    /// The message, zero-terminated; valid until this object is assigned to or destroyed.
    char const* what() const noexcept override;

  private:
    char const* Construct( ConstData text );

    std::unique_ptr<char[]> mMessage;
};
