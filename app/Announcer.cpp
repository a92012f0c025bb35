#include "app/Announcer.h"

#include <QAccessibleObject>
#include <QWidget>

namespace
{

class Notification : public QAccessibleObject
{
  public:
    Notification( Announcer& announcer, QWidget& window )
        : QAccessibleObject( &announcer ), mAnnouncer( announcer ), mWindow( window )
    {
    }

    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface( &mWindow );
    }

    QAccessibleInterface* child( int ) const override { return nullptr; }

    int childCount() const override { return 0; }

    int indexOfChild( QAccessibleInterface const* ) const override { return -1; }

    QAccessible::Role role() const override { return QAccessible::Notification; }

    QAccessible::State state() const override { return {}; }

    QString text( QAccessible::Text kind ) const override
    {
        return kind == QAccessible::Name ? mAnnouncer.Message() : QString();
    }

  private:
    Announcer& mAnnouncer;
    QWidget& mWindow;
};

} // namespace

Announcer::Announcer( QWidget& window )
    : mNotification( QAccessible::registerAccessibleInterface( new Notification( *this, window ) ) )
{
}

void Announcer::Announce( QString const& message )
{
    mMessage = message;
    QAccessibleEvent appearance(
        QAccessible::accessibleInterface( mNotification ), QAccessible::ObjectShow );
    QAccessible::updateAccessibility( &appearance );
}
