#pragma once

#include <QDialog>

#include <memory>

class WUXAgentDelegate;

namespace Ui
{
class ControlPanel;
}

/// The panel's window and all that its form makes with it: the fields, the buttons, the about box,
/// and the one WUXAgentDelegate.
///
/// The constructor loads the form, connects the delegate's outlets, the buttons' clicks, and the
/// ways of closing, and wakes the delegate, which fills the window.
class ControlPanel : public QDialog
{
    Q_OBJECT

  public:
    ControlPanel();
    ~ControlPanel() override;

  private:
    void ConnectOutlets();
    void ConnectActions();

    std::unique_ptr<Ui::ControlPanel> mForm;
    std::unique_ptr<WUXAgentDelegate> mDelegate;
};
