#pragma once

#include <QPushButton>

class QDialog;
class TextField;

/// The controller of the panel's one window: fills its four fields, sets its buttons, and acts on
/// clicks.
///
/// The form makes one of these and connects its outlets; ControlPanel then calls awakeFromNib. It
/// is the window's delegate and the target of the three buttons, and a button itself, though one
/// that is never shown. The widgets behind the outlets belong to the window and outlive every call.
///
/// The display changes at start-up and after a command, never by itself. Main thread only.
class WUXAgentDelegate : public QPushButton
{
    Q_OBJECT

  public:
    explicit WUXAgentDelegate( QWidget* parent = nullptr );

    TextField* wuxAgentStatusText() const { return mAgentStatusText; }

    TextField* wuxInstalledLocationText() const { return mInstalledLocationText; }

    TextField* wuxVersionText() const { return mVersionText; }

    TextField* wuxPIDText() const { return mPIDText; }

    QPushButton* wuxStopButton() const { return mStopButton; }

    QPushButton* wuxRestartButton() const { return mRestartButton; }

    QPushButton* wuxCloseButton() const { return mCloseButton; }

    /// Called once, when the outlets are connected: makes this the global delegate and fills the
    /// window for the first time.
    void awakeFromNib();

    /// Looks for the agent's process and bundle afresh and shows what is found. Failures of the
    /// look at the bundle are not reported: what could not be read keeps its text for "absent".
    void refreshWindow();

    /// Ends the process with status 0, at once and without a question.
    [[noreturn]] void performClose();

    /// The window is about to close: the same.
    [[noreturn]] void windowWillClose();

    /// Acts on a click on `sender`. The Stop/Start button stops or starts the agent by its state
    /// now, whatever its title says; the Restart button restarts it; both show what is being done,
    /// run the helper script as administrator, wait for its end, and refresh the window, whether
    /// the script succeeded or not. The Close button ends the process. Any other sender: nothing.
    void performClick( QObject const* sender );

  protected:
    /// Tells this delegate of the closing of the window that it is installed on.
    bool eventFilter( QObject* receiver, QEvent* event ) override;

  private:
    friend class ControlPanel;

    void ShowInstalledBundle( QString& version );

    QDialog* mAboutBox = nullptr;
    TextField* mAgentStatusText = nullptr;
    TextField* mInstalledLocationText = nullptr;
    TextField* mVersionText = nullptr;
    TextField* mPIDText = nullptr;
    QPushButton* mStopButton = nullptr;
    QPushButton* mRestartButton = nullptr;
    QPushButton* mCloseButton = nullptr;
};

/// The one delegate; null until the form is loaded.
extern WUXAgentDelegate* gAgentDelegate;
