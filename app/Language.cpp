#include "app/Language.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace
{

bool Install(
    QTranslator& translator, QLocale const& locale, QString const& name, QString const& folder )
{
    return translator.load( locale, name, QStringLiteral( "_" ), folder ) &&
           QCoreApplication::installTranslator( &translator );
}

} // namespace

Language::Language( QLocale const& user, QString const& tables )
{
    bool const isReversed = QGuiApplication::isRightToLeft();
    QString const name = QStringLiteral( "WUXAgentControlPanel" );
    QLocale shown = QLocale::English;
    Install( mEnglish, shown, name, tables );
    if ( Install( mUsers, user, name, tables ) )
    {
        shown = QLocale( mUsers.language() );
    }
    Install( mToolkits, shown, QStringLiteral( "qtbase" ),
        QLibraryInfo::path( QLibraryInfo::TranslationsPath ) );

    bool const isRightToLeft = shown.textDirection() == Qt::RightToLeft;
    QGuiApplication::setLayoutDirection(
        isRightToLeft != isReversed ? Qt::RightToLeft : Qt::LeftToRight );
}
