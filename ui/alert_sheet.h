// An alert, drawn by the program itself: the same on every desktop. Main thread.
#pragma once

#include "interfaces/system.h"

#include <QEventLoop>
#include <QList>
#include <QWidget>

class QLabel;
class QPushButton;
class QScrollArea;

namespace oxlade {

/// A panel in the middle of the window, which it covers and dims, menu bar included. It takes
/// all keys and clicks; whoever shows it disables what is behind it.
///
/// Return and Enter press the filled button: the one with the keyboard focus, at first the
/// alert's first button, which is the rightmost. Escape presses the last one.
class AlertSheet final : public QWidget {
  public:
    /// The object's name.
    static inline const QString name = QStringLiteral("alert");

    /// `window` is visible; null: the panel is a window of its own, without a frame, in the
    /// middle of the screen. Closing that presses the last button.
    AlertSheet(const Alert& alert, QWidget* window);

    /// Shows it and runs an event loop until a button is pressed or the program ends. True if
    /// it was the first button. Where the user is in another program, asks for attention.
    bool run();
    /// Shows the user that the alert has to be answered first: a beep, and for a moment a
    /// ring around the panel.
    void pointOut();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void addButtons(const std::vector<std::string>& titles);
    QPushButton& filledButton() const;
    void moveFill(QWidget* focused);
    /// The panel's size in a room of that size; the text scrolls where it is too long.
    QSize panelSize(const QSize& room);
    void placeParts();
    void drawBackdrop(QPainter& painter) const;

    AlertStyle style_;
    QLabel* title_; ///< this and the widgets below are children
    QLabel* text_;
    QScrollArea* textArea_;
    QList<QPushButton*> buttons_; ///< from the right to the left
    QRect panel_;
    double radius_; ///< of its corners
    bool ringed_ = false;
    bool first_ = false; ///< the answer
    QEventLoop loop_;
};

} // namespace oxlade
