#include "app/TextField.h"

#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QStyleOptionFrame>
#include <QToolTip>

#include <algorithm>

namespace
{

// The installed location, the longest of the usual values, has 33 characters.
constexpr int kUsualCharacters = 40;
constexpr int kMostCharacters = 60;
constexpr int kFewestCharacters = 12;

// What a line edit leaves free at both ends of its text.
constexpr int kMargin = 2;

bool IsRightToLeftLetter( QChar character )
{
    return character.direction() == QChar::DirR || character.direction() == QChar::DirAL;
}

} // namespace

TextField::TextField( QWidget* parent ) : QLineEdit( parent )
{
    setReadOnly( true );
    setFrame( false );
    setSizePolicy( QSizePolicy::Expanding, QSizePolicy::Fixed );
    // Accessibility clients can write into a read-only line edit.
    connect( this, &QLineEdit::textChanged, this, &TextField::ShowValue );
    BlendWithWindow();
}

void TextField::setStringValue( QString const& text )
{
    mValue = text.left( maxLength() );
    ShowValue();
    setCursorPosition( 0 );
    TakeDirectionFromText();
    updateGeometry();
}

void TextField::display()
{
    repaint();
    QGuiApplication::sync();
}

QSize TextField::sizeHint() const
{
    int const character = fontMetrics().averageCharWidth();
    return SizeForWidth( std::clamp(
        TextWidth() + 2 * kMargin, kUsualCharacters * character, kMostCharacters * character ) );
}

QSize TextField::minimumSizeHint() const
{
    return SizeForWidth( kFewestCharacters * fontMetrics().averageCharWidth() );
}

bool TextField::event( QEvent* event )
{
    if ( event->type() != QEvent::ToolTip || !IsTooLong() )
    {
        return QLineEdit::event( event );
    }
    QToolTip::showText( static_cast<QHelpEvent*>( event )->globalPos(),
        Qt::convertFromPlainText( text(), Qt::WhiteSpaceNormal ), this );
    return true;
}

void TextField::changeEvent( QEvent* event )
{
    QLineEdit::changeEvent( event );
    if ( event->type() == QEvent::PaletteChange )
    {
        BlendWithWindow();
    }
}

void TextField::paintEvent( QPaintEvent* event )
{
    if ( hasFocus() || hasSelectedText() || !IsTooLong() )
    {
        QLineEdit::paintEvent( event );
        return;
    }
    QRect const rectangle = TextRectangle();
    QPainter painter( this );
    painter.setLayoutDirection( layoutDirection() );
    painter.setPen( palette().color( QPalette::Text ) );
    painter.drawText( rectangle, int( alignment() | Qt::AlignVCenter ) | Qt::TextSingleLine,
        fontMetrics().elidedText( text(), Qt::ElideMiddle, rectangle.width() ) );
}

void TextField::contextMenuEvent( QContextMenuEvent* event )
{
    QMenu* const menu = createStandardContextMenu();
    menu->setAttribute( Qt::WA_DeleteOnClose );
    menu->setLayoutDirection( QGuiApplication::layoutDirection() );
    menu->popup( event->globalPos() );
}

void TextField::focusOutEvent( QFocusEvent* event )
{
    QLineEdit::focusOutEvent( event );
    if ( !hasSelectedText() )
    {
        setCursorPosition( 0 );
    }
}

void TextField::ShowValue()
{
    if ( text() != mValue )
    {
        setText( mValue );
    }
}

// Sets these two colours only: the others, that of the window's texts among them, stay inherited.
void TextField::BlendWithWindow()
{
    QPalette blended;
    for ( auto const group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled } )
    {
        blended.setBrush( group, QPalette::Base, Qt::transparent );
        blended.setBrush( group, QPalette::Text, palette().brush( group, QPalette::WindowText ) );
    }
    setPalette( blended );
}

void TextField::TakeDirectionFromText()
{
    QString const shown = text();
    if ( std::any_of( shown.begin(), shown.end(), IsRightToLeftLetter ) )
    {
        unsetLayoutDirection();
    }
    else
    {
        setLayoutDirection( Qt::LeftToRight );
    }
    bool const isMirrored = QGuiApplication::isRightToLeft();
    setAlignment( ( isMirrored ? Qt::AlignRight : Qt::AlignLeft ) | Qt::AlignAbsolute );
}

bool TextField::IsTooLong() const
{
    return TextWidth() > TextRectangle().width();
}

QRect TextField::TextRectangle() const
{
    QStyleOptionFrame option;
    initStyleOption( &option );
    return style()
        ->subElementRect( QStyle::SE_LineEditContents, &option, this )
        .adjusted( kMargin, 0, -kMargin, 0 );
}

int TextField::TextWidth() const
{
    return fontMetrics().horizontalAdvance( text() );
}

QSize TextField::SizeForWidth( int width ) const
{
    return { width, QLineEdit::sizeHint().height() };
}
