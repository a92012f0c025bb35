#include "app/TextField.h"

#include <QEvent>
#include <QFontMetrics>
#include <QGuiApplication>

namespace
{

// The installed location, the longest of the usual values, has 33 characters.
constexpr int kUsualCharacters = 40;
constexpr int kFewestCharacters = 12;

} // namespace

TextField::TextField( QWidget* parent ) : QLineEdit( parent )
{
    setReadOnly( true );
    setFrame( false );
    setSizePolicy( QSizePolicy::Expanding, QSizePolicy::Fixed );
    BlendWithWindow();
}

void TextField::setStringValue( QString const& text )
{
    setText( text );
    setCursorPosition( 0 );
    setToolTip( QFontMetrics( font() ).horizontalAdvance( text ) > width() ? text : QString() );
}

void TextField::display()
{
    repaint();
    QGuiApplication::sync();
}

QSize TextField::sizeHint() const
{
    return SizeForCharacters( kUsualCharacters );
}

QSize TextField::minimumSizeHint() const
{
    return SizeForCharacters( kFewestCharacters );
}

void TextField::changeEvent( QEvent* event )
{
    QLineEdit::changeEvent( event );
    if ( event->type() == QEvent::StyleChange )
    {
        BlendWithWindow();
    }
}

void TextField::BlendWithWindow()
{
    QPalette blended = palette();
    blended.setBrush( QPalette::Base, Qt::transparent );
    setPalette( blended );
}

QSize TextField::SizeForCharacters( int count ) const
{
    return { fontMetrics().averageCharWidth() * count, QLineEdit::sizeHint().height() };
}
