#pragma once

// A table of operations, each of which is run with one allocation after another failing.

#include <concepts>
#include <functional>
#include <new>
#include <string>
#include <vector>

using Telling = std::function<std::string()>;

/// Does an operation that tells its result, with a failure. `state` tells how things stand; it is
/// asked before and after, not under failures.
using Experiment = std::function<void( Telling const& operation, Telling const& state )>;

/// What may come out when memory runs out, beside std::bad_alloc and errors with the file manager's
/// code for it, as documented.
struct Allowed
{
    /// A regular expression for names of exceptions and for results, these with "=" before them.
    std::string failures = {};

    /// The state that is left when there is no memory to undo things either.
    std::string state = {};
};

/// An operation, what it needs prepared and handed to the experiment. TRY and CHANGE make one.
struct Row
{
    char const* name;
    std::function<void( Experiment const& )> use;
    Allowed allowed;
};

/// The value of an expression. The failures that are allowed may follow.
#define TRY( expression, ... )                                                                     \
    Trying( #expression, [&] { return Show( expression ); }, { __VA_ARGS__ } )

/// A change of `it`, which is a fresh `object` each time. What is allowed may follow.
#define CHANGE( object, change, ... )                                                              \
    Changing(                                                                                      \
        #change, [&] { return object; }, [&]( auto& it ) { change; },                              \
        []( auto& it ) { return Show( it ); }, { __VA_ARGS__ } )

Row Trying( char const* name, auto operation, Allowed const& allowed )
{
    auto const use = [=]( Experiment const& experiment )
    { experiment( operation, [] { return std::string(); } ); };
    return { name, use, allowed };
}

Row Changing( char const* name, auto make, auto change, auto look, Allowed const& allowed )
{
    auto const use = [=]( Experiment const& experiment )
    {
        auto object = make();
        experiment( [&] { return change( object ), ""; }, [&] { return look( object ); } );
    };
    return { name, use, allowed };
}

/// What the macros show values by; each table adds its own types.

inline std::string Show( std::string const& text )
{
    return text;
}

std::string Show( std::integral auto number )
{
    return std::to_string( number );
}

/// `object`; throws std::bad_alloc for null.
template<class Object>
Object Made( Object object )
{
    return object != nullptr ? object : throw std::bad_alloc();
}

/// A code of the file manager as a text; throws std::bad_alloc for lack of memory.
std::string Code( long code );

/// Runs the rows; any of them may fail with `failures` too.
///
/// The n-th allocation fails, for each n until the operation gets through, once alone and once with
/// all that follow. Each run gives either the result and the state of the run that gets through, or
/// a failure that the row allows, the state then being the one before or what the row leaves. No
/// run leaves blocks or descriptors behind.
void FailEachAllocation(
    std::vector<Row> const& rows, std::string const& failures = "std::bad_alloc" );
