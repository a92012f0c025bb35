#include "app/TextField.h"

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

#include <gtest/gtest.h>

namespace
{

QString ToolTipOf( TextField& field )
{
    QPoint const point( 1, 1 );
    QHelpEvent event( QEvent::ToolTip, point, field.mapToGlobal( point ) );
    QApplication::sendEvent( &field, &event );
    return event.isAccepted() ? QToolTip::text() : QString();
}

struct TextFieldTest : testing::Test
{
    TextField field;
};

TEST_F( TextFieldTest, ATextThatIsTooLongShowsItsEndsAndTheWholeInATooltip )
{
    auto const picture = [this]( QString const& end )
    {
        field.setStringValue( "/a/long/" + QString( 40, 'x' ) + end );
        return field.grab().toImage();
    };
    field.show();
    field.resize( 2000, field.height() );
    field.setStringValue( "<b>9 & 1</b>" );
    EXPECT_EQ( ToolTipOf( field ), "" );

    field.setFont( { field.font().family(), 400 } );
    EXPECT_EQ( ToolTipOf( field ), "<p>&lt;b&gt;9 &amp; 1&lt;/b&gt;</p>" );
    field.setFont( {} );
    EXPECT_EQ( ToolTipOf( field ), "" );

    field.resize( 100, field.height() );
    EXPECT_NE( picture( "/A" ), picture( "/B" ) );
    EXPECT_NE( ToolTipOf( field ), "" );
    field.selectAll();
    EXPECT_EQ( field.selectedText(), field.text() );
}

TEST_F( TextFieldTest, AnAccessibilityClientCannotChangeIt )
{
    for ( QString const& value : { QString( "9.1.2" ), QString( 40'000, 'x' ) } )
    {
        field.setStringValue( value );
        QAccessibleInterface* const client = QAccessible::queryAccessibleInterface( &field );
        client->setText( QAccessible::Value, "8" );
        client->editableTextInterface()->insertText( 0, "8" );
        EXPECT_EQ( field.text(), value.left( field.maxLength() ) );
    }
}

TEST_F( TextFieldTest, APathReadsFromLeftToRightInEveryWindow )
{
    QApplication::setLayoutDirection( Qt::RightToLeft );
    field.setStringValue( "/Library/WUXAgent" );
    EXPECT_EQ( field.layoutDirection(), Qt::LeftToRight );
    EXPECT_TRUE( field.alignment() & Qt::AlignRight );
    field.setStringValue( "WUXAgent \u0645" );
    EXPECT_EQ( field.layoutDirection(), Qt::RightToLeft );
    QApplication::setLayoutDirection( Qt::LeftToRight );
    field.setStringValue( "/Library/WUXAgent" );
    EXPECT_TRUE( field.alignment() & Qt::AlignLeft );
}

} // namespace
