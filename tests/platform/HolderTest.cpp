#include "platform/AutoCFData.h"
#include "platform/AutoCFDictionary.h"
#include "platform/AutoCFString.h"
#include "platform/AutoCFURL.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

namespace
{

CFStringRef NewString()
{
    return CFStringCreateWithCString( nullptr, "/a", kCFStringEncodingUTF8 );
}

// `New` makes an object with one reference, and `Dispose` is its holder's release function.
template<typename Holder, auto New, auto Dispose>
void TestHolder()
{
    static_assert( !std::is_copy_constructible_v<Holder> );
    auto const object = New();
    static_assert( sizeof( Holder ) == sizeof object );
    auto const count = [object] { return CFGetRetainCount( object ); };
    try
    {
        Holder shared = Duplicate( object );
        EXPECT_EQ( 2, count() ) << "retained";
        Holder moved( std::move( shared ) );
        EXPECT_EQ( 2, count() ) << "moved";
        EXPECT_EQ( nullptr, shared.Get() );
        Holder adopted( moved.GiveUp() );
        EXPECT_EQ( 2, count() ) << "given up and adopted";
        EXPECT_EQ( nullptr, moved.Get() );
        Holder other = Duplicate( object );
        EXPECT_EQ( 3, count() );
        other = std::move( adopted );
        EXPECT_EQ( 2, count() ) << "move-assigned over the same object";
        Holder& alias = other;
        other = std::move( alias );
        EXPECT_EQ( 2, count() ) << "move-assigned to itself";
        EXPECT_EQ( object, other.Get() );
        other.Reset( New() );
        EXPECT_EQ( 1, count() ) << "replaced";
        other = Duplicate( object );
        other.Reset();
        EXPECT_EQ( 1, count() ) << "emptied";
        EXPECT_EQ( nullptr, Duplicate( other.Get() ).Get() );
        other = Duplicate( object );
        throw std::runtime_error( "" );
    }
    catch ( std::runtime_error const& )
    {
        EXPECT_EQ( 1, count() ) << "unwound";
    }
    Dispose( nullptr );
    Dispose( Duplicate( object ).GiveUp() );
    EXPECT_EQ( 1, count() ) << "released";
    Dispose( object );
}

} // namespace

TEST( Holders, OfAnyKindCountTheirReferences )
{
    TestHolder<AutoCFString, NewString, AutoCFString::DisposeCFStringRef>();
    auto const newData = [] { return CFDataCreate( nullptr, nullptr, 0 ); };
    TestHolder<AutoCFData, newData, AutoCFData::DisposeCFDataRef>();
    auto const newDictionary = []() -> CFDictionaryRef
    {
        return CFDictionaryCreateMutable(
            nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks );
    };
    TestHolder<AutoCFDictionary, newDictionary, AutoCFDictionary::DisposeCFDictionaryRef>();
    auto const newURL = []
    { return CFURLCreateWithString( nullptr, AutoCFString( NewString() ).Get(), nullptr ); };
    TestHolder<AutoCFURL, newURL, AutoCFURL::DisposeCFURLRef>();
}
