#pragma once

#include <QAccessible>
#include <QObject>
#include <QString>

class QWidget;

/// Tells accessibility clients what has changed in a window, so that a screen reader says it
/// wherever the focus is.
///
/// A screen reader keeps quiet about the change of a text that has not the focus, but says a
/// notification that appears. So each message appears as one: an accessible object that nobody
/// sees, with the message as its name.
class Announcer : public QObject
{
    Q_OBJECT

  public:
    explicit Announcer( QWidget& window );

    void Announce( QString const& message );

    QString const& Message() const { return mMessage; }

  private:
    QString mMessage;
    QAccessible::Id const mNotification;
};
