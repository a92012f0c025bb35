#pragma once

// What other libraries make of property lists.

// Python's header asks to be the first.
#include <Python.h>

#include "benchmarks/PropertyListTrees.h"

#include <libxml/parser.h>
#include <plist/plist.h>

namespace PropertyListTrees
{

class LibplistTree
{
  public:
    explicit LibplistTree( Document const& document ) : mRoot( nullptr, &plist_free )
    {
        plist_t root = nullptr;
        plist_from_xml(
            document.text.data(), static_cast<std::uint32_t>( document.text.size() ), &root );
        mRoot.reset( root );
    }

    plist_t Root() const { return mRoot.get(); }

    static std::size_t Count( plist_t node ) { return plist_dict_get_size( node ); }

    static std::size_t Length( plist_t node )
    {
        std::uint64_t length = 0;
        plist_get_string_ptr( node, &length );
        return length;
    }

    static std::uint64_t Integer( plist_t node )
    {
        std::uint64_t value = 0;
        plist_get_uint_val( node, &value );
        return value;
    }

    static plist_t Child( plist_t node, std::string const& key )
    {
        return plist_dict_get_item( node, key.c_str() );
    }

  private:
    std::unique_ptr<void, decltype( &plist_free )> mRoot;
};

// Elements only: nothing is decoded, and a value is found beside its key.
class Libxml2Tree
{
  public:
    explicit Libxml2Tree( Document const& document )
        : mDocument( xmlReadMemory( document.text.data(), static_cast<int>( document.text.size() ),
                         nullptr, nullptr, XML_PARSE_NONET | XML_PARSE_HUGE ),
              &xmlFreeDoc )
    {
    }

    xmlNode* Root() const
    {
        return xmlFirstElementChild( xmlDocGetRootElement( mDocument.get() ) );
    }

    static std::size_t Count( xmlNode* node ) { return xmlChildElementCount( node ) / 2; }

    static std::size_t Length( xmlNode* node ) { return TextOf( node ).size(); }

    static std::uint64_t Integer( xmlNode* node )
    {
        std::uint64_t value = 0;
        std::string_view const text = TextOf( node );
        std::from_chars( text.data(), text.data() + text.size(), value );
        return value;
    }

    static xmlNode* Child( xmlNode* node, std::string const& key )
    {
        for ( xmlNode* name = xmlFirstElementChild( node ); name != nullptr;
              name = xmlNextElementSibling( xmlNextElementSibling( name ) ) )
            if ( TextOf( name ) == key )
                return xmlNextElementSibling( name );
        throw std::runtime_error( "no such key" );
    }

  private:
    static std::string_view TextOf( xmlNode* node )
    {
        return reinterpret_cast<char const*>( node->children->content );
    }

    std::unique_ptr<xmlDoc, decltype( &xmlFreeDoc )> const mDocument;
};

class PlistlibTree
{
  public:
    explicit PlistlibTree( Document const& document ) : mRoot( nullptr, &Py_DecRef )
    {
        PyObject* const loads = Loads();
        Held const bytes( PyBytes_FromStringAndSize( document.text.data(),
                              static_cast<Py_ssize_t>( document.text.size() ) ),
            &Py_DecRef );
        mRoot.reset( PyObject_CallOneArg( loads, bytes.get() ) );
    }

    PyObject* Root() const { return mRoot.get(); }

    static std::size_t Count( PyObject* node )
    {
        return static_cast<std::size_t>( PyDict_Size( node ) );
    }

    static std::size_t Length( PyObject* node )
    {
        return static_cast<std::size_t>( PyUnicode_GetLength( node ) );
    }

    static std::uint64_t Integer( PyObject* node )
    {
        return static_cast<std::uint64_t>( PyLong_AsLongLong( node ) );
    }

    static PyObject* Child( PyObject* node, std::string const& key )
    {
        return PyDict_GetItemString( node, key.c_str() );
    }

  private:
    using Held = std::unique_ptr<PyObject, decltype( &Py_DecRef )>;

    static PyObject* Loads()
    {
        static PyObject* const loads = []
        {
            Py_InitializeEx( 0 );
            PyObject* const module = PyImport_ImportModule( "plistlib" );
            return module != nullptr ? PyObject_GetAttrString( module, "loads" ) : nullptr;
        }();
        return loads;
    }

    Held mRoot;
};

} // namespace PropertyListTrees
