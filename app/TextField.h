#pragma once

#include <QLineEdit>

/// A value of the panel: one line that can be selected and copied, but not changed.
///
/// A read-only line edit rather than a label, because an accessibility client can then tell its
/// name (the caption) from its value, the keyboard reaches it, and neither a long text nor one with
/// line ends changes the size of the window. Texts are plain, never markup, and cut at
/// QLineEdit::maxLength().
class TextField : public QLineEdit
{
    Q_OBJECT

  public:
    explicit TextField( QWidget* parent = nullptr );

    /// Shows `text` from its beginning. A null text shows nothing.
    void setStringValue( QString const& text );

    /// Redraws at once: when this returns, the pixels are with the display server.
    void display();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void changeEvent( QEvent* event ) override;

  private:
    void BlendWithWindow();
    QSize SizeForCharacters( int count ) const;
};
