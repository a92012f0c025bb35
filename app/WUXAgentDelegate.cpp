#include "app/WUXAgentDelegate.h"

#include "app/LocalizedString.h"
#include "app/ScriptRunner.h"
#include "app/TextField.h"
#include "files/mac/MacFileInfo.h"
#include "files/MakeFileLocation.h"
#include "platform/AutoCFData.h"
#include "platform/AutoCFDictionary.h"
#include "platform/AutoCFString.h"
#include "platform/CFDictionaries.h"
#include "platform/CFStrings.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"

#include <CoreFoundation/CFURLAccess.h>

#include <QEvent>

#include <cstdlib>
#include <string>

WUXAgentDelegate* gAgentDelegate = nullptr;

namespace
{

constexpr char kBundlePath[] = "/Library/WUXAgent/WUXAgent.app";
constexpr char kVersionFile[] = "/Contents/version.plist";
constexpr char kVersionKey[] = "CFBundleVersion";

constexpr CFOptionFlags kMutableContainersAndLeaves = 2;

// The text of `value`; null for a null value.
QString TextOf( CFStringRef value )
{
    if ( value == nullptr )
    {
        return {};
    }
    CFIndex const length = CFStringGetLength( value );
    QString text( length, Qt::Uninitialized );
    CFStringGetCharacters(
        value, CFRangeMake( 0, length ), reinterpret_cast<UniChar*>( text.data() ) );
    return text;
}

// Reads the version from the bundle's version file into `version`, which stays as it is when the
// file cannot be read or its version is not a text; a file without a version makes it null.
void ReadVersion( QString& version )
{
    std::string const path = std::string( kBundlePath ) + kVersionFile;
    FileLocation const file = MakeFileLocation( ConstData( path ) );

    CFDataRef bytes = nullptr;
    if ( !CFURLCreateDataAndPropertiesFromResource(
             kCFAllocatorDefault, file.Platform().URL(), &bytes, nullptr, nullptr, nullptr ) )
    {
        return;
    }
    AutoCFData const data( bytes );
    AutoCFDictionary const dictionary =
        DictionaryCreateFromXMLData( data.Get(), kMutableContainersAndLeaves );
    AutoCFString const key = MakeCFString( kVersionKey, kCFStringEncodingUTF8 );
    CFTypeRef const value = CFDictionaryGetValue( dictionary.Get(), key.Get() );
    if ( value == nullptr || CFGetTypeID( value ) == CFStringGetTypeID() )
    {
        version = TextOf( static_cast<CFStringRef>( value ) );
    }
}

// Shows what is about to be done, before the caller blocks.
void ShowStatusAtOnce( char const* key )
{
    TextField* const status = gAgentDelegate->wuxAgentStatusText();
    status->setStringValue( LocalizedString( key ) );
    status->display();
}

} // namespace

WUXAgentDelegate::WUXAgentDelegate( QWidget* parent ) : QPushButton( parent ) {}

void WUXAgentDelegate::awakeFromNib()
{
    gAgentDelegate = this;
    refreshWindow();
}

void WUXAgentDelegate::refreshWindow()
{
    std::int32_t const pid = getPID();
    char const* statusKey = nullptr;
    if ( pid != 0 )
    {
        gAgentDelegate->wuxPIDText()->setStringValue( QString::number( pid ) );
        mStopButton->setText(
            LocalizedString( QT_TRANSLATE_NOOP( "ControlPanel", "Stop Agent" ) ) );
        statusKey = QT_TRANSLATE_NOOP( "ControlPanel", "Running" );
        mStopButton->setEnabled( true );
        mRestartButton->setEnabled( true );
    }
    else
    {
        gAgentDelegate->wuxPIDText()->setStringValue(
            LocalizedString( QT_TRANSLATE_NOOP( "ControlPanel", "N/A" ) ) );
        mStopButton->setText(
            LocalizedString( QT_TRANSLATE_NOOP( "ControlPanel", "Start Agent" ) ) );
        statusKey = QT_TRANSLATE_NOOP( "ControlPanel", "Not running" );
        mStopButton->setEnabled( true );
        mRestartButton->setEnabled( false );
    }
    gAgentDelegate->wuxAgentStatusText()->setStringValue( LocalizedString( statusKey ) );
    gAgentDelegate->wuxInstalledLocationText()->setStringValue(
        LocalizedString( QT_TRANSLATE_NOOP( "ControlPanel", "The WUXAgent is not installed" ) ) );

    QString version = QStringLiteral( "N/A" );
    try
    {
        ShowInstalledBundle( version );
    }
    catch ( ... )
    {
        // Nothing is reported: the fields keep what they show by now.
    }
    gAgentDelegate->wuxVersionText()->setStringValue( version );
}

void WUXAgentDelegate::ShowInstalledBundle( QString& version )
{
    FileLocation const bundle = MakeFileLocation( kBundlePath );
    MacintoshPlatform::MacFileInfo const info( bundle.Platform() );
    if ( info.Exists() )
    {
        gAgentDelegate->wuxInstalledLocationText()->setStringValue(
            QString::fromLatin1( kBundlePath ) );
        ReadVersion( version );
    }
    else
    {
        mStopButton->setEnabled( false );
    }
}

void WUXAgentDelegate::performClose()
{
    std::exit( 0 );
}

void WUXAgentDelegate::windowWillClose()
{
    std::exit( 0 );
}

void WUXAgentDelegate::performClick( QObject const* sender )
{
    char const* argument = nullptr;
    if ( sender == mStopButton )
    {
        if ( getPID() != 0 )
        {
            ShowStatusAtOnce( QT_TRANSLATE_NOOP( "ControlPanel", "Stopping" ) );
            update();
            argument = "-stop";
        }
        else
        {
            ShowStatusAtOnce( QT_TRANSLATE_NOOP( "ControlPanel", "Starting" ) );
            argument = "-start";
        }
    }
    else if ( sender == mRestartButton )
    {
        ShowStatusAtOnce( QT_TRANSLATE_NOOP( "ControlPanel", "Restarting" ) );
        argument = "-restart";
    }
    else if ( sender == mCloseButton )
    {
        std::exit( 0 );
    }
    else
    {
        return;
    }
    executeScriptSudo( argument );
    gAgentDelegate->refreshWindow();
}

bool WUXAgentDelegate::eventFilter( QObject* receiver, QEvent* event )
{
    if ( event->type() == QEvent::Close )
    {
        windowWillClose();
    }
    return QPushButton::eventFilter( receiver, event );
}
