#pragma once

#include <QDialog>
#include <QString>

class QLabel;

namespace rk31 {

// The modeless window that tells the user what a long device sequence is doing. The sequence
// owns it: create, Init, ShowModeless, TextChange between the steps, unload at the end.
class waitform : public QDialog {
    Q_OBJECT
  public:
    explicit waitform(QWidget* parent = nullptr);

    void Init(const QString& str) { m_message = str; }
    // Shows the text at once, without waiting for the event loop.
    void TextChange(const QString& str);

    // Shows the window over its parent and lets it paint before the blocking device calls start.
    void ShowModeless();
    // The only way the window closes.
    void unload();

  public slots:
    void reject() override;

  protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    QLabel* m_label;
    QString m_message;
    bool m_unloading = false;
};

}  // namespace rk31
