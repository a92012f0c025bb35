#include "app/InputGate.h"

#include <QAbstractButton>
#include <QEvent>
#include <QGuiApplication>

#include <memory>
#include <utility>

namespace
{

// Odd while a gate is closed; changes whenever one closes or opens.
unsigned gGateChanges = 0;

bool IsInput( QEvent::Type type )
{
    switch ( type )
    {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::Gesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

} // namespace

InputGate::InputGate()
{
    Q_ASSERT( !IsClosed() );
    ++gGateChanges;
    qApp->installEventFilter( this );
}

InputGate::~InputGate()
{
    QGuiApplication::sync();
    ++gGateChanges;
}

bool InputGate::IsClosed()
{
    return gGateChanges % 2 != 0;
}

void InputGate::OnClick( QAbstractButton& button, std::function<void()> action )
{
    auto const changesAtPress = std::make_shared<unsigned>( gGateChanges );
    QObject::connect( &button, &QAbstractButton::pressed, &button,
        [changesAtPress] { *changesAtPress = gGateChanges; } );
    QObject::connect( &button, &QAbstractButton::clicked, &button,
        [changesAtPress, run = std::move( action )]
        {
            if ( !IsClosed() && *changesAtPress == gGateChanges )
            {
                InputGate const gate;
                run();
            }
        } );
}

bool InputGate::eventFilter( QObject* receiver, QEvent* event )
{
    // The windows' own bookkeeping of buttons and focus goes on; only what widgets and shortcuts
    // would act on is dropped.
    if ( receiver->isWindowType() || !IsInput( event->type() ) )
    {
        return false;
    }
    event->ignore();
    return true;
}
