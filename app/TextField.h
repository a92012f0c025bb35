#pragma once

#include <QLineEdit>

/// A value of the panel: one line that can be selected and copied, but not changed.
///
/// A read-only line edit rather than a label, because an accessibility client can then tell its
/// name (the caption) from its value, the keyboard reaches it, and neither a long text nor one with
/// line ends changes the size of the window. Texts are plain, never markup, and cut at
/// QLineEdit::maxLength().
///
/// A text that is too long shows its two ends, and the whole in a tooltip; while the field has the
/// focus, or something of it is selected, it scrolls instead. Values line up at the captions' side
/// of the window, but one without a right-to-left letter, such as a path, reads from left to right
/// in every window. Colours are the window's.
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
    bool event( QEvent* event ) override;
    void changeEvent( QEvent* event ) override;
    void paintEvent( QPaintEvent* event ) override;
    void contextMenuEvent( QContextMenuEvent* event ) override;
    void focusOutEvent( QFocusEvent* event ) override;

  private:
    void ShowValue();
    void BlendWithWindow();
    void TakeDirectionFromText();
    bool IsTooLong() const;
    QRect TextRectangle() const;
    int TextWidth() const;
    QSize SizeForWidth( int width ) const;

    QString mValue;
};
