#pragma once

#include <QObject>

#include <functional>

class QAbstractButton;

/// Keeps the panel from being used while it acts on a click.
///
/// While an InputGate exists, painting and everything else that only shows goes on, but clicks,
/// keys, other input, and requests to close a window are dropped: not queued, and not carried out
/// later. Destroying it first drops what has arrived by then. There is at most one at a time.
class InputGate : public QObject
{
  public:
    InputGate();
    ~InputGate() override;

    /// Whether an InputGate exists.
    static bool IsClosed();

    /// Calls `action`, under a gate of its own, for every click on `button`, by mouse, keyboard or
    /// accessibility client, that neither began nor ended while a gate was closed. (An
    /// accessibility client's click is no event that could be dropped, and ends a moment after it
    /// began.)
    static void OnClick( QAbstractButton& button, std::function<void()> action );

  protected:
    bool eventFilter( QObject* receiver, QEvent* event ) override;
};
