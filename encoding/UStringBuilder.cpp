#include "encoding/UStringBuilder.h"

#include <algorithm>
#include <utility>

template<typename E>
UStringBuilder<E>::UStringBuilder( std::size_t initialCapacity )
    : mInitialCapacity( initialCapacity )
{
}

template<typename E>
UStringBuilder<E>::~UStringBuilder() = default;

template<typename E>
void UStringBuilder<E>::Start( E )
{
    mBegin = std::make_unique_for_overwrite<Unit[]>( mInitialCapacity );
    mEnd = mBegin.get();
    mCapacity = mInitialCapacity;
}

template<typename E>
void UStringBuilder<E>::Receive( ConstArrayOf<Unit> units )
{
    std::size_t const needed = SizeOfReceivedBytes( units );
    if ( needed > mCapacity )
    {
        std::size_t const capacity = std::max( needed, 2 * mCapacity );
        auto larger = std::make_unique_for_overwrite<Unit[]>( capacity );
        mEnd = std::copy( mBegin.get(), mEnd, larger.get() );
        mBegin = std::move( larger );
        mCapacity = capacity;
    }
    mEnd = std::copy( units.begin(), units.end(), mEnd );
}

template<typename E>
void UStringBuilder<E>::ReceiveEnd()
{
}

template<typename E>
std::size_t UStringBuilder<E>::SizeOfReceivedBytes( ConstArrayOf<Unit> units )
{
    return static_cast<std::size_t>( mEnd - mBegin.get() ) + units.Length();
}

template class UStringBuilder<UTF8>;
template class UStringBuilder<UTF16>;
template class UStringBuilder<UTF32>;
