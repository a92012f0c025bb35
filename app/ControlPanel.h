#pragma once

#include <QDialog>

#include <memory>

class Announcer;
class WUXAgentDelegate;

namespace Ui
{
class ControlPanel;
}

/// The panel's window and all that its form makes with it: the fields, the buttons, the about box,
/// and the one WUXAgentDelegate.
///
/// The constructor loads the form, connects the delegate's outlets, the buttons' clicks, and the
/// ways of closing, and wakes the delegate, which fills the window. What the delegate has no part
/// in is done here: the about box, the copy of the fields' texts, the announcement of a new status.
class ControlPanel : public QDialog
{
    Q_OBJECT

  public:
    ControlPanel();
    ~ControlPanel() override;

  protected:
    /// Enter presses the button that has the focus; in a field it does nothing.
    void keyPressEvent( QKeyEvent* event ) override;

  private:
    void ConnectOutlets();
    void ConnectActions();
    void FillAboutBox();
    void OpenAboutBox();
    void CopyDetails();

    std::unique_ptr<Ui::ControlPanel> mForm;
    std::unique_ptr<WUXAgentDelegate> mDelegate;
    std::unique_ptr<Announcer> mAnnouncer;
};
