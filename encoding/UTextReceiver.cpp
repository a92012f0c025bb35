#include "encoding/UTextReceiver.h"

template<typename E>
UTextReceiver<E>::~UTextReceiver() = default;

template<typename E>
void UTextReceiver<E>::Start( E )
{
}

template<typename E>
void UTextReceiver<E>::Receive( ConstArrayOf<typename E::Unit> )
{
}

template<typename E>
void UTextReceiver<E>::ReceiveEnd()
{
}

template<typename E>
std::size_t UTextReceiver<E>::SizeOfReceivedBytes( ConstArrayOf<typename E::Unit> )
{
    return 0;
}

template class UTextReceiver<UTF8>;
template class UTextReceiver<UTF16>;
template class UTextReceiver<UTF32>;
