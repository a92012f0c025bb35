#pragma once

#include "platform/AutoCFDictionary.h"

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

/// Reads an XML property list whose root is a dictionary. `options` is one of the
/// CFPropertyListMutabilityOptions. Throws DictionaryCreateFromXMLDataFailed when the data is no
/// property list or its root is something else.
AutoCFDictionary DictionaryCreateFromXMLData( CFDataRef data, unsigned long options );

/// The value under `key`, which the dictionary goes on owning. Throws
/// CFDictionaryGetValueIfPresentFailed when there is none.
CFTypeRef GetDictionaryValue( CFDictionaryRef dictionary, CFStringRef key );

/// A share of the bundle's information dictionary. Throws CFBundleGetInfoDictionaryFailed when
/// there is none.
AutoCFDictionary BundleGetInfoDictionary( CFBundleRef bundle );

/// The same for the dictionary in the user's language; throws the same class.
AutoCFDictionary BundleGetLocalInfoDictionary( CFBundleRef bundle );
